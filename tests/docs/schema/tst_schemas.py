# SPDX-License-Identifier: GPL-3.0-or-later
"""tst_schemas.py <resave>: the JSON Schemas in docs/schema against the examples, against what the editor
writes, and against files that are wrong in one place.

A schema is right if it accepts what the editor keeps and refuses what it would drop or replace. So every
file here, right or wrong, also goes through the editor (the program resave, which opens and saves), and
what comes out must agree with the schema's answer.
"""
import copy
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

from jsonschema import Draft202012Validator, FormatChecker

ROOT = pathlib.Path(__file__).resolve().parents[3]
RESAVE = None  # the program
KINDS = ("species", "spectrum", "database")
TYPE = {"species": "Species v1", "spectrum": "Spectrum v1", "database": "Database v1"}
SCHEMAS = {kind: json.loads((ROOT / f"docs/schema/{kind}-file.schema.json").read_text("utf-8"))
           for kind in KINDS}
EXAMPLES = sorted((ROOT / "examples").glob("*.json"))
SAMPLES = {"string": "text", "number": 1.5, "integer": 1, "boolean": True, "null": None,
           "array": [1], "object": {"E": 1}}


def errors(kind, value):
    validator = Draft202012Validator(SCHEMAS[kind], format_checker=FormatChecker())
    return [f"{error.json_path}: {error.message[:120]}" for error in validator.iter_errors(value)]


def read(path):
    return json.loads(path.read_text("utf-8"))


def documented_examples():
    """The whole examples of docs/file-formats.md, by their kind."""
    page = (ROOT / "docs/file-formats.md").read_text("utf-8")
    blocks = [json.loads(block) for block in re.findall(r"^```json\n(.*?)^```$", page, re.M | re.S)]
    return [(kind, block) for block in blocks for kind in KINDS if block.get("Type") == TYPE[kind]]


def table_rows(heading):
    """The cells of the rows that name a key, in all tables below a heading of docs/file-formats.md."""
    page = (ROOT / "docs/file-formats.md").read_text("utf-8")
    section = page.split(f"\n{heading}\n", 1)[1].split("\n### ", 1)[0]
    return [[cell.strip().strip("`") for cell in line.strip("|").split("|")]
            for line in section.splitlines() if line.startswith("| `")]


def documented(kind):
    return next(value for this, value in documented_examples() if this == kind)


def through_editor(kind, values):
    """What the editor makes of files: for each the object that it saves, or None if it refuses it."""
    with tempfile.TemporaryDirectory() as folder:
        paths = [pathlib.Path(folder, f"{number}.json") for number in range(len(values))]
        for path, value in zip(paths, values):
            path.write_text(json.dumps(value), "utf-8")
        answers = run_editor(kind, *paths)
        assert len(answers) == len(values), answers
        return [read(path) if answer == "saved" else None for path, answer in zip(paths, answers)]


def run_editor(*arguments):
    run = subprocess.run([RESAVE, *map(str, arguments)], check=True, stdout=subprocess.PIPE,
                         stderr=subprocess.PIPE, encoding="utf-8", timeout=300)
    return run.stdout.splitlines()


# --- what the editor keeps ---

def six_digits(number):
    return float(f"{number:.6g}")


def spectrum_is_kept(given, saved):
    has_objects = "Spectrum" in given
    for key, value in given.items():
        if key == "Spectrum":
            continue
        if key in ("E", "I") and not has_objects:
            value = [six_digits(number) for number in value]
        if saved.get(key) != value:
            return False
    return not has_objects or all(
        [six_digits(point.get(key, 0)) for point in given["Spectrum"]] == saved[key] for key in ("E", "I"))


def profile_is_kept(given, saved):
    for key, value in given.items():
        if key == "Aliases":
            value = value.replace("\r\n", "<br>").replace("\n", "<br>")
        if key == "StructuralFormula":
            # The image is written afresh.
            if not isinstance(value, str) or bool(value) != bool(saved.get(key)):
                return False
        elif key not in saved or saved[key] != value or isinstance(value, bool):
            return False
    return True


def is_kept(kind, given, saved):
    try:
        if kind == "spectrum":
            return spectrum_is_kept(given, saved)
        datasets = sorted(key for key in given if re.fullmatch(r"Dataset[0-9]+", key))
        return (set(given) <= {"Type", "Species", *datasets} and given["Type"] == saved["Type"]
                and profile_is_kept(given.get("Species", {}), saved["Species"])
                and all(spectrum_is_kept(given[key], saved[f"Dataset{number}"])
                        for number, key in enumerate(datasets, 1)))
    except (AttributeError, TypeError, ValueError):
        return False  # something has another type now, or had


