"""Stories of the reports that other tools read: each read by a reader of its own, hostile names and contents too."""

import csv
import html.parser
import io
import json
import re
import urllib.parse
import xml.etree.ElementTree

from command import SAMPLES, Story, main

ALL = sorted(SAMPLES.glob("*.txt"))
LETTER = SAMPLES / "recusado-letra-em-valor.txt"
HOSTILE_NAME = "=<b>&\"'%,;:\n::error::x\u202e110042490114.txt"
HOSTILE_VALUE = b"=<b>&\"';\x1b]0;\x9d%]"
UNSEEN = re.compile("[\x00-\x08\x0b\x0c\x0e-\x1f\x7f-\x9f\u200e\u200f\u202a-\u202e\u2066-\u2069\ufeff]")


class Page(html.parser.HTMLParser):
    def __init__(self, text):
        super().__init__()
        self.tags, self.links, self.ids, self.marked, self.text = set(), set(), set(), [], ""
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        self.tags.add(tag)
        self.links |= {value for name, value in attributes if name in ("href", "src", "action", "style") or name[:2] == "on"}
        self.ids |= {"#" + value for name, value in attributes if name == "id"}
        self.marked += [""] * (tag == "mark")

    def handle_data(self, data):
        self.text += data
        if self.marked and self.lasttag == "mark" and not self.marked[-1]:
            self.marked[-1] = data


