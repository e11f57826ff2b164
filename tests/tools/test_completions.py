"""Completions offer what --help tells, verb by verb. usage: test_completions.py PROGRAM FOLDER"""

import pathlib
import re
import subprocess
import sys
import unittest

PROGRAM, FOLDER = map(pathlib.Path, sys.argv[1:3])


def help_of(words):
    text = subprocess.run([PROGRAM, *words, "--help"], check=True, capture_output=True, text=True).stdout
    options = set()
    for line in re.findall(r"^  (-\S.*?)(?:  |$)", text, re.MULTILINE):
        options |= {name for name in re.split(r"[, ]+", line) if name.startswith("-")}
    verbs = re.search(r"^Verbos:\n((?:  .*\n)+)", text, re.MULTILINE)
    return options, set(re.findall(r"^  ([a-z]+) ", verbs.group(1), re.MULTILINE)) if verbs else set()


def bash_offers(words):
    line = " ".join(f"'{word}'" for word in ["tremvik", *words])
    script = f"source {FOLDER}/tremvik.bash; COMP_WORDS=({line}); COMP_CWORD={len(words)}; _tremvik; " + 'printf "%s\\n" "${COMPREPLY[@]}"'
    return set(subprocess.run(["bash", "-c", script], check=True, capture_output=True, text=True).stdout.split())


class Completions(unittest.TestCase):
    def verbs(self, words=()):
        yield list(words)
        for verb in sorted(help_of(words)[1]):
            yield from self.verbs([*words, verb])

    def test_every_shell_offers_what_help_tells(self):
        fish = (FOLDER / "tremvik.fish").read_text(encoding="utf-8")
        zsh = (FOLDER / "_tremvik").read_text(encoding="utf-8")
        seen = 0
        for words in self.verbs():
            options, verbs = help_of(words)
            self.assertTrue(options, words)
            self.assertEqual(bash_offers([*words, "-"]), options, words)
            self.assertLessEqual(verbs, bash_offers([*words, ""]), words)
            for name in options:
                self.assertIn(f"'{name}[", zsh)
                if words:
                    self.assertIn(f" -l {name[2:]} " if name.startswith("--") else f" -s {name[1:]} ", fish)
            for verb in verbs:
                self.assertIn(f" -a {verb} -d ", fish)
            seen += 1
        self.assertGreater(seen, 7)
        self.assertEqual(bash_offers(["validar", "--responder", "s"]), {"sim"})


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