# --- files that are wrong in one place ---

def at(value, path):
    for key in path:
        value = value[key]
    return value


def changed(value, path, new):
    """A copy of value with another value at a path."""
    result = copy.deepcopy(value)
    at(result, path[:-1])[path[-1]] = new
    return result


def without(value, path):
    result = copy.deepcopy(value)
    del at(result, path[:-1])[path[-1]]
    return result


def paths_in(value, path=()):
    """The paths of all members and of the first element of arrays."""
    members = value.items() if isinstance(value, dict) else enumerate(value[:1])
    for key, member in members:
        yield (*path, key)
        if isinstance(member, (dict, list)):
            yield from paths_in(member, (*path, key))


def json_types(value):
    if isinstance(value, bool):
        return {"boolean"}
    if isinstance(value, (int, float)):
        return {"number", "integer"} if float(value).is_integer() else {"number"}
    return {{str: "string", list: "array", dict: "object", type(None): "null"}[type(value)]}


def wrongly_typed(value):
    """(what is wrong, the file) for every member of a file and every type that it must not have."""
    for path in paths_in(value):
        right = json_types(at(value, path))
        number = "number" in right
        for name, sample in SAMPLES.items():
            wrong = name not in right and not (number and name in ("number", "integer"))
            if path[-1] == "SpectType" and name == "number":
                wrong = True
            if wrong:
                yield f"{'/'.join(map(str, path))} is of type {name}", changed(value, path, sample)


def with_unknown_keys(value):
    """The file with one more key in each of its objects."""
    places = [()] + [path for path in paths_in(value) if isinstance(at(value, path), dict)]
    for path in places:
        for key in ("Comment", "title", "Dataset", "dataset1", "Dataset1a", "Entry0"):
            yield f"{'/'.join(map(str, path))} has {key}", changed(value, (*path, key), {})


def other_kinds_keys(value, place):
    """Keys of simulations in experiments and the other way round."""
    spectrum = at(value, place)
    is_simulation = spectrum.get("SpectType") == 4
    foreign = (("Source", "Resolution", "Normalization") if is_simulation
               else ("LevelOfTheory", "ConvolutionFWHM", "AIE"))
    for key in foreign:
        yield f"{'/'.join(place)} has {key}", changed(value, (*place, key), "text")


def odd_species_files():
    """Files that conform, though the editor never writes them so."""
    yield "only a type", {"Type": "Species v1"}
    yield "empty objects", {"Type": "Species v1", "Species": {}, "Dataset1": {}}
    yield "gaps and zeros", {"Type": "Species v1", "Dataset007": {"Title": "A"}, "Dataset3": {"Title": "B"},
                             "Dataset10": {"Title": "C"}}
    yield "points as objects", {"Type": "Species v1",
                                "Dataset1": {"Spectrum": [{"E": 9.5, "I": 2}, {"E": 9.6}, {}]}}
    yield "line feeds", {"Type": "Species v1", "Species": {"Aliases": "a\r\nb\nc<br>d"}}
    yield "angle brackets", {"Type": "Species v1", "Species": {"Name": "<sup>a</sup> > b &amp; c < d"},
                             "Dataset1": {"Source": "<i>as it stands</i>", "FurtherComments": "c > d"}}
    yield "many digits", {"Type": "Species v1", "Species": {"Mass": 78.1118123456},
                          "Dataset1": {"E": [9.24378123, 1e-300], "I": [1234567, -0.5]}}


def broken_texts():
    """Texts that saving would change."""
    for text in ("<i>E</i>", "<BR>", "<span style='x'>a", "1 < 2 and 3 > 2", "<subject>", "a\n<b>"):
        yield f"Name is {text!r}", {"Type": "Species v1", "Species": {"Name": text}}
        yield f"Title is {text!r}", {"Type": "Species v1", "Dataset1": {"Title": text}}


