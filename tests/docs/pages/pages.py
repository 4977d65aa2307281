# SPDX-License-Identifier: GPL-3.0-or-later
"""What is wrong with Markdown pages, as far as it shows without a network: links to files and headings
that are not there, pages and pictures that nothing links to."""
import pathlib
import re
import urllib.parse

OUTSIDE = re.compile(r"^[a-z][a-z0-9+.-]*:", re.I)  # https:, mailto:, ...
NOT_OURS = {"build", ".git", "node_modules"}


def pages_under(root):
    """Every Markdown page of a source tree."""
    return sorted(page for page in root.rglob("*.md")
                  if not NOT_OURS & set(page.relative_to(root).parts[:-1]))


def without_code(text):
    """The page without code, in which brackets are no links."""
    text = re.sub(r"^(```|~~~).*?^\1[^\n]*$", "", text, flags=re.M | re.S)
    text = re.sub(r"<!--.*?-->", "", text, flags=re.S)
    return re.sub(r"(`+)(?!`).+?(?<!`)\1(?!`)", "", text, flags=re.S)


def anchors_of(text):
    """The anchors of a page's headings, as the usual renderers make them, and its explicit ones."""
    text = re.sub(r"^(```|~~~).*?^\1[^\n]*$", "", text, flags=re.M | re.S)
    anchors = set(re.findall(r"<a\s+(?:id|name)=\"([^\"]+)\"", text))
    seen = {}
    for heading in re.findall(r"^#{1,6}\s+(.*?)\s*#*$", text, re.M):
        heading = re.sub(r"!?\[([^\]]*)\]\([^)]*\)", r"\1", heading).replace("`", "")
        slug = re.sub(r"[^\w\- ]", "", heading.strip().lower()).replace(" ", "-")
        number = seen.get(slug, 0)
        seen[slug] = number + 1
        anchors.add(f"{slug}-{number}" if number else slug)
    return anchors


def links_of(text):
    """The targets of all links and pictures of a page, and the references without a target."""
    text = without_code(text)
    defined = {name.lower(): target for name, target
               in re.findall(r"^ {0,3}\[([^\]]+)\]:\s*<?([^\s>]+)", text, re.M)}
    targets = [match[0] or match[1] for match in
               re.findall(r"\]\(\s*(?:<([^>]*)>|([^()\s]*(?:\([^()\s]*\)[^()\s]*)*))(?:\s+[\"'(].*?)?\s*\)", text)]
    targets += re.findall(r"<(?:img|a|source)\s[^>]*?(?:src|href|srcset)=\"([^\"]+)\"", text)
    undefined = []
    for name in re.findall(r"\]\[([^\]]+)\]", text):
        if name.lower() in defined:
            targets.append(defined[name.lower()])
        else:
            undefined.append(name)
    return targets + list(defined.values()), undefined


def exists_exactly(path):
    """Whether a file or folder has exactly this name: some file systems pass over the case."""
    return path.exists() and (path.name in ("", "..") or path.name in {p.name for p in path.parent.iterdir()})


def dead_links(page, root):
    """What is wrong with the links of a page, one text each."""
    text = page.read_text("utf-8")
    targets, undefined = links_of(text)
    wrong = [f"the reference [{name}] has no target" for name in undefined]
    for target in targets:
        if OUTSIDE.match(target):
            continue
        name, _, anchor = urllib.parse.unquote(target).partition("#")
        if name.startswith("/"):
            wrong.append(f"{target} is absolute")
            continue
        file = (page.parent / name).resolve() if name else page
        if not file.is_relative_to(root):
            wrong.append(f"{target} leads out of the project")
        elif not exists_exactly(file):
            wrong.append(f"{target} is not there")
        elif anchor and file.suffix == ".md" and anchor not in anchors_of(file.read_text("utf-8")):
            wrong.append(f"{target}: there is no such heading")
    return wrong


def local_targets(page):
    """The files that a page links to."""
    names = (urllib.parse.unquote(target).partition("#")[0] for target in links_of(page.read_text("utf-8"))[0]
             if not OUTSIDE.match(target))
    return {(page.parent / name).resolve() for name in names if name}


def unlinked(files, pages):
    """The files that none of the pages links to."""
    linked = {target for page in pages for target in local_targets(page)}
    return [file for file in files if file.resolve() not in linked]


def reachable_from(start):
    """The pages to which links lead from a page, over other pages."""
    found, waiting = set(), [start.resolve()]
    while waiting:
        page = waiting.pop()
        if page not in found and page.suffix == ".md" and page.exists():
            found.add(page)
            waiting += local_targets(page)
    return found
