# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

"""sheet.py FILE: writes a drawing that opens in paper space, with a viewport that hides a layer."""

import json
import sys

import ezdxf

doc = ezdxf.new("R2010")
for name in ("Hidden in the sheet", "Shown in the sheet"):
    doc.layers.add(name)
sheet = doc.layout("Layout1")
viewport = sheet.add_viewport(center=(100, 100), size=(150, 150), view_center_point=(0, 0),
                              view_height=100)
viewport.frozen_layers = ["Hidden in the sheet"]
doc.header["$TILEMODE"] = 0
doc.saveas(sys.argv[1])
print(json.dumps({"viewports": len(sheet.viewports())}))
