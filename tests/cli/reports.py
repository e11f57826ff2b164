"""Stories of reports: every fault of files, told to people and programs."""

import hashlib
import json
import resource
import shutil

import jsonschema

from command import SAMPLES, Story, main

ACCEPTED = SAMPLES / "aceito.txt"
LETTER = SAMPLES / "recusado-letra-em-valor.txt"
ALL = sorted(SAMPLES.glob("*.txt"))


def without_first_declaration(content):
    """The file without its first declaration, so that all other lines stand elsewhere."""
    lines = content.splitlines(keepends=True)
    headers = [at for at, line in enumerate(lines) if line.startswith(b"05")]
    lines[0] = lines[0][:26] + b"%04d" % (len(headers) - 1) + lines[0][30:]
    return b"".join([lines[0], *lines[headers[1]:]])


class Reports(Story):
    def report(self, *arguments):
        run = self.run_piped("validar", "--relatorio", "json", *arguments)
        document = json.loads(run.out)
        jsonschema.validate(document, json.loads(self.run_piped("esquema").out))
        return run, document

    def test_the_document_tells_of_each_file_what_an_import_tells(self):
        schema = self.run_piped("esquema")
        self.assertEqual(schema.raw, (SAMPLES.parent / "docs" / "relatorio.schema.json").read_bytes())
        jsonschema.Draft7Validator.check_schema(json.loads(schema.out))
        plain = {}
        for one in self.run_piped("validar", *ALL, "--json").objects():
            plain.setdefault(one["arquivo"], []).append(one)
        for options in ((), ("--todos",)):
            run, document = self.report(*ALL, "nada.txt", *options)
            self.assertEqual(run.status, 2)
            self.assertIn('o arquivo "nada.txt" não existe', run.err)
            self.assertEqual(document["tabelas"], hashlib.sha256((self.home / "tblFixas.fix").read_bytes()).hexdigest())
            self.assertEqual([file["arquivo"] for file in document["arquivos"]], [*map(str, ALL), "nada.txt"])
            for path, file in zip(ALL, document["arquivos"]):
                objects = plain[str(path)]
                own = [one for one in file["inconsistencias"] if one["doImportador"]]
                self.assertEqual(file["sha256"], hashlib.sha256(path.read_bytes()).hexdigest())
                self.assertEqual((file["estado"], file["tamanho"]), (objects[-1]["estado"], path.stat().st_size))
                self.assertEqual([[one[key] for key in ("regra", "linha", "coluna", "campo", "valor", "porque")] for one in own
                                  if one["regra"] != "ARQ-01" and "LF" not in one["porque"]],
                                 [[one[key] for key in ("regra", "linha", "posicao", "campo", "valor", "porque")]
                                  for one in objects if one["tipo"] == "inconsistencia" and
                                  not ("--todos" in options and "-lf" in path.name)])
                self.assertTrue(own or file["estado"] == "aceito")
                self.assertTrue(options or own == file["inconsistencias"])
            summary = document["resumo"]
            self.assertEqual(summary["faltas"] + summary["avisos"], sum(summary["porRegra"].values()))
            self.assertEqual((summary["arquivos"], summary["aceitos"], summary["erros"]), (len(ALL) + 1, 1, 1))

    def test_text_shows_each_finding_in_its_place_and_explains_a_rule_once(self):
        content = bytearray(LETTER.read_bytes())
        content[content.index(b"\n", content.index(b"\n10") + 1) + 25] = ord("x")  # a second letter in another amount
        name = self.write("f.txt", bytes(content)).name
        run = self.run_piped("validar", name, "--todos")
        self.assertEqual(run.status, 1)
        self.assertRegex(run.out, r"^f.txt: recusado \(6 declarações, 114 registros\): 2 faltas\n\nlinha 4, registro 10")
        self.assertIn('valor "0O0000070146080"\n', run.out)
        self.assertRegex(run.out, r"\n   96 │ 107102000000000701460800O0.*\n      │ {25}\^\n  Mensagem: Tabela 3, CR=10")
        self.assertEqual(run.out.count("(o que a importação diz hoje)"), 1)
        self.assertEqual((run.out.count("O que se pede:"), run.out.count("Como mendar: veja a linha 4\n")), (1, 1))
        self.assertTrue(run.out.endswith("\n\n2 faltas.\n1 arquivo: 0 aceitos, 1 recusado.\n"))
        concise = self.run_piped("validar", name, "--todos", "--relatorio", "conciso").out.splitlines()
        self.assertEqual(concise[-1], "f.txt:96:24: CR10-11 Tabela 3, CR=10, Campo - BaseCálculo Inconsistente, Posição 24")
        for columns in (60, 80, 120):
            shown = self.run_on_terminal("validar", name, "--todos", columns=columns, NO_COLOR="1").out
            self.assertLessEqual(max(map(len, shown.split("\r\x1b[K")[-1].splitlines())), columns)

    def test_the_limit_is_kept_and_told(self):
        lines = ACCEPTED.read_bytes().splitlines(keepends=True)
        self.write("f.txt", b"".join(line[:3] + b"x" + line[4:] for line in lines))
        run, document = self.report("f.txt", "--todos", "--limite", "3")
        self.assertEqual((len(document["arquivos"][0]["inconsistencias"]), document["arquivos"][0]["limitado"]), (3, True))
        self.assertGreater(len(self.report("f.txt", "--todos", "--limite", "0")[1]["arquivos"][0]["inconsistencias"]), 3)
        self.assertIn("O limite de 3 inconsistências foi atingido", self.run_piped("validar", "f.txt", "--todos", "--limite", "3").out)

    def test_known_findings_do_not_count_wherever_they_stand(self):
        self.write("f.txt", LETTER.read_bytes())
        self.assertEqual(self.run_piped("validar", "f.txt", "--todos", "--gravar-linha-de-base", "base.json").status, 1)
        for content in (LETTER.read_bytes(), without_first_declaration(LETTER.read_bytes())):
            self.write("f.txt", content)
            run, document = self.report("./f.txt", "--todos", "--linha-de-base", "base.json")
            file = document["arquivos"][0]
            self.assertEqual((run.status, run.err, file["estado"]), (0, "", "recusado"))
            self.assertEqual((file["inconsistencias"], file["conhecidas"]), ([], 1))
        header = content.rindex(b"\n05") + 1
        self.write("f.txt", content[:header + 30] + b"9" + content[header + 31:])  # the CNAE is zeros
        run, document = self.report("f.txt", "--todos", "--linha-de-base", "base.json")
        self.assertEqual((run.status, [one["regra"] for one in document["arquivos"][0]["inconsistencias"]]), (1, ["CR05-07"]))
        self.write("f.txt", ACCEPTED.read_bytes())
        run = self.run_piped("validar", "f.txt", "--todos", "--linha-de-base", "base.json")
        self.assertEqual(run.status, 0)
        self.assertIn('Da linha de base, não está mais no arquivo:\n- CR10-11, registro 10, campo BaseCálculo', run.out)
        self.assertIn("1 inconsistência da linha de base", run.err)
        for text, reason in (("{", "não é um texto JSON"), ("[]", "não tem a forma"), ('{"linhaDeBase":2}', "outra versão")):
            self.write("base.json", text.encode())
            run = self.run_piped("validar", "f.txt", "--linha-de-base", "base.json")
            self.assertEqual((run.status, run.out), (2, ""))
            self.assertIn(reason, run.err)

    def test_a_report_is_written_whole_or_not_at_all(self):
        self.write("velho.json", b"velho")
        call = ("validar", *ALL, "--relatorio", "json", "--saida")
        full = lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (5000, 5000))  # the report is longer
        self.assertEqual(self.run_piped("validar", ACCEPTED).status, 0)
        run = self.run_piped(*call, "velho.json", preexec_fn=full)
        self.assertEqual((run.status, (self.folder / "velho.json").read_bytes()), (2, b"velho"))
        self.assertIn('não foi possível escrever o relatório em "velho.json"', run.err)
        for target in ("nenhuma/r.json", "/dev/full"):
            self.assertEqual(self.run_piped(*call, target).status, 2)
        copy = self.write("f.txt", b"x" + LETTER.read_bytes())
        for arguments in (("f.txt", "--saida", "./f.txt"), ("f.txt", "--gravar-linha-de-base", "f.txt")):
            self.assertIn("não será sobrescrito", self.run_piped("validar", *arguments, "--todos").err)
        self.assertEqual(copy.read_bytes(), b"x" + LETTER.read_bytes())
        run = self.run_piped(*call, "velho.json")
        self.assertEqual((run.status, run.err), (1, ""))
        self.assertTrue(run.out.endswith(f'{len(ALL)} arquivos: 1 aceito, {len(ALL) - 1} recusados.\nRelatório em "velho.json".\n'))
        self.assertEqual(len(json.loads((self.folder / "velho.json").read_text(encoding="utf-8"))["arquivos"]), len(ALL))
        self.assertEqual({path.name for path in self.folder.iterdir()}, {"casa", "f.txt", "velho.json"})


