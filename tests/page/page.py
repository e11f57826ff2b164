"""The page in a real browser, against the native program.

usage: page.py PAGE PROGRAM SAMPLES AXE      AXE is the checker of accessibility; where it is missing, so is its test
"""

import json
import pathlib
import random
import subprocess
import sys
import tempfile
import unittest

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import WebDriverWait

PAGE, PROGRAM, SAMPLES, AXE = (pathlib.Path(argument).resolve() for argument in sys.argv[1:5])
SPOILED_FILES = 1000


def start_browser(downloads):
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    for argument in ("--headless=new", "--no-sandbox", "--disable-dev-shm-usage", "--disable-gpu"):
        options.add_argument(argument)
    options.add_experimental_option("prefs", {"download.default_directory": str(downloads)})
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
    return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)


def spoil(data, draw):
    """One to three faults: a byte changed, a line doubled, dropped, cut or put elsewhere."""
    for _ in range(draw.randint(1, 3)):
        lines = data.split(b"\r\n")[:-1]
        at = draw.randrange(len(lines))
        line = bytearray(lines[at])
        kind = draw.randrange(8)
        if kind < 4 and line:
            line[draw.randrange(len(line))] = draw.choice(b"0123459 AO-.'\xe7<")
            lines[at] = bytes(line)
        elif kind == 4:
            lines.insert(at, lines[at])
        elif kind == 5 and len(lines) > 1:
            del lines[at]
        elif kind == 6:
            lines[at] = bytes(line[: draw.randrange(len(line) + 1)])
        else:
            lines.insert(draw.randrange(len(lines) + 1), lines.pop(at))
        data = b"".join(one + b"\r\n" for one in lines)
    return data


