"""The catalogue of rules and the sources speak of the same rules, by code, text and field.

usage: test_rules.py TREMVIK     (the program)
"""
import csv
import pathlib
import re
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
import rules_page

CORE = [path.read_text(encoding="utf-8") for folder in ("records", "passes", "component", "host")
        for path in sorted((ROOT / folder).glob("*.cpp"))]
with open(ROOT / "data" / "regras.csv", encoding="utf-8", newline="") as file:
    RULES = list(csv.DictReader(file))
with open(ROOT / "data" / "exemplos.csv", encoding="utf-8", newline="") as file:
    EXAMPLES = list(csv.DictReader(file))


class Rules(unittest.TestCase):
    def test_each_code_stands_at_one_rule_and_in_the_catalogue(self):
        in_sources = [code for text in CORE for code in re.findall(r'"((?:CR\d\d|ARQ)-\d\d)"', text)]
        self.assertEqual(len(in_sources), len(set(in_sources)), "a code stands at two rules")
        errors = re.findall(r"constexpr int k\w+ = (\d+);", (ROOT / "host/runtime_error.h").read_text(encoding="utf-8"))
        self.assertEqual(sorted(rule["codigo"] for rule in RULES), sorted(in_sources + [f"ERR-{number}" for number in errors]))

    def test_each_rule_has_an_example_or_the_reason_why_nothing_breaks_it(self):
        self.assertEqual([example["codigo"] for example in EXAMPLES], [rule["codigo"] for rule in RULES])
        for example in EXAMPLES:
            self.assertNotEqual(bool(example["motivo"]), bool(example["registros"]), example["codigo"])

    def test_each_text_is_one_of_the_sources(self):
        sources = "\n".join(CORE)
        for rule in RULES:
            for text in rule["texto1"], rule["texto2"]:
                for piece in re.split(r"\{\}|(?<=CR=)\d\d(?= informado)|^\d+ - ", text):
                    self.assertIn(piece or "", sources, rule["codigo"])

    def test_each_field_is_one_of_the_layouts(self):
        for rule in RULES:
            for field in rule["campos"].split():
                kind, name = field.split(".")
                layout = (ROOT / "layout" / f"{kind.lower()}.h").read_text(encoding="utf-8")
                self.assertIn(f'{{"{name}",', layout, rule["codigo"])

    def test_each_rule_is_explained(self):
        for rule in RULES:
            for column in "titulo", "explicacao", "como_mendar", "texto1":
                self.assertTrue(rule[column].strip(), f"{rule['codigo']}: {column}")

    def test_the_page_is_fresh(self):
        self.assertEqual((ROOT / "docs/regras.md").read_text(encoding="utf-8"), rules_page.page(ROOT, sys.argv[1]), "./dev docs writes it")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