class Folders(Story):
    def test_all_files_below_are_taken_in_order_and_the_summary_counts_them(self):
        for name in ("b/2.txt", "b/a/1.TXT", "b/nota.md", "a.txt"):
            (self.folder / "pasta" / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(ACCEPTED if name == "a.txt" else LETTER, self.folder / "pasta" / name)
        (self.folder / "pasta" / "b" / "volta").symlink_to("..")
        names = lambda run: [line.split(":")[0] for line in run.out.splitlines() if line.startswith("pasta")]
        everything = ["pasta/a.txt", "pasta/b/2.txt", "pasta/b/a/1.TXT", "pasta/b/nota.md"]
        for options in ((), ("--todos",)):
            run = self.run_piped("validar", "pasta", *options)
            self.assertEqual((run.status, names(run)), (1, everything))
            run = self.run_piped("validar", "pasta/", "--padrao", "?.t*T", "--so-recusados", *options)
            self.assertEqual((run.status, names(run)), (1, everything[1:3]))
            self.assertIn("Vezes  Regra    Título\n    2  CR10-11  BaseCálculo", run.out)
            self.assertRegex(run.out, r"Vezes  Arquivo\n    1  pasta/b/2.txt\n    1  pasta/b/a/1.TXT\n\n2 faltas.\n"
                                      r"3 arquivos: 1 aceito, 2 recusados.\n$")
        run = self.run_piped("validar", "pasta", "--padrao", "*.csv")
        self.assertEqual((run.status, run.out), (2, ""))
        self.assertIn('na pasta "pasta" não há arquivo que sirva a "*.csv"', run.err)
        with (self.folder / "r.txt").open("wb") as out:
            for options in ((), ("--todos",)):
                shown = self.run_on_terminal("validar", "pasta", *options, stdout=out).out
                self.assertIn("100% 4 de 4 arquivos", shown)
        self.assertNotIn(b"\x1b", (self.folder / "r.txt").read_bytes())
        shown = self.run_on_terminal("validar", "pasta", "--todos").out
        self.assertIn("pasta/a.txt: \x1b[32maceito\x1b[0m", shown)
        self.assertIn("pasta/b/2.txt: \x1b[1;31mrecusado\x1b[0m", shown)


main()
