#!/usr/bin/python3
"""Writes host/headless/TahomaAdvances.h from the metric-compatible Tahoma of Debian's fonts-wine.

Usage: tools/tahoma_advances.py [FONT_FOLDER] > host/headless/TahomaAdvances.h
Needs the packages fonts-wine and python3-fonttools. Only the advance widths are taken over.
"""
import sys

from fontTools.ttLib import TTFont

FONTS = [("kRegular", "tahoma.ttf"), ("kBold", "tahomabd.ttf")]
# The blocks that are measured exactly: the Latin letters, and the punctuation with the currencies.
BLOCKS = [("Latin", 0x0000, 0x0250), ("Punctuation", 0x2000, 0x20D0)]


def table(font, first, end):
    glyphs = font.getBestCmap()
    advances = font["hmtx"]
    unknown = advances[".notdef"][0]
    return [advances[glyphs[c]][0] if c in glyphs else unknown for c in range(first, end)]


def main():
    folder = sys.argv[1] if len(sys.argv) > 1 else "/usr/share/wine/fonts"
    print("// Advance widths of Tahoma in font units. Written by tools/tahoma_advances.py; do not edit.")
    print("// clang-format off")
    print("#pragma once\n\n#include <cstdint>\n\nnamespace kvo::tahoma {\n")
    fonts = [(name, TTFont(f"{folder}/{file}")) for name, file in FONTS]
    units = {font["head"].unitsPerEm for _, font in fonts}
    assert len(units) == 1
    print(f"inline constexpr int kUnitsPerEm = {units.pop()};")
    for block, first, end in BLOCKS:
        print(f"inline constexpr char32_t k{block}First = 0x{first:04X};")
        print(f"inline constexpr char32_t k{block}End = 0x{end:04X};")
    print("\nstruct Advances {")
    for block, first, end in BLOCKS:
        print(f"  std::uint16_t {block.lower()}[{end - first}];")
    print("  std::uint16_t unknown;\n};")
    for name, font in fonts:
        print(f"\ninline constexpr Advances {name} = {{")
        for _, first, end in BLOCKS:
            numbers = table(font, first, end)
            print("    {")
            for at in range(0, len(numbers), 16):
                print("        " + ", ".join(f"{n:4}" for n in numbers[at:at + 16]) + ",")
            print("    },")
        print(f"    {font['hmtx']['.notdef'][0]},\n}};")
    print("\n}  // namespace kvo::tahoma")


main()
