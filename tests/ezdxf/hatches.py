# SPDX-FileCopyrightText: 2026 The OvCustomControl developers
# SPDX-License-Identifier: MIT

"""Writes a drawing with hatched areas, and prints as JSON of which lines each hatch consists.

hatches.py FILE
"""

import json
import sys

import ezdxf
from ezdxf.render import hatching

doc = ezdxf.new("R2010", setup=True)
space = doc.modelspace()


def hatch(pattern, scale, angle=0):
    entity = space.add_hatch()
    entity.set_pattern_fill(pattern, scale=scale, angle=angle)
    return entity.paths


paths = hatch("ANSI31", 0.5)
paths.add_polyline_path([(0, 1), (10, 0, 0.3), (10, 9, -0.2), (0, 10)], is_closed=True)
paths.add_edge_path().add_arc((5, 5), 3, 0, 360)

edges = hatch("DASH", 1, 30).add_edge_path()
edges.add_line((20, 0), (30, 0))
edges.add_arc((30, 5), 5, -90, 90)
edges.add_line((30, 10), (20, 10))
edges.add_arc((20, 5), 5, -90, 90, ccw=False)

edges = hatch("AR-B816", 0.005).add_edge_path()
edges.add_ellipse((45, 5), (6, 2), 0.4, 20, 200)
edges.add_ellipse((45, 5), (6, 2), 0.4, 200, 380, ccw=False)

edges = hatch("ANSI37", 1).add_edge_path()
edges.add_spline(control_points=[(60, 0), (65, -5), (70, 5), (64, 12), (60, 10)], degree=3)
edges.add_line((60, 10), (60, 0))

doc.saveas(sys.argv[1])
print(json.dumps({"hatches": [
    [[start.x, start.y, end.x, end.y] for start, end in hatching.hatch_entity(entity)]
    for entity in space]}))
