# SPDX-License-Identifier: GPL-3.0-or-later
"""word_contrast.py <light picture> <dark picture> <least number of words> [light]

Finds the words of the first picture and measures the contrast at their places in the second one, which
shows the same in other colours. Prints the words whose contrast is less than text needs (4.5 : 1), and
ends with an error if there are any, if there are fewer words than this number, or if the second picture is
not the darker one, unless it is to be light, too. Needs ImageMagick and tesseract.
"""
import collections
import csv
import io
import os
import subprocess
import sys

LEAST = 4.5  # Web Content Accessibility Guidelines 2.1, criterion 1.4.3
ENLARGED = 4
STRONGEST = 6  # pixels: only the middle of a stroke has the colour that it was meant to have


def run(*command, data=None):
    os.environ["OMP_THREAD_LIMIT"] = "1"
    return subprocess.run(command, input=data, check=True, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL).stdout


def words(picture):
    """(text, left, top, right, bottom) of what can be read with some certainty."""
    enlarged = run("convert", picture, "-colorspace", "Gray", "-resize", f"{100 * ENLARGED}%", "png:-")
    found = {}
    for segmentation in ("11", "6"):
        table = run("tesseract", "-", "-", "--psm", segmentation, "--dpi", "300", "-l", "eng", "tsv",
                    data=enlarged)
        for row in csv.DictReader(io.StringIO(table.decode()), delimiter="\t", quoting=csv.QUOTE_NONE):
            text = (row["text"] or "").strip()
            if sum(map(str.isalnum, text)) >= 2 and float(row["conf"]) > 60:
                left, top, width, height = (int(row[key]) // ENLARGED
                                            for key in ("left", "top", "width", "height"))
                # The same word is found at nearly the same place.
                found[text, left // 8, top // 8] = (text, left, top, left + width + 1, top + height + 1)
    return list(found.values())


def pixels(picture):
    """(width, the rows of red, green and blue)"""
    width, height = map(int, run("identify", "-format", "%w %h", picture).split())
    data = run("convert", picture, "-depth", "8", "rgb:-")
    assert len(data) == 3 * width * height
    return [[tuple(data[at:at + 3]) for at in range(3 * width * y, 3 * width * (y + 1), 3)]
            for y in range(height)]


def luminance(colour):
    red, green, blue = (part / 255 / 12.92 if part / 255 <= 0.03928 else ((part / 255 + 0.055) / 1.055) ** 2.4
                        for part in colour)
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue


def contrast(one, other):
    darker, lighter = sorted((luminance(one), luminance(other)))
    return (lighter + 0.05) / (darker + 0.05)


def contrast_at(rows, left, top, right, bottom):
    counts = collections.Counter(colour for row in rows[top:bottom] for colour in row[left:right])
    background = counts.most_common(1)[0][0]
    seen = 0
    for value, count in sorted(((contrast(colour, background), count) for colour, count in counts.items()),
                               reverse=True):
        seen += count
        if seen >= STRONGEST:
            return value
    return 1


def is_darker(dark_rows, light_rows):
    """Whether the one picture is clearly the darker one, fields aside, whose paper is white in both."""
    white = (255, 255, 255)
    pairs = collections.Counter(pair for dark_row, light_row in zip(dark_rows, light_rows)
                                for pair in zip(dark_row, light_row) if pair != (white, white))
    dark, light = (sum(luminance(pair[side]) * count for pair, count in pairs.items()) for side in (0, 1))
    return dark <= 0.75 * light


def main():
    light, dark, least = sys.argv[1], sys.argv[2], int(sys.argv[3])
    light_rows, dark_rows = pixels(light), pixels(dark)
    name = os.path.basename(dark)
    wrong = []
    if (len(light_rows), len(light_rows[0])) != (len(dark_rows), len(dark_rows[0])):
        sys.exit(f"{name} has another size than {os.path.basename(light)}")
    if "light" not in sys.argv[4:] and not is_darker(dark_rows, light_rows):
        wrong.append("is not dark")
    found = words(light)
    if len(found) < least:
        wrong.append(f"has only {len(found)} words of {least}")
    values = [(contrast_at(dark_rows, *place), text) for text, *place in found]
    wrong += [f"{text!r} has a contrast of {value:.1f}" for value, text in sorted(values) if value < LEAST]
    print(f"{name}: {len(found)} words, least contrast {min(values)[0]:.1f}" if values else name)
    if wrong:
        sys.exit("\n".join(f"FAIL: {name}: {what}" for what in wrong))


main()