class SchemasTest(unittest.TestCase):
    def assert_accepted(self, kind, value, name):
        self.assertEqual(errors(kind, value), [], name)

    def assert_refused(self, kind, value, name):
        self.assertNotEqual(errors(kind, value), [], f"the schema accepts that {name}")

    def test_schemas_are_schemas(self):
        for kind in KINDS:
            self.assertEqual(SCHEMAS[kind]["$schema"], "https://json-schema.org/draft/2020-12/schema")
            Draft202012Validator.check_schema(SCHEMAS[kind])

    def test_shared_definitions_are_the_same(self):
        for name in ("markup", "text", "species", "spectrum"):
            found = [SCHEMAS[kind]["$defs"][name] for kind in KINDS if name in SCHEMAS[kind]["$defs"]]
            self.assertGreaterEqual(len(found), 2, name)
            self.assertTrue(all(definition == found[0] for definition in found), name)

    def test_page_and_schemas_say_the_same(self):
        """The tables of docs/file-formats.md: keys, types, markup and defaults."""
        defaults = {"empty": "", "0": 0, "false": False, "no points": [], "no image": ""}
        definitions = SCHEMAS["species"]["$defs"]
        for heading, name in (("### The profile", "species"), ("### A spectrum", "spectrum")):
            properties = dict(definitions[name]["properties"])
            properties.pop("Spectrum", None)  # the second form of the points has no table
            rows = table_rows(heading)
            self.assertEqual(sorted(row[0] for row in rows), sorted(properties))
            for key, kind, *_, default in rows:
                schema = properties[key]
                kinds = kind.split(", ")
                reference = schema.get("$ref", "").removeprefix("#/$defs/")
                self.assertEqual("markup" in kinds, reference == "markup", key)
                self.assertEqual("as it stands" in kinds, reference == "text", key)
                resolved = definitions[reference] if reference else schema
                json_type = "integer" if "integer" in kinds else kinds[0].split(" ")[0]
                self.assertEqual(resolved["type"], json_type, key)
                self.assertEqual(schema["default"], defaults[default], key)

    def test_examples_conform_and_are_kept(self):
        self.assertGreaterEqual(len(EXAMPLES), 8)
        values = [read(path) for path in EXAMPLES]
        for path, value, saved in zip(EXAMPLES, values, through_editor("species", values)):
            self.assert_accepted("species", value, path.name)
            self.assert_accepted("species", saved, f"{path.name}, saved")
            self.assertTrue(is_kept("species", value, saved), path.name)
            for key in value:
                if key.startswith("Dataset"):
                    self.assert_accepted("spectrum", {**value[key], "Type": "Spectrum v1"}, key)

    def test_examples_of_the_page_conform_and_are_kept(self):
        self.assertEqual({kind for kind, _ in documented_examples()}, set(KINDS))
        for kind, value in documented_examples():
            self.assert_accepted(kind, value, kind)
            if kind != "database":
                [saved] = through_editor(kind, [value])
                self.assertTrue(is_kept(kind, value, saved), kind)

    def test_saved_spectra_conform_and_are_kept(self):
        spectra = [{**value, "Type": "Spectrum v1"} for path in EXAMPLES
                   for key, value in read(path).items() if key.startswith("Dataset")]
        spectra += [{"Type": "Spectrum v1"}, {"Type": "Spectrum v1", "SpectType": 4, "AIE": "9.2"}]
        for value, saved in zip(spectra, through_editor("spectrum", spectra)):
            self.assert_accepted("spectrum", value, value.get("Title"))
            self.assert_accepted("spectrum", saved, value.get("Title"))
            self.assertTrue(is_kept("spectrum", value, saved), value.get("Title"))

    def test_compiled_databases_conform(self):
        with tempfile.TemporaryDirectory() as folder:
            for layout in ("compact", "indented"):
                output = pathlib.Path(folder, f"{layout}.json")
                self.assertEqual(run_editor(layout, output, *EXAMPLES), ["saved"])
                database = read(output)
                self.assert_accepted("database", database, layout)
                self.assertEqual(output.read_bytes().count(b"\n") > 1, layout == "indented")
                for number, path in enumerate(EXAMPLES, 1):
                    self.assertEqual({**database[f"Entry{number}"], "Type": "Species v1"}, read(path))
                self.assertEqual(len(database), len(EXAMPLES) + 2)

    def test_odd_files_conform_and_are_kept(self):
        odd = list(odd_species_files())
        for (name, value), saved in zip(odd, through_editor("species", [value for _, value in odd])):
            self.assert_accepted("species", value, name)
            self.assert_accepted("species", saved, f"{name}, saved")
            self.assertTrue(is_kept("species", value, saved), name)

    def check_broken(self, kind, broken, through_editor_each=1):
        """Every file is refused, and the editor does not keep it, or each so many of them, either."""
        self.assertGreater(len(broken), 0)
        for name, value in broken:
            self.assert_refused(kind, value, name)
        broken = broken[::through_editor_each]
        for (name, value), saved in zip(broken, through_editor(kind, [value for _, value in broken])):
            if saved is not None:
                self.assertFalse(is_kept(kind, value, saved), f"refused, but kept: {name}")
                self.assert_accepted(kind, saved, f"{name}, saved")

    def test_wrong_types_are_refused(self):
        for kind in ("species", "spectrum"):
            broken = list(wrongly_typed(documented(kind)))
            self.assertGreater(len(broken), 80)
            # Files of single spectra go through dialogs, which takes long; the same spectra go in species files.
            self.check_broken(kind, broken, 5 if kind == "spectrum" else 1)
        for name, value in wrongly_typed(documented("database")):
            self.assert_refused("database", value, name)
        self.check_broken("species", list(wrongly_typed(
            {"Type": "Species v1", "Dataset1": {"Spectrum": [{"E": 9.5, "I": 2}]}})))

    def test_unknown_keys_are_refused(self):
        for kind in ("species", "spectrum"):
            self.check_broken(kind, list(with_unknown_keys(documented(kind))))
        for name, value in with_unknown_keys(documented("database")):
            self.assert_refused("database", value, name)

    def test_keys_of_the_other_kind_are_refused(self):
        species = documented("species")
        broken = [case for key in species if key.startswith("Dataset")
                  for case in other_kinds_keys(species, (key,))]
        self.assertGreaterEqual(len(broken), 6)
        self.check_broken("species", broken)
        self.check_broken("spectrum", list(other_kinds_keys(documented("spectrum"), ())))

    def test_two_forms_of_points_are_refused(self):
        self.check_broken("spectrum", [
            ("it has E and I beside Spectrum",
             {"Type": "Spectrum v1", "Spectrum": [{"E": 9, "I": 1}], "E": [8], "I": [1]}),
            ("it has no I", {"Type": "Spectrum v1", "E": [8]}),
            ("it has no E", {"Type": "Spectrum v1", "I": [8]})])

    def test_texts_that_would_be_changed_are_refused(self):
        self.check_broken("species", list(broken_texts()))
        self.check_broken("species", [
            ("the image is no base64", {"Type": "Species v1", "Species": {"StructuralFormula": "!§"}})])

    def test_wrong_or_missing_type_is_refused(self):
        for kind in KINDS:
            value = documented(kind)
            wrong = [without(value, ("Type",))]
            wrong += [changed(value, ("Type",), other) for other in
                      (*(TYPE[other] for other in KINDS if other != kind), TYPE[kind].lower(),
                       TYPE[kind] + " ", "")]
            for broken in wrong:
                self.assert_refused(kind, broken, f"the type of a {kind} file is {broken.get('Type')}")
            if kind != "database":
                self.assertEqual(set(map(str, through_editor(kind, wrong))), {"None"})
        header = documented("database")["Header"]
        for broken in [without(documented("database"), ("Header", key)) for key in header]:
            self.assert_refused("database", broken, "a key of the header is missing")
        self.assert_refused("database", without(documented("database"), ("Header",)), "there is no header")
        for date in ("today", "21.11.2026", "2026-13-01"):
            self.assert_refused("database", changed(documented("database"), ("Header", "Date"), date), date)

    def test_types_that_are_not_in_the_list_are_refused(self):
        for number in (-1, 6, 1.5):
            self.assert_refused("spectrum", {"Type": "Spectrum v1", "SpectType": number}, str(number))

    def test_missing_and_mistyped_values_become_the_default(self):
        definitions = SCHEMAS["species"]["$defs"]
        for name, place in (("species", "Species"), ("spectrum", "Dataset1"), ("spectrum", "Dataset2")):
            given = documented("species")
            wanted = {key: definitions[name]["properties"][key]["default"] for key in given[place]}
            empty = changed(given, (place,), {})
            if place == "Dataset2":
                self.assertEqual(given[place]["SpectType"], 4)
                empty[place]["SpectType"] = wanted["SpectType"] = 4
            mistyped = changed(given, (place,), {key: None for key in given[place]} | empty[place])
            for saved in through_editor("species", [empty, mistyped]):
                # Without any image, the key stays away.
                saved[place].setdefault("StructuralFormula", "")
                self.assertEqual({key: saved[place][key] for key in wanted}, wanted)


if __name__ == "__main__":
    RESAVE = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main(verbosity=2)