class Page(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.work = pathlib.Path(cls.folder.name)
        cls.browser = start_browser(cls.work)
        cls.addClassCleanup(cls.folder.cleanup)
        cls.addClassCleanup(cls.browser.quit)

    def setUp(self):
        self.browser.get(PAGE.as_uri())
        self.wait(lambda b: b.execute_script("return document.body.dataset.ready") == "yes")

    def wait(self, condition, seconds=60):
        return WebDriverWait(self.browser, seconds, 0.05).until(condition)

    def element(self, name):
        return self.browser.find_element(By.ID, name)

    def write(self, name, data):
        path = self.work / name
        path.write_bytes(data)
        return path

    def choose(self, *paths):
        before = int(self.browser.execute_script("return document.body.dataset.done || 0"))
        self.element("file").send_keys("\n".join(str(path) for path in paths))
        self.wait(lambda b: int(b.execute_script("return document.body.dataset.done || 0")) == before + len(paths), 300)

    def report(self):
        saved = self.work / "relatorio-tremvik.json"
        saved.unlink(missing_ok=True)
        self.browser.execute_script("document.getElementById('form').value = 'json'")
        self.element("save").click()
        self.wait(lambda b: saved.exists())
        return json.loads(saved.read_text(encoding="utf-8"))

    def test_the_findings_are_those_of_the_program(self):
        files = sorted(SAMPLES.glob("*.txt"))
        draw = random.Random(20120301)
        sample = subprocess.run([PROGRAM, "exemplo", "--declaracoes", "2"], check=True, capture_output=True).stdout
        for number in range(SPOILED_FILES):
            files.append(self.write(f"mudado-{number:04}.txt", spoil(sample, draw)))
        self.choose(*files)
        shown = self.report()
        call = [PROGRAM, "validar", "--todos", "--relatorio", "json", "--pasta", self.work / "casa", *files]
        native = json.loads(subprocess.run(call, capture_output=True).stdout)
        for one in native["arquivos"]:
            one["arquivo"] = pathlib.Path(one["arquivo"]).name
        self.assertGreater(shown["resumo"]["recusados"], SPOILED_FILES // 2)
        for ours, theirs in zip(shown["arquivos"], native["arquivos"], strict=True):
            self.assertEqual(ours, theirs)

    def test_nothing_leaves(self):
        """No request but the page itself, not even an attempt that the policy stops."""
        self.browser.get_log("performance")
        self.browser.get_log("browser")
        self.setUp()
        self.choose(SAMPLES / "recusado-letra-em-valor.txt")
        self.report()
        events = [json.loads(entry["message"])["message"] for entry in self.browser.get_log("performance")]
        urls = {e["params"]["request"]["url"] for e in events if e["method"] == "Network.requestWillBeSent"}
        self.assertEqual({url for url in urls if not url.startswith("blob:")}, {PAGE.as_uri()})
        self.assertEqual(self.browser.get_log("browser"), [])

    def test_what_a_file_holds_is_text(self):
        sample = (SAMPLES / "aceito.txt").read_bytes()
        lines = sample.split(b"\r\n")
        markup = b"<img src=x onerror=document.title=1>"
        lines[1] = markup + lines[1][len(markup) :]
        lines.insert(2, b"<script>document.title='x'</script>\x00\x1b[2J\x9d\xad")
        self.choose(self.write("<b onclick=x>&amp; \u202etxt.exe.txt", b"\r\n".join(lines)))
        for query in ("#result img", "#result script", "#list b", "#findings b"):
            self.assertEqual(self.browser.find_elements(By.CSS_SELECTOR, query), [])
        self.assertIn("<img src=x", self.element("findings").text)
        self.assertTrue(self.browser.title.startswith("Tremvik"))

    def test_odd_files_end_in_a_sentence(self):
        sample = (SAMPLES / "aceito.txt").read_bytes()
        junk = self.write("lixo.txt", random.Random(1).randbytes(20_000_000))
        gone = self.write("some.txt", sample)
        self.element("file").send_keys(f"{junk}\n{gone}")
        gone.unlink()
        self.wait(lambda b: b.execute_script("return document.body.dataset.done") == "2", 120)
        again = self.write("de-novo.txt", sample)
        self.choose(again)
        self.choose(again, self.write("vazio.txt", b""))
        states = [entry.text for entry in self.browser.find_elements(By.CSS_SELECTOR, "#list button")]
        self.assertEqual([text.split("\n")[1] for text in states],
                         ["recusado", "não examinado", "aceito", "aceito", "recusado"])
        self.browser.find_elements(By.CSS_SELECTOR, "#list button")[1].click()
        self.assertIn("mudou ou desapareceu", self.element("verdict").text)

    def test_a_message_is_looked_up_and_the_keyboard_suffices(self):
        self.element("query").send_keys("tabela 3 cr 10 campo basecalculo inconsistente")
        self.wait(lambda b: "CR10-" in self.element("found").text)
        reached = []
        self.browser.execute_script("document.activeElement.blur(); scrollTo(0, 0)")
        for _ in range(12):
            ActionChains(self.browser).send_keys(Keys.TAB).perform()
            reached.append(self.browser.switch_to.active_element.get_attribute("id"))
        self.assertLess(reached.index("file"), reached.index("folder"))
        self.choose(SAMPLES / "recusado-letra-em-valor.txt")
        self.browser.find_element(By.CSS_SELECTOR, "#list button").send_keys(Keys.ENTER)
        self.assertEqual(self.browser.switch_to.active_element.get_attribute("id"), "result")
        neighbours = self.browser.find_element(By.CSS_SELECTOR, ".finding button")
        neighbours.send_keys(" ")
        self.assertIn("95 │", self.browser.find_element(By.CSS_SELECTOR, ".finding .lines").text)

    @unittest.skipUnless(AXE.is_file(), "the checker of accessibility is not there")
    def test_accessibility(self):
        self.choose(SAMPLES / "recusado-letra-em-valor.txt", SAMPLES / "aceito.txt")
        self.element("query").send_keys("CR10-11")
        for scheme in ("light", "dark"):
            feature = {"features": [{"name": "prefers-color-scheme", "value": scheme}]}
            self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", feature)
            self.browser.execute_script(AXE.read_text(encoding="utf-8"))
            found = self.browser.execute_async_script("axe.run().then(arguments[0])")
            faults = [(v["id"], [n["target"] for n in v["nodes"]]) for v in found["violations"]]
            self.assertEqual(faults, [], scheme)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
