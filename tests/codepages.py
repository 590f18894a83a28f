# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

"""Prints, as JSON, what Python makes of the code pages that Windows has: the codes of a page, in
hexadecimal digits, and the characters that they stand for.
"""

import json

pages = {}
for number in [*range(1250, 1259), 932, 936, 949, 950]:
    codes = [bytes([code]) for code in range(0x100)]
    if number < 1250:
        codes += [bytes([lead, trail]) for lead in range(0x81, 0xFF) for trail in range(0x100)]
    pages[number] = ["", ""]
    for code in codes:
        character = code.decode(f"cp{number}", "replace")
        # Of some codes there is more than one opinion.
        is_open = (
            (number == 932 and code in (b"\x80", b"\xa0"))
            or (number == 950 and (code[0] in b"\xc6\xc7" or "\u2550" <= character <= "\u256a"))
            or "\ue000" <= character <= "\uf8ff"
        )
        if len(character) == 1 and character != "\ufffd" and not is_open:
            pages[number][0] += code.hex()
            pages[number][1] += character
print(json.dumps(pages))
