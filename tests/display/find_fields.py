# SPDX-License-Identifier: GPL-3.0-or-later
"""find_fields.py <picture>

Prints the name and the middle, in pixels, of every field that a picture of the main window shows: those
of the species form, those of the spectrum on top if there is one, and the last three buttons of the tool
bar. Fields are white boxes that lie in no other one; they are told apart by their order on the page.
Needs ImageMagick.
"""
import re
import subprocess
import sys

SPECIES = ["Name", "Aliases", "Mass", "Formula", "InChI", "CAS", "PubChem", "AIE", "AIE_Comment", "VIE",
           "VIE_Comment", "Image"]
SPECTRUM = ["Title", "Uploader", "DOI", "Citations", "Source", "T", "Resolution", "Normalization",
            "FacilityDate", "Comments"]
TOOLS = ["tool-folder", "tool-previous", "tool-next"]
LEAST_AREA = 600  # pixels; larger than any letter, smaller than any field
DOCK_TITLE_GREY = 0xA0


def run(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout


def white_boxes(picture):
    """(left, top, width, height) of the white areas that lie in no other one."""
    table = run("convert", picture, "-fill", "black", "+opaque", "white",
                "-define", "connected-components:verbose=true",
                "-define", f"connected-components:area-threshold={LEAST_AREA}",
                "-connected-components", "4", "null:").decode()
    pattern = re.compile(r"(\d+)x(\d+)\+(\d+)\+(\d+) \S+ \S+ (?:srgb\(255,255,255\)|gray\(255\)|white)$")
    found = [tuple(map(int, match.groups())) for match in map(pattern.search, table.splitlines()) if match]
    boxes = [(left, top, width, height) for width, height, left, top in found]
    return [box for box in boxes if not any(lies_in(box, other) for other in boxes if other != box)]


def lies_in(box, other):
    return (other[0] <= box[0] and box[0] + box[2] <= other[0] + other[2]
            and other[1] <= box[1] and box[1] + box[3] <= other[1] + other[3])


def middle(box):
    return box[0] + box[2] // 2, box[1] + box[3] // 2


def in_reading_order(boxes):
    rows = []
    for box in sorted(boxes, key=lambda box: box[1]):
        # Boxes in one row differ by a pixel or two.
        if rows and box[1] - rows[-1][0][1] <= 4:
            rows[-1].append(box)
        else:
            rows.append([box])
    return [box for row in rows for box in sorted(row)]


def around(boxes):
    left, top = (min(box[side] for box in boxes) for side in (0, 1))
    right, bottom = (max(box[side] + box[side + 2] for box in boxes) for side in (0, 1))
    return left, top, right - left, bottom - top


def tool_buttons(picture):
    """The middles of the dark groups between the menu bar and the dock's title, from left to right."""
    width, height = map(int, run("identify", "-format", "%w %h", picture).split())
    grey = run("convert", picture, "-colorspace", "Gray", "-depth", "8", "gray:-")
    column = grey[3::width]
    dock_title = next(y for y in range(height - 8) if set(column[y:y + 8]) == {DOCK_TITLE_GREY})
    first, last = dock_title - 22, dock_title - 8
    groups = []
    for x in range(width // 3):
        if any(grey[y * width + x] < 0xA8 for y in range(first, last)):
            if groups and x - groups[-1][1] <= 4:
                groups[-1][1] = x
            else:
                groups.append([x, x])
    return [((left + right) // 2, (first + last) // 2) for left, right in groups]


def main():
    picture = sys.argv[1]
    boxes = white_boxes(picture)
    name_field = min(box for box in boxes if box[3] < 40)
    dock_end = name_field[0] + name_field[2]
    species = in_reading_order([box for box in boxes if box[0] < dock_end])
    others = [box for box in boxes if box[0] >= dock_end]
    if len(species) < len(SPECIES):
        sys.exit(f"{len(species)} fields of the species: {species}")
    # A high picture leaves white to its left and to its right.
    image = len(SPECIES) - 1
    species[image:] = [around(species[image:])]
    names = dict(zip(SPECIES, map(middle, species)))
    if others:
        chart = max(others, key=lambda box: box[1] + box[3])
        points = max(others, key=lambda box: box[3])
        form = in_reading_order([box for box in others if box not in (chart, points)])
        if len(form) != len(SPECTRUM):
            sys.exit(f"{len(form)} fields of the spectrum: {form}")
        names.update(zip(SPECTRUM, map(middle, form)))
        names["Points"] = middle(points)
        names["Chart"] = middle(chart)
    names.update(zip(TOOLS, tool_buttons(picture)[-len(TOOLS):]))
    for name, (x, y) in names.items():
        print(name, x, y)


main()
