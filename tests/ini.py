# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

"""Writes and reads INI files through an independent library.

ini.py write FILE   writes sections of odd values and prints them as JSON
ini.py read FILE    prints, as JSON, all sections of the file
"""

import configparser
import json
import random
import sys

WORDS = ["Wand", "Tür 2", "x=y", "a;b", "文字", "", "%d", "C:\\Pläne\\a.dwg", "-12", "😀"]

ini = configparser.ConfigParser(interpolation=None)
ini.optionxform = str
if sys.argv[1] == "write":
    random.seed(5)
    for section in range(20):
        ini[f"Section {section}"] = {f"Key{key}": random.choice(WORDS) for key in range(20)}
    with open(sys.argv[2], "w", encoding="utf-8") as file:
        ini.write(file)
else:
    ini.read(sys.argv[2], encoding="utf-8")
print(json.dumps({section: dict(ini[section]) for section in ini.sections()}))
