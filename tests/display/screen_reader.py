# SPDX-License-Identifier: GPL-3.0-or-later
"""screen_reader.py <species file>

Finds the running editor, which shows this file, on the accessibility bus and edits it: fields by their
names, text through the text interface, buttons and menus by their actions. Ends with an error when
something is not there, has another role than it should, or does not say what it shows.
"""
import os
import subprocess
import sys
import time

import pyatspi
from gi.repository import GLib

PATIENCE = 30  # seconds
APPLICATION = "zoravel-entry-edit"
POINTS = "10 2\n10.5 4\n11 1\n"

# Fields by name, in the order of the form.
SPECIES_FIELDS = ["Name", "Aliases", "Mass / amu", "Sum formula", "InChI", "CAS number", "PubChem CID",
                  "AIE / eV", "Comment / DOI of the AIE", "VIE / eV", "Comment / DOI of the VIE"]
SPECTRUM_FIELDS = ["Title", "Uploader", "Spect. DOI", "Further citations (expt., source, light source etc.)",
                   "Source", "Source T / K", "Resolution / meV", "Flux normalization", "Date & facility",
                   "Comments: mass resolution, extraction field, details of spectral treatment, "
                   "sample / isomeric purity etc.", "Spectrum, I(hv / eV)"]


def wait_for(what, condition):
    end = time.monotonic() + PATIENCE
    while True:
        found = condition()
        if found:
            return found
        if time.monotonic() > end:
            sys.exit(f"waited {PATIENCE} s in vain for {what}")
        time.sleep(0.1)


def children(element):
    for i in range(element.childCount):
        child = element.getChildAtIndex(i)
        if child is not None:
            yield child


def descendants(element, shown=True):
    yield element
    for child in children(element):
        if not shown or is_shown(child):
            yield from descendants(child, shown)


def is_shown(element):
    states = element.getState()
    return states.contains(pyatspi.STATE_SHOWING) and states.contains(pyatspi.STATE_VISIBLE)


def labels(element):
    """The names of what labels an element, which come before its own for a screen reader."""
    return [relation.getTarget(i).name for relation in element.getRelationSet()
            if relation.getRelationType() == pyatspi.RELATION_LABELLED_BY
            for i in range(relation.getNTargets())]


def matches(element, role, name):
    return element.getRole() == role and (element.name == name or name in labels(element))


def find(root, role, name, shown=True):
    """The one element of this role and name; more than one is as bad as none. What is in a menu or a
    list that is not open can be found, too, but not if it has to be shown."""
    def look():
        return [e for e in descendants(root, shown) if matches(e, role, name)]
    found = wait_for(f"{pyatspi.Role.__repr__(role)} {name!r}", look)
    if len(found) > 1:
        sys.exit(f"{len(found)} elements are called {name!r}")
    return found[0]


def field(root, name):
    element = find(root, pyatspi.ROLE_TEXT, name)
    if not element.getState().contains(pyatspi.STATE_EDITABLE):
        sys.exit(f"{name!r} cannot be edited")
    return element


def text_of(element):
    text = element.queryText()
    return text.getText(0, text.characterCount)


def take_focus(element):
    element.queryComponent().grabFocus()
    wait_for(f"the focus in {element.name!r}",
             lambda: element.getState().contains(pyatspi.STATE_FOCUSED))


def press(*keys):
    subprocess.run(["xdotool", "key", "--delay", "20", *keys], check=True)


def type_into(element, text):
    take_focus(element)
    element.queryEditableText().setTextContents(text)
    wait_for(f"the text in {element.name!r}", lambda: text_of(element) == text)


def act(element, action="Press"):
    actions = element.queryAction()
    names = [actions.getName(i) for i in range(actions.nActions)]
    if action not in names:
        sys.exit(f"{element.name!r} has no action {action} but {names}")
    actions.doAction(names.index(action))


def check_every_focusable_element(root):
    """What takes the keyboard must have a name, and none twice in its form."""
    count = 0
    names = set()
    for element in descendants(root):
        states = element.getState()
        if not states.contains(pyatspi.STATE_FOCUSABLE) \
                or element.getRole() in (pyatspi.ROLE_LIST_ITEM, pyatspi.ROLE_PAGE_TAB):
            continue
        count += 1
        name = (labels(element) or [element.name])[0] if element.getRole() == pyatspi.ROLE_COMBO_BOX \
            else element.name
        if not name.strip():
            sys.exit(f"an element of role {element.getRoleName()} has no name")
        if (element.getRoleName(), name) in names:
            sys.exit(f"two elements of role {element.getRoleName()} are called {name!r}")
        names.add((element.getRoleName(), name))
    return count


def pump():
    """Lets events in."""
    while GLib.MainContext.default().iteration(False):
        pass


def main():
    path = sys.argv[1]
    desktop = pyatspi.Registry.getDesktop(0)
    program = wait_for("the program", lambda: next(
        (child for child in children(desktop) if child.name == APPLICATION), None))
    window = wait_for("the main window", lambda: next(
        (child for child in children(program) if os.path.basename(path) in child.name), None))

    for name in SPECIES_FIELDS + SPECTRUM_FIELDS:
        field(window, name)
    focusable = check_every_focusable_element(window)
    if focusable < 30:
        sys.exit(f"only {focusable} elements take the keyboard")

    type_into(field(window, "Name"), "Read aloud")
    type_into(field(window, "Aliases"), "one\ntwo")
    type_into(field(window, "Title"), "By ear")

    kind = find(window, pyatspi.ROLE_COMBO_BOX, "Type")
    take_focus(field(window, "Spect. DOI"))
    press("Tab")
    wait_for("the focus in the type", lambda: kind.getState().contains(pyatspi.STATE_FOCUSED))
    press("Down", "Down")
    wait_for("the type", lambda: kind.name == "TPES")

    chart = find(window, pyatspi.ROLE_CHART, "Chart of the spectrum")
    before = chart.description
    if " points from " not in before or "eV" not in before:
        sys.exit(f"the chart only says {before!r}")
    changes = []
    pyatspi.Registry.registerEventListener(
        lambda event: changes.append(event.source.name), "object:property-change:accessible-description")
    type_into(field(window, "Spectrum, I(hv / eV)"), POINTS)
    expected = "By ear: 3 points from 10.0000 eV to 11.0000 eV, highest at 10.5000 eV, intensity 4.00"
    wait_for("the chart to describe the new points", lambda: chart.description == expected)
    act(find(window, pyatspi.ROLE_PUSH_BUTTON, "Normalize"))
    expected = expected.replace("4.00", "1000.00")
    wait_for("the chart to describe the normalised points", lambda: chart.description == expected)
    wait_for("the chart to announce them", lambda: pump() or chart.name in changes)

    lines = find(window, pyatspi.ROLE_CHECK_BOX, "Line spectrum")
    act(lines, "Toggle")
    wait_for("the check mark", lambda: lines.getState().contains(pyatspi.STATE_CHECKED))

    modified = os.stat(path).st_mtime_ns
    act(find(window, pyatspi.ROLE_MENU_ITEM, "Save", shown=False))
    wait_for("the file to be saved", lambda: os.stat(path).st_mtime_ns != modified)


main()
