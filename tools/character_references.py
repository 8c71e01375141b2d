#!/usr/bin/env python3
"""Writes document/page/character_references.inc, the named character references of HTML, from the
table in Python's standard library. Usage: tools/character_references.py > document/page/character_references.inc
"""
from html.entities import html5

print("// Made by tools/character_references.py: the named character references of HTML with their one or")
print("// two characters, sorted by bytes. Names without a semicolon are references as well.")
for name in sorted(html5):
    characters = [f"0x{ord(character):X}" for character in html5[name]]
    print(f'{{"{name}", {{{", ".join(characters)}}}}},')
