# SPDX-License-Identifier: GPL-3.0-or-later
"""find_labels.py <picture> <pixels per unit> <dock|form|points> <label>...

Prints the labels that cannot be read in full, as words of their own, in this part of a picture of the
main window with a spectrum: the species dock, the spectrum's form, or the pane of its points. Letters
that look the same in the interface's font count as one, and so do capitals and small letters. Needs
ImageMagick and tesseract.
"""
import csv
import io
import os
import subprocess
import sys

DOCK_GREY = 0xC9
WHITE = 0xFF


def run(*command, data=None):
    os.environ["OMP_THREAD_LIMIT"] = "1"
    return subprocess.run(command, input=data, check=True, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL).stdout


def longest_run(column, value):
    return max(map(len, bytes(1 if grey == value else 0 for grey in column).split(b"\0")))


def part_of_window(picture, part):
    """(left, width) in pixels of a part, found by its colours, and its background's grey in percent."""
    width, height = map(int, run("identify", "-format", "%w %h", picture).split())
    grey = run("convert", picture, "-depth", "8", "gray:-")
    columns = [grey[x::width] for x in range(width)]
    dock = [x for x, column in enumerate(columns) if longest_run(column, DOCK_GREY) > height * 0.3]
    dock_end = dock[-1] + 1 if dock else width * 2 // 5
    # The chart is white, too, but lower than the editor of the points.
    editor = [x for x in range(dock_end, width) if longest_run(columns[x], WHITE) > height * 0.4]
    editor_start = editor[0] if editor else width * 7 // 10
    return {"dock": (0, dock_end, 70), "form": (dock_end, editor_start - dock_end, 90),
            "points": (editor_start, width - editor_start, 90)}[part]


def words(picture, scale, segmentation, left, width, background):
    """The words of a part of the picture in reading order."""
    enlarged = run("convert", picture, "-crop", f"{width}x0+{left}+0", "+repage", "-colorspace", "Gray",
                   "-resize", f"{scale}%", "-level", f"0%,{background}%", "png:-")
    # Without dictionaries, which would complete a word that is cut off.
    table = run("tesseract", "-", "-", "--psm", str(segmentation), "--dpi", "300", "-l", "eng",
                "-c", "load_system_dawg=0", "-c", "load_freq_dawg=0", "tsv", data=enlarged).decode()
    lines = {}
    for row in csv.DictReader(io.StringIO(table), delimiter="\t", quoting=csv.QUOTE_NONE):
        if row["text"] and row["text"].strip():
            key = (row["block_num"], row["par_num"], row["line_num"])
            lines.setdefault(key, []).append((int(row["top"]), int(row["left"]), row["text"]))
    in_order = sorted(lines.values(), key=lambda line: (min(line)[0], line[0][1]))
    return [text for line in in_order for _, _, text in line]


def plain(text):
    """The text without white space, and with one letter for those that look the same."""
    text = "".join(text.split()).strip("|_[]")
    return text.translate(str.maketrans({"I": "l", "1": "l", "|": "l", "i": "l", "O": "0", "o": "0"})).lower()


def take(label, read):
    """Removes the words that make up label from read; False if they are not there in a row."""
    wanted = plain(label)
    for first in range(len(read)):
        text = ""
        for last in range(first, len(read)):
            text += plain(read[last])
            if text == wanted:
                # An empty place, so that the words beside it do not become neighbours.
                read[first:last + 1] = ["\0"]
                return True
            if not wanted.startswith(text):
                break
    return False


def main():
    picture, ratio, part, *labels = sys.argv[1:]
    place = part_of_window(picture, part)
    missing = labels
    for segmentation in (11, 6, 4):
        for scale in (400, 300):
            read = words(picture, scale / float(ratio), segmentation, *place)
            # Long labels first: a short one may be a part of one of them.
            missing_here = {label for label in sorted(labels, key=len, reverse=True)
                            if not take(label, read)}
            missing = [label for label in missing if label in missing_here]
            if not missing:
                return
    print("\n".join(missing))


main()
