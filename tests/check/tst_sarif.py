#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks the SARIF that `zoravel check` writes: tst_sarif.py ZORAVEL.

Against the public schema of the format, and for what a schema cannot say.
"""

import json
import os
import pathlib
import subprocess
import sys
import unittest
import urllib.parse

import jsonschema

HERE = pathlib.Path(__file__).resolve().parent
DATA = HERE.parent / "data" / "bad"
SCHEMA = json.loads((HERE.parent / "data" / "sarif-2.1.0.schema.json").read_text(encoding="utf-8"))
ZORAVEL = sys.argv.pop()


def report(form, *paths):
    """The report on paths, and the status."""
    command = [ZORAVEL, "check", "--format", form, "-j", "2", *paths]
    done = subprocess.run(command, cwd=DATA, capture_output=True, check=False)
    return json.loads(done.stdout), done.returncode


class Sarif(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.sarif, cls.status = report("sarif", ".")

    def test_it_is_valid(self):
        jsonschema.Draft7Validator.check_schema(SCHEMA)
        jsonschema.validate(self.sarif, SCHEMA)

    def test_it_is_valid_without_results(self):
        sarif, status = report("sarif", "json-syntax/near")
        self.assertEqual((status, sarif["runs"][0]["results"]), (0, []))
        jsonschema.validate(sarif, SCHEMA)

    def test_the_schema_refuses_what_is_wrong(self):
        broken = json.loads(json.dumps(self.sarif))
        del broken["runs"][0]["results"][0]["message"]["text"]
        with self.assertRaises(jsonschema.ValidationError):
            jsonschema.validate(broken, SCHEMA)

    def test_results_name_rules_that_exist(self):
        run = self.sarif["runs"][0]
        rules = run["tool"]["driver"]["rules"]
        self.assertEqual(len({rule["id"] for rule in rules}), len(rules))
        for result in run["results"]:
            self.assertEqual(rules[result["ruleIndex"]]["id"], result["ruleId"])

    def test_places_are_those_of_the_other_report(self):
        plain, status = report("json", ".")
        self.assertEqual(status, self.status)
        results = self.sarif["runs"][0]["results"]
        self.assertEqual(len(results), len(plain["findings"]))
        self.assertGreater(len(results), 100)
        for result, finding in zip(results, plain["findings"]):
            place = result["locations"][0]["physicalLocation"]
            self.assertEqual(urllib.parse.unquote(place["artifactLocation"]["uri"]), os.path.normpath(finding["path"]))
            self.assertEqual(place["region"]["startLine"], finding["line"])
            self.assertEqual(place["region"]["startColumn"], finding["column"])
            self.assertEqual(result["ruleId"], finding["id"])
            self.assertEqual(result["level"], finding["severity"])

    def test_places_lead_to_what_they_name(self):
        """Columns count characters, and pointers resolve to what stands there."""
        plain, _ = report("json", ".")
        resolved = 0
        for finding in plain["findings"]:
            path = DATA / finding["path"]
            if not finding["pointer"] or finding["id"] in ("unreadable", "not-utf8", "json-syntax"):
                continue
            text = path.read_text(encoding="utf-8")
            line = text.split("\n")[finding["line"] - 1]
            rest = line[finding["column"] - 1:]
            self.assertTrue(rest and not rest[0].isspace(), finding)
            value = json.loads(text.lstrip("\ufeff"))
            for step in finding["pointer"].split("/")[1:]:
                step = step.replace("~1", "/").replace("~0", "~")
                value = value[int(step)] if isinstance(value, list) else value[step]
            if isinstance(value, str) and not rest.startswith(json.dumps(finding["pointer"].split("/")[-1])):
                decoded, _ = json.JSONDecoder().raw_decode(rest)
                self.assertEqual(decoded, value)
                resolved += 1
        self.assertGreater(resolved, 30)


if __name__ == "__main__":
    unittest.main()
