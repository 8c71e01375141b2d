#!/usr/bin/python3
"""Writes host/headless/TahomaAdvances.h from the metric-compatible Tahoma of Debian's fonts-wine.

Usage: tools/tahoma_advances.py [FONT_FOLDER] > host/headless/TahomaAdvances.h
Needs the packages fonts-wine and python3-fonttools. Only the advance widths are taken over.
"""
import sys

from fontTools.ttLib import TTFont

FONTS = [("kRegular", "tahoma.ttf"), ("kBold", "tahomabd.ttf")]
# The blocks with exact widths: Latin letters, and punctuation with currencies.
BLOCKS = [(0x0000, 0x0250), (0x2000, 0x20D0)]


def main():
    folder = sys.argv[1] if len(sys.argv) > 1 else "/usr/share/wine/fonts"
    print("// Advance widths of Tahoma in font units. Written by tools/tahoma_advances.py; do not edit.")
    print("// clang-format off")
    print("#pragma once\n\n#include <cstdint>\n\nnamespace kvo::tahoma {\n")
    fonts = [(name, TTFont(f"{folder}/{file}")) for name, file in FONTS]
    # Characters missing from the font are as wide as the font's em.
    units, = {size for _, font in fonts
              for size in (font["head"].unitsPerEm, font["hmtx"][".notdef"][0])}
    print(f"inline constexpr int kUnitsPerEm = {units};")
    print("\n// Whether the character is in a measured block. Without a row, its advance there is "
          "kUnitsPerEm.")
    print("constexpr bool IsMeasured(char32_t code) {")
    tests = [f"code - 0x{first:04X} < 0x{end - first:04X}" for first, end in BLOCKS]
    print("  return " + " || ".join(tests) + ";\n}")
    print("\n// The characters from `first` on. Rows of nothing but kUnitsPerEm are left out.")
    print("struct Row {\n  char32_t first;\n  std::uint16_t advances[16];\n};")
    for name, font in fonts:
        glyphs = font.getBestCmap()
        print(f"\ninline constexpr Row {name}[] = {{")
        for row in (row for first, end in BLOCKS for row in range(first, end, 16)):
            widths = [font["hmtx"][glyphs[c]][0] if c in glyphs else units
                      for c in range(row, row + 16)]
            if any(width != units for width in widths):
                print(f"    {{0x{row:04X}, {{" + ", ".join(f"{n:4}" for n in widths) + "}},")
        print("};")
    print("\n}  // namespace kvo::tahoma")


main()
