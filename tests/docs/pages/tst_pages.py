# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks the Markdown pages of the project, and that the check itself finds what is wrong."""
import json
import pathlib
import re
import tempfile
import unittest
import xml.etree.ElementTree

import pages

ROOT = pathlib.Path(__file__).resolve().parents[3]
DOCS = ROOT / "docs"

GOOD_PAGE = """# A title
[here](#a-title), [there](b.md#part-2-an-example), ![picture](p/a%20b.png "text"), [folder](p/),
[far](https://example.org/nothing), [named][ref], <img src="p/a b.png">, `[no](link.md)`

```sh
# no heading
[no](link.md)
```

[ref]: b.md
"""
OTHER_PAGE = "# B\n## Part 2: `an` example\n## Part 2: an example\n[second](#part-2-an-example-1)\n"
BAD_LINKS = {
    "[x](c.md)": "c.md is not there",
    "[x](B.md)": "B.md is not there",
    "![x](p/c.png)": "p/c.png is not there",
    "[x](#nothing)": "#nothing: there is no such heading",
    "[x](b.md#an-example)": "b.md#an-example: there is no such heading",
    "[x](b.md#part-2-an-example-2)": "b.md#part-2-an-example-2: there is no such heading",
    "[x](#no-heading)": "#no-heading: there is no such heading",
    "[x](/etc/hosts)": "/etc/hosts is absolute",
    "[x](../..)": "../.. leads out of the project",
    "[x][nothing]": "the reference [nothing] has no target",
    "<a href=\"c.md\">x</a>": "c.md is not there",
    "[x](<c d.md>)": "c d.md is not there",
}


class CheckTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name).resolve()
        (self.root / "p").mkdir()
        (self.root / "p/a b.png").touch()
        (self.root / "b.md").write_text(OTHER_PAGE, "utf-8")
        self.page = self.root / "a.md"

    def test_good_pages_have_no_dead_links(self):
        self.page.write_text(GOOD_PAGE, "utf-8")
        for page in pages.pages_under(self.root):
            self.assertEqual(pages.dead_links(page, self.root), [])

    def test_each_dead_link_is_found(self):
        for link, wrong in BAD_LINKS.items():
            self.page.write_text(GOOD_PAGE + "\n" + link + "\n", "utf-8")
            self.assertEqual(pages.dead_links(self.page, self.root), [wrong], link)

    def test_unlinked_files_are_found(self):
        self.page.write_text("[b](b.md)", "utf-8")
        picture = self.root / "p/a b.png"
        self.assertEqual(pages.unlinked([picture], [self.page]), [picture])
        self.assertEqual(pages.reachable_from(self.page), {self.page, self.root / "b.md"})
        self.page.write_text(GOOD_PAGE, "utf-8")
        self.assertEqual(pages.unlinked([picture], [self.page]), [])


