"""Stories of people who ask what a message means, and what stands in a file."""

import json
import re

from command import SAMPLES, Story, main

FAULTY = SAMPLES / "recusado-letra-em-valor.txt"


class Explaining(Story):
    def test_a_message_as_it_was_heard_leads_to_its_rule_and_its_line(self):
        by_code = self.run_piped("explicar", "cr10-11")
        self.assertEqual((by_code.status, by_code.err), (0, ""))
        for part in ("CR10-11   ", "  Mensagem: Tabela 3, CR=10, Campo - BaseCálculo Inconsistente, Posição 24\n",
                     "  O que se pede: ", "  Como mendar: "):
            self.assertIn(part, by_code.out)
        heard = self.run_piped("explicar", "TABELA 3 cr 10 campo base calculo\ninconsistente, linha 96")
        self.assertTrue(heard.out.startswith(by_code.out), heard.out)
        shared = self.run_piped("explicar", "codsubitem inconsistente para esta referencia posicao 3")
        self.assertEqual(shared.out.count("\nCR20-"), 13)
        self.assertIn("\nTambém parecidas:\nCR20-10 ", shared.out)
        found = self.run_piped("explicar", "campo base calculo", FAULTY)
        self.assertEqual(re.findall(r"^(?:CR|linha )\S+", found.out, re.M), ["CR10-11", "linha 96,"])
        nothing = self.run_piped("explicar", "CR10-10", FAULTY)
        self.assertIn("nada é recusado por essa regra.", nothing.out)
        line = self.run_piped("explicar", FAULTY, "--linha", 96)
        for part in ("\n   84    CR=05 declaração 439.180.564.971, 01/2003\n", "\n  ✗ BaseCálculo         24 a 38    \"0O00",
                     "\n    Imposto             39 a 53    175.365,20\n", "\n  ✗ CR10-11: Tabela 3, CR=10", "\n  Como mendar: "):
            self.assertIn(part, line.out)
        self.assertIn("Nada está errado nesta linha.", self.run_piped("explicar", FAULTY, "--linha", 95).out)
        for arguments, said in ((("CR10-99",), "a regra CR10-99 não existe"), (("bom dia a todos",), "nenhuma regra tem"),
                                ((FAULTY, "--linha", 999), "termina na 114"), (("CR10-11", "nada.txt"), "não existe")):
            run = self.run_piped("explicar", *arguments)
            self.assertEqual((run.status, run.out), (2, ""))
            self.assertIn(said, run.err)

    def test_programs_read_the_same(self):
        one, = self.run_piped("explicar", "arq3", "--json").objects()
        self.assertEqual((one["tipo"], one["regra"], one["melhor"], one["semelhanca"]), ("regra", "ARQ-03", True, 1))
        all_rules = self.run_piped("regras", "--json").objects()
        codes = [rule["regra"] for rule in all_rules]
        listed = re.findall(r"^((?:CR|ARQ|ERR)\S*-\d+) ", self.run_piped("regras").out, re.M)
        self.assertEqual(listed, codes)
        of_kind = [rule["regra"] for rule in self.run_piped("regras", "--json", "--registro", "cr=31").objects()]
        self.assertEqual(of_kind, [code for code in codes if code.startswith("CR31-")])
        record, rule = self.run_piped("explicar", FAULTY, "--linha", 96, "--json").objects()
        self.assertEqual((record["linha"], record["pai"], rule["regra"]), (96, 84, "CR10-11"))
        self.assertEqual([finding["campo"] for finding in record["inconsistencias"]], ["BaseCálculo"])

    def test_a_file_is_shown_as_a_tree_with_its_fault(self):
        objects = self.run_piped("mostrar", FAULTY, "--json").objects()
        self.assertEqual([one["linha"] for one in objects[:-1]], list(range(1, 115)))
        self.assertEqual((objects[-1]["estado"], objects[-1]["inconsistencias"]), ("recusado", 1))
        self.assertEqual([one["linha"] for one in objects[:-1] if one["inconsistencias"]], [96])
        lines = FAULTY.read_bytes().decode("cp1252").split("\r\n")
        for one in objects[:-1]:  # the fields by their columns are the line, but for its code
            for field in one["campos"]:
                begin = field["coluna"] - 1
                self.assertEqual(field["valor"], lines[one["linha"] - 1][begin:begin + field["largura"]])
        chosen = self.run_piped("mostrar", FAULTY, "--declaracao", "439180564971,01/2003", "--json").objects()[:-1]
        self.assertEqual((chosen[0]["linha"], {one["nivel"] for one in chosen} - {1, 2, 3, 4}), (84, set()))
        text = self.run_piped("mostrar", FAULTY, "--linha", "95-97").out
        self.assertEqual(re.findall(r"^ +(\d+)  ", text, re.M), ["1", "84", "95", "96", "97"])
        self.assertIn("recusado, 1 falta.", text)

    def test_a_broken_file_is_shown_as_far_as_it_goes(self):
        whole = (SAMPLES / "aceito.txt").read_bytes()
        for name, content, said in (("marca", b"\xef\xbb\xbf" + whole, "marca de ordem de bytes"),
                                    ("lf", whole.replace(b"\r\n", b"\n"), "só com LF"),
                                    ("lixo", bytes(range(256)) * 40, "Linha: \""),
                                    ("cortado", whole[:-20], "(falta)"),
                                    ("terminal", b"01\x1b]0;x\x07\x9b31m\r\n" + whole, "\\x1B]\" · DataGeração: \"0;x\\x07›31m\"")):
            with self.subTest(name):
                self.write(name, content)
                run = self.run_piped("mostrar", name)
                self.assertEqual((run.status, run.err), (0, ""))
                self.assertIn(said, " ".join(run.out.split()))
                self.assertNotRegex(run.out, "[\x00-\x09\x0b-\x1f\x7f-\x9f]")
                json.loads(run.out and self.run_piped("mostrar", name, "--json").raw.splitlines()[-1])

    def test_what_people_read_fits_their_terminal(self):
        for columns in (60, 80, 120):
            for arguments in (("explicar", "CR10-53"), ("explicar", "ref inconsistente"), ("regras",), ("mostrar", FAULTY),
                              ("explicar", FAULTY, "--linha", 96)):
                run = self.run_on_terminal(*arguments, columns=columns)
                text = re.sub("\x1b\\[[0-9;]*m", "", run.out)
                self.assertEqual([line for line in text.splitlines() if len(line) > columns], [])


main()