class Formats(Story):
    def setUp(self):
        super().setUp()
        at = LETTER.read_bytes().rindex(b"0O0000070146080")
        content = LETTER.read_bytes()
        self.write(HOSTILE_NAME, content[:at] + HOSTILE_VALUE.ljust(15, b"0") + content[at + 15:])
        self.names = [*map(str, ALL), HOSTILE_NAME, "nada.txt"]
        self.files = json.loads(self.told("json"))["arquivos"]
        self.findings = [(file["arquivo"], one) for file in self.files for one in file["inconsistencias"]]
        self.assertGreater(len(self.findings), len(ALL))

    def told(self, form, *options):
        run = self.run_piped("validar", *self.names, "--todos", "--relatorio", form, *options)
        self.assertEqual(run.status, 2)
        self.assertNotRegex(run.out.removeprefix("\ufeff"), UNSEEN)
        return run.out

    def test_sarif(self):
        run, = json.loads(self.told("sarif"))["runs"]
        rules = [rule["id"] for rule in run["tool"]["driver"]["rules"]]
        self.assertEqual(len(rules), len(set(rules)))
        places = []
        for result in run["results"]:
            place = result["locations"][0]["physicalLocation"]
            region = place.get("region", {})
            self.assertEqual(rules[result["ruleIndex"]], result["ruleId"])
            places.append((urllib.parse.unquote(place["artifactLocation"]["uri"]).removeprefix("file://"), result["ruleId"],
                           region.get("startLine", 0), region.get("startColumn", 0), region.get("endColumn", 0)))
        self.assertEqual(places, [(name, one["regra"], one["linha"], one["coluna"], one["coluna"] and one["coluna"] + one["largura"])
                                  for name, one in self.findings])
        unread = sum(len(file["naoExaminado"]) + (file["estado"] == "erro") for file in self.files)
        self.assertEqual(len(run["invocations"][0]["toolExecutionNotifications"]), unread)
        fingerprints = lambda content: [one["partialFingerprints"] for one in json.loads(self.run_piped(
            "validar", self.write("f.txt", content), "--todos", "--relatorio", "sarif").out)["runs"][0]["results"]]
        lines = LETTER.read_bytes().splitlines(keepends=True)
        second = [at for at, line in enumerate(lines) if line.startswith(b"05")][1]
        lines[0] = lines[0].replace(b"0006\r", b"0005\r")
        self.assertEqual(fingerprints(LETTER.read_bytes()), fingerprints(b"".join([lines[0], *lines[second:]])))

    def test_junit(self):
        suites = list(xml.etree.ElementTree.fromstring(self.told("junit").encode()))
        self.assertEqual(len(suites), len(self.files))
        for suite, file, name in zip(suites, self.files, self.names):
            cases = suite.findall("testcase")
            failed = [case for case in cases if case.find("failure") is not None]
            self.assertEqual([suite.get(key) for key in ("tests", "failures", "errors", "skipped")],
                             [str(n) for n in (len(cases), len(failed), len(suite.findall("*/error")), len(suite.findall("*/skipped")))])
            self.assertEqual(bool(failed), file["estado"] == "recusado")
            if file["estado"] == "aceito":
                headers = [line for line in (SAMPLES / name).read_bytes().split(b"\n") if line.startswith(b"05")]
                self.assertEqual([re.search(r"\d{12}", case.get("name"))[0] for case in cases], [line[2:14].decode() for line in headers])
        self.assertIn("linha 96, coluna 24: CR10-11 ", "".join(suites[-2].itertext()))

    def test_csv(self):
        text = self.told("csv")
        self.assertTrue(text.startswith("\ufeff") and "\n" not in text.replace("\r\n", ""))
        rows = list(csv.DictReader(io.StringIO(text[1:], newline=""), delimiter=";"))
        self.assertFalse([cell for row in rows for cell in row.values() if cell[:1] in "=+-@" and cell])
        told = [row for row in rows if row["regra"]]
        self.assertEqual([(row["regra"], row["linha"]) for row in told],
                         [(one["regra"], str(one["linha"] or "")) for name, one in self.findings])
        self.assertIn("'=<b>&\"';\u241b]0;\ufffd%]", [row["valor"] for row in told])
        self.assertEqual({row["arquivo"] for row in rows if row["estado"] == "aceito"}, {str(SAMPLES / "aceito.txt")})

    def test_github(self):
        lines = self.told("github").splitlines()
        told = [re.fullmatch(r"::(error|warning) file=([^,:]*)((?:,\w+=\d+)*),title=([^,:]*)::(.*)", line) for line in lines]
        self.assertNotIn(None, told)
        self.assertEqual([(one[4], one[1] == "error") for one in told if "-" in one[4]],
                         [(one["regra"], one["tipo"] == "falta") for name, one in self.findings])
        hostile, = [one for one in told if "%3Cb" in one[2] or "=<b>" in one[2]]
        self.assertEqual(urllib.parse.unquote(hostile[2]), HOSTILE_NAME.replace("\n", "\u240a").replace("\u202e", "\ufffd"))
        self.assertEqual(hostile[3], ",line=96,endLine=96,col=24,endColumn=38")

    def test_html(self):
        page = Page(self.told("html"))
        self.assertFalse(page.tags & {"script", "b>", "img", "link", "iframe", "object", "base", "form"})
        self.assertEqual({link for link in page.links if link not in page.ids}, set())
        for name, one in self.findings:
            for words in one["mensagem"].split("\r\n"):
                self.assertIn(words, page.text)
        self.assertIn("=<b>&\"'", page.text)
        self.assertIn("O", page.marked)
        self.assertIn("=<b>&\"';\u241b]", page.marked)

    def test_masked_reports_hold_no_number_of_the_taxpayers(self):
        columns = {b"05": ((2, 14), (14, 28)), b"25": ((2, 14),), b"26": ((2, 14),), b"27": ((2, 14),)}
        numbers = {line[first:end] for name in self.names[:-1] for line in (self.folder / name).read_bytes().split(b"\n")
                   for first, end in columns.get(line[:2], ())}
        plain = {number.decode() for number in numbers if re.fullmatch(rb"\d{12,14}", number) and number.strip(b"0")}
        dotted = {f"{n[:3]}.{n[3:6]}.{n[6:9]}.{n[9:]}" for n in plain if len(n) == 12}
        self.assertGreater(len(plain), 15)
        for form in ("texto", "conciso", "json", "sarif", "junit", "github", "csv", "html"):
            with self.subTest(form):
                text = self.told(form, "--mascarar")
                self.assertEqual([number for number in plain | dotted | {"110042490114"} if number in text], [])
        masked = json.loads(self.told("json", "--mascarar"))["arquivos"]
        place = lambda files: [[(one["regra"], one["linha"], one["coluna"], one["doImportador"]) for one in file["inconsistencias"]]
                               for file in files]
        self.assertEqual(place(masked), place(self.files))
        soma = lambda files: [one["porque"] for file in files for one in file["inconsistencias"] if one["regra"] == "CR20-49"]
        self.assertTrue(soma(self.files) and not set(soma(self.files)) & set(soma(masked)))


main()
