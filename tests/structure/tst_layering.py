#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""tst_layering.py PROJECT LAYERS: reads the link graph of the libraries from the build.

Each library includes only headers of libraries that it links, in several steps or one. What has no
window links none, and nothing but the programs links the outermost libraries.
"""
import re
import sys
from pathlib import Path

INCLUDE = re.compile(r'^#include "([a-z]+/[^"]+)"', re.MULTILINE)
OUTERMOST = {"zoravel_app", "zoravel_cli"}
WITHOUT_WINDOWS = {"check", "database", "exchange", "files", "pictures", "settings", "species", "spectrum"}


def main():
    project, layers = (Path(argument) for argument in sys.argv[1:])
    links, sources = {}, {}
    for layer in layers.iterdir():
        graph, files = layer.read_text().split("\n")[:2]
        links[layer.name] = {re.sub(r"\$<LINK_ONLY:(.*)>", r"\1", link) for link in graph.split(";")}
        sources[layer.name] = [Path(file) for file in files.split(";")]
    owner = {
        str(file.relative_to(project)): library
        for library, files in sources.items()
        for file in files
        if file.is_relative_to(project)
    }

    def reached(library):
        seen, todo = set(), {library}
        while todo:
            seen |= todo
            todo = set().union(*(links.get(at, set()) for at in todo)) - seen
        return seen

    wrong = []
    includes = 0
    for library, files in sources.items():
        allowed = reached(library)
        for file in files:
            if file.suffix not in {".h", ".cpp"} or not file.is_relative_to(project):
                continue
            for header in INCLUDE.findall(file.read_text()):
                includes += 1
                if owner.get(header) not in allowed:
                    wrong.append(f"{file.relative_to(project)} includes {header}, but {library} does not link it")
        for outer in OUTERMOST & allowed - {library}:
            wrong.append(f"{library} links {outer}")
    for name in WITHOUT_WINDOWS:
        for window in {"Qt6::Widgets", "Qt6::Charts"} & reached("zoravel_" + name):
            wrong.append(f"zoravel_{name} links {window}")
    # The pictures of spectra are the editor's chart.
    links["zoravel_cli"].remove("zoravel_plot")
    for window in {"Qt6::Widgets", "Qt6::Charts"} & reached("zoravel_cli"):
        wrong.append(f"zoravel_cli links {window} for more than zoravel_plot")

    print(f"{len(links)} libraries, {includes} includes")
    print(*wrong, sep="\n")
    return 1 if wrong or len(links) < 12 or includes < 300 else 0


if __name__ == "__main__":
    sys.exit(main())