class PagesTest(unittest.TestCase):
    def test_links_lead_somewhere(self):
        found = pages.pages_under(ROOT)
        self.assertGreaterEqual(len(found), 8)
        wrong = [f"{page.relative_to(ROOT)}: {text}" for page in found for text in pages.dead_links(page, ROOT)]
        self.assertEqual(wrong, [])

    def test_every_page_can_be_reached_from_the_index(self):
        reached = pages.reachable_from(DOCS / "README.md")
        self.assertEqual([page.name for page in DOCS.glob("*.md") if page not in reached], [])
        self.assertIn(DOCS / "README.md", pages.reachable_from(ROOT / "README.md"))

    def test_every_picture_is_shown(self):
        pictures = list(DOCS.rglob("*.png"))
        self.assertGreaterEqual(len(pictures), 1)
        self.assertEqual(pages.unlinked(pictures, pages.pages_under(ROOT)), [])

    def test_files_that_pages_name_are_there(self):
        """Names in code type, such as `app/mainwindow.ui`, whose folder is one of the project."""
        wrong, checked = [], 0
        for page in DOCS.glob("*.md"):
            for name in re.findall(r"`((?:[\w.-]+/)+[\w-]+\.(?:cpp|h|ui|md|py|cmake|qrc|json|\*))`",
                                   page.read_text("utf-8")):
                if (ROOT / name.split("/")[0]).is_dir():
                    checked += 1
                    if not list(ROOT.glob(name)):
                        wrong.append(f"{page.name}: {name}")
        self.assertEqual(wrong, [])
        self.assertGreaterEqual(checked, 10)

    def test_the_architecture_names_every_folder(self):
        page = (DOCS / "architecture.md").read_text("utf-8")
        hidden = {"build"}
        folders = [folder.name for folder in ROOT.iterdir() if folder.is_dir()
                   and folder.name not in hidden and not folder.name.startswith((".", "_"))]
        self.assertGreaterEqual(len(folders), 12)
        self.assertEqual([name for name in folders if f"| `{name}/` |" not in page], [])

    def test_the_guide_has_every_message(self):
        """The texts of the boxes, as the sources have them."""
        shown = re.compile(r"(?:showMessage|warn|QMessageBox::warning|box\.setText|box\.setInformativeText)\(([^;]*)\);")
        messages = set()
        for folder in ("app", "spectrum", "database"):
            for source in (ROOT / folder).glob("*.cpp"):
                text = re.sub(r'"\s*"', "", source.read_text("utf-8"))
                for arguments in shown.findall(text):
                    literals = re.findall(r'"((?:[^"\\]|\\.)*)"', arguments)
                    messages |= {literal.replace("%1", "...") for literal in literals[-1:]
                                 if len(literal.split()) > 2 and "%2" not in literal}
        # No button leads to it: without a file, stepping asks for a folder.
        messages.remove("No current file loaded to step from.")
        self.assertGreaterEqual(len(messages), 20)
        guide = (DOCS / "guide.md").read_text("utf-8")
        self.assertEqual(sorted(message for message in messages if message not in guide), [])

    def test_menu_entries_that_pages_name_are_there(self):
        form = xml.etree.ElementTree.parse(ROOT / "app/mainwindow.ui")

        def text(element, name):
            return element.find(f"property[@name='{name}']/string").text.replace("&", "").removesuffix("...")

        actions = {action.get("name"): text(action, "text") for action in form.iter("action")}
        entries = {f"{text(menu, 'title')} > {actions[action.get('name')]}"
                   for menu in form.iter("widget") if menu.get("class") == "QMenu"
                   for action in menu.findall("addaction") if action.get("name") != "separator"}
        self.assertGreaterEqual(len(entries), 12)
        titles = {entry.split(" > ")[0] for entry in entries}
        named = 0
        for page in pages.pages_under(ROOT):
            text_of_page = " ".join(page.read_text("utf-8").split())
            for at in re.finditer(rf"\b(?:{'|'.join(titles)}) > ", text_of_page):
                named += 1
                words = text_of_page[at.start():]
                self.assertTrue(any(words.startswith(entry) for entry in entries), f"{page.name}: {words[:40]}")
            # What is meant by the editor is a menu entry, and says in which menu it stands.
            self.assertEqual(re.findall(r"editor's \*\*.*?\*\*", text_of_page), [], page.name)
        self.assertGreaterEqual(named, 15)

    def test_the_keyboard_page_has_every_shortcut(self):
        form = xml.etree.ElementTree.parse(ROOT / "app/mainwindow.ui")
        page = (DOCS / "keyboard.md").read_text("utf-8")
        keys = [key.text for action in form.iter("action")
                for key in action.findall("property[@name='shortcut']/string")]
        self.assertGreaterEqual(len(keys), 10)
        rows = re.findall(r"^\| `([^`]+)` \|", page, re.M)
        self.assertEqual([key for key in keys if key not in rows], [])


class ExamplesTest(unittest.TestCase):
    """Who finds an energy in an example shall not take it for a measured one."""

    def test_energies_without_a_source_are_called_illustrative(self):
        examples = sorted((ROOT / "examples").glob("*.json"))
        self.assertGreaterEqual(len(examples), 8)
        for example in examples:
            species = json.loads(example.read_text("utf-8"))["Species"]
            for field in ("AIE", "VIE"):
                self.assertEqual(species[f"{field}_Comment"], "illustrative value, not from a cited source",
                                 example.name)
                # No more digits than an illustration needs.
                self.assertRegex(species[field], r"^[0-9]+\.[0-9]{1,2}$", example.name)

    def test_invented_points_cite_nobody(self):
        for example in sorted((ROOT / "examples").glob("*.json")):
            for key, spectrum in json.loads(example.read_text("utf-8")).items():
                if key.startswith("Dataset"):
                    self.assertEqual(spectrum["FurtherRefs"] + spectrum["DOI"], "", f"{example.name}: {key}")


if __name__ == "__main__":
    unittest.main(verbosity=2)
