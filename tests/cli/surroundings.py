"""Stories of wrong use, of a machine where something is missing, and of the reference tables."""

import contextlib
import os
import resource
import shutil
import sqlite3
import subprocess
import unittest

from command import PROGRAM, SAMPLES, Story, main

ACCEPTED = SAMPLES / "aceito.txt"

WRONG_USE = (
    ("", "Uso: tremvik VERBO"),
    ("importr x", 'o verbo "importr" não existe (quis dizer "importar"?). Veja: tremvik --help'),
    ("--json", "falta o verbo"),
    ("--pata X importar a", 'a opção "--pata" não existe (quis dizer "--pasta"?)'),
    ("--json exemplo", 'a opção "--json" não serve para exemplo'),
    ("--pasta validar a", 'o verbo "a" não existe'),
    ("importar", "falta ARQUIVO"),
    ("importar a b", "só um ARQUIVO de cada vez"),
    ("importar a --foo", 'a opção "--foo" não existe. Veja: tremvik importar --help'),
    ("importar a --pasta", "--pasta pede um valor"),
    ("importar a --pasta=", "--pasta pede"),
    ("importar a --responder talvez", 'o valor é sim ou nao, e não "talvez"'),
    ("importar a --json=3", "--json não leva valor"),
    ("validar a --paralelo 0", "não é um número inteiro de 1 a 256"),
    ("validar a --limite 5", "--limite pede --todos"),
    ("validar a --todos --json", "o relatório é --relatorio json"),
    ("validar a --relatorio jsom", 'o formato "jsom" não existe (quis dizer "json"?); há: texto'),
    ("listar 123", '"123" não é uma inscrição estadual'),
    ("listar 110042490114 13/2012", '"13/2012" não é uma referência'),
    ("exemplo --declaracoes 10000", "não é um número inteiro de 1 a 9999"),
    ("exemplo --declaracoes 9000 --registros 10", "registros"),
    ("exemplo --regra CR05-15", "nenhum arquivo quebra a regra CR05-15. Só é conferida em referências a partir de 201201"),
    ("exemplo --regra cr99-1", 'não há regra "cr99-1"'),
    ("exemplo --regra CR10-11 --semente 3", "retire as opções de sorteio"),
    ("anonimizar nada.txt", 'o arquivo "nada.txt" não existe'),
    ("exemplo x", 'o argumento "x" sobra'),
    ("tabelas", "construir, verificar ou exportar"),
    ("tabelas verifica x", '(quis dizer "verificar"?). Veja: tremvik tabelas --help'),
    ("tabelas --dados nenhuma construir x", 'a pasta "nenhuma" não existe'),
)


class CommandLine(Story):
    def test_wrong_use_is_said_in_a_sentence(self):
        for line, sentence in WRONG_USE:
            with self.subTest(line):
                run = self.run_piped(*line.split())
                self.assertEqual((run.status, run.out), (2, ""))
                self.assertIn(sentence, run.err)

    def test_options_count_before_the_verb_as_behind_it(self):
        self.assertEqual(self.run_piped("--pasta", "casa", "--json", "importar", ACCEPTED).of("fim")[0]["NroLinha"], 115)
        self.assertTrue((self.home / "tremvik.db").exists())
        self.assertEqual(len(self.run_piped("--pasta=nenhuma", "--json", "listar", "--pasta", "casa").objects()), 6)

    def test_every_verb_has_help_in_portuguese_with_examples(self):
        for verb in ("", "importar", "validar", "explicar", "regras", "mostrar", "listar", "esquema", "exemplo",
                     "anonimizar", "tabelas", "tabelas construir", "tabelas verificar", "tabelas exportar"):
            with self.subTest(verb):
                run = self.run_piped(*verb.split(), "--help")
                self.assertEqual((run.status, run.err), (0, ""))
                self.assertIn(f"Uso: tremvik {verb}".rstrip(), run.out)
                self.assertRegex(run.out, "Exemplos?:\n  tremvik")
                self.assertNotRegex(run.out, "Usage|OPTION|[Oo]ptions|Positionals|REQUIRED|TEXT|Print|Reply|verb\\b")
                self.assertLessEqual(max(map(len, run.out.splitlines())), 80)
                self.assertEqual(self.run_piped("ajuda", *verb.split()).out, run.out)
                for columns in (48, 66):
                    narrow = self.run_on_terminal(*verb.split(), "--help", columns=columns).out.splitlines()
                    wide = [line for line in narrow if len(line) > columns and "tremvik" not in line]
                    self.assertEqual(wide, [])
                for name in ("--versao", "--version"):
                    self.assertRegex(self.run_piped(*verb.split(), name).out, r"^tremvik \d+\.\d+\.\d+\n$")


class Machine(Story):
    def expect_environment(self, sentence, *arguments, stdout=None):
        run = self.run_piped(*arguments) if stdout is None else self.run_piped(*arguments, stdout=stdout)
        self.assertEqual(run.status, 2, run.out + run.err)
        self.assertIn(sentence, run.err)
        return run

    def test_a_file_that_cannot_be_read_is_named_with_what_to_do(self):
        (self.folder / "pasta").mkdir()
        os.mkfifo(self.folder / "canal")
        for name, number, sentence in (("nada.txt", 53, 'o arquivo "nada.txt" não existe.'),
                                       ("pasta", 75, '"pasta" é uma pasta.'),
                                       ("canal", 75, '"canal" não é um arquivo comum.')):
            with self.subTest(name):
                self.expect_environment(sentence, "importar", name)
                run = self.expect_environment(sentence, "importar", name, "--json")
                self.assertEqual([one["tipo"] for one in run.objects()], ["ponteiro", "mensagem", "fim"])
                self.assertTrue(run.of("mensagem")[0]["texto"].startswith(f"Erro {number} -  "))
                self.assertEqual(run.of("fim"), [{"tipo": "fim", "arquivo": name, "estado": "erro", "saida": 2,
                                                  "bolRetMonitora": True, "NroLinha": 0, "Mensagem": ""}])

    @unittest.skipIf(os.geteuid() == 0, "root may read and write everything")
    def test_missing_permissions_are_named(self):
        self.write("fechado.txt", ACCEPTED.read_bytes()).chmod(0)
        self.expect_environment('sem permissão para ler "fechado.txt"', "validar", "fechado.txt")
        (self.folder / "fechada").mkdir(mode=0o555)
        self.expect_environment("não foi possível usar a pasta", "importar", ACCEPTED, "--pasta", "fechada")

    def test_a_folder_that_is_none_and_damaged_databases_are_named(self):
        self.write("arquivo", b"")
        for command in (("importar", ACCEPTED), ("validar", ACCEPTED), ("listar",)):
            self.expect_environment('"arquivo" não é uma pasta.', *command, "--pasta", "arquivo")
        self.home.mkdir()
        (self.home / "tblFixas.fix").write_bytes(b"isto nada tem de banco de dados" * 100)
        self.expect_environment("tremvik tabelas verificar", "validar", ACCEPTED)
        (self.home / "tblFixas.fix").unlink()
        (self.home / "tremvik.db").write_bytes(b"isto tampouco" * 100)
        for command in (("importar", ACCEPTED), ("listar",)):
            self.expect_environment("as declarações guardadas", *command)

    def test_no_text_from_outside_drives_the_terminal(self):
        hostile = os.fsdecode(b"\x1b[31m\x07\x7f\xc2\x9b\xe2\x80\xae\xed\xa0\x80\xc0\xaf\xff")
        shutil.copy(SAMPLES / "recusado-soma.txt", self.folder / hostile)
        self.run_piped("importar", ACCEPTED)
        with contextlib.closing(sqlite3.connect(self.home / "tremvik.db")) as store:
            store.executescript("UPDATE importacao SET importado_em = char(27, 155, 8238), arquivo = char(27, 155, 8238);"
                                "UPDATE declaracao SET regime = char(27, 155, 8238) || CAST(x'C0AFFF' AS TEXT);")
        ie, month = (self.run_piped("listar", "--json").objects()[0][key] for key in ("ie", "referencia"))
        (self.folder / (hostile + "f")).write_bytes(b"")
        for command in ((hostile,), (hostile[1:], ACCEPTED), ("--" + hostile,), ("importar", hostile + "nada"),
                        ("validar", hostile, hostile), ("validar", hostile), ("validar", hostile, "--json"),
                        ("importar", ACCEPTED, "--pasta", hostile), ("importar", ACCEPTED, "--pasta", hostile + "f/x"),
                        ("validar", ACCEPTED, "--paralelo", hostile), ("listar", hostile), ("listar",), ("listar", "--json"),
                        ("listar", ie, month), ("listar", ie, month, "--json"), ("listar", "--pasta", hostile + "g"),
                        ("exemplo", "--saida", hostile + "/x"), ("tabelas", "construir", "--dados", hostile, "t"),
                        ("tabelas", "construir", hostile + "/t"), ("tabelas", "verificar", hostile)):
            with self.subTest(command):
                run = self.run_piped(*command)
                self.assertNotEqual(run.status, 3)
                self.assertNotEqual(run.out + run.err, "")
                said = run.raw.decode() + run.err
                self.assertNotRegex(said, "[\0-\x09\x0b-\x1f\x7f-\x9f\u202a-\u202e]")

    def test_closed_descriptors_and_limits_harm_nothing(self):
        script = 'exec "$0" importar "$1" --pasta casa --json >&- <&- 2>&-'
        self.assertEqual(subprocess.run(["sh", "-c", script, PROGRAM, ACCEPTED], cwd=self.folder, env=self.environment,
                                        check=False).returncode, 0)
        self.assertEqual(len(self.run_piped("listar", "--json").objects()), 6)

        def no_threads():
            resource.setrlimit(resource.RLIMIT_NPROC, (1, 1))
            if os.geteuid() == 0:
                os.setuid(65534)
        self.folder.chmod(0o777)
        self.environment["ASAN_OPTIONS"] = "detect_leaks=0"  # the leak check of a sanitized build needs a thread
        run = self.run_piped("validar", *[ACCEPTED] * 9, "--paralelo", "9", "--pasta", "nova", preexec_fn=no_threads)
        self.assertEqual((run.status, run.err), (0, ""))

    def test_a_result_that_cannot_be_written_is_no_success(self):
        with open("/dev/full", "wb") as full:
            self.expect_environment("disco cheio", "validar", ACCEPTED, "--json", stdout=full)
        self.expect_environment("a pasta não existe", "exemplo", "--saida", "nenhuma/x.txt")

    def test_an_empty_store_says_how_to_fill_it(self):
        run = self.run_piped("listar")
        self.assertEqual((run.status, run.err), (0, ""))
        self.assertIn("Para guardar: tremvik importar ARQUIVO", run.out)
        self.assertFalse(self.home.exists())

    def test_without_a_folder_given_the_users_data_folder_is_used(self):
        self.environment["XDG_DATA_HOME"] = str(self.folder / "dados")
        self.home = self.folder / "dados" / "tremvik"
        self.command = lambda arguments: [str(PROGRAM), *(str(argument) for argument in arguments)]
        self.assertEqual(self.run_piped("importar", ACCEPTED).status, 0)
        self.assertTrue((self.home / "tremvik.db").exists())
        del self.environment["XDG_DATA_HOME"], self.environment["HOME"]
        self.expect_environment("não há pasta de usuário (HOME)", "listar")


class Tables(Story):
    def test_tables_are_built_checked_and_used(self):
        self.assertEqual(self.run_piped("tabelas", "construir", "t.fix").status, 0)
        run = self.run_piped("tabelas", "verificar", "t.fix")
        self.assertEqual((run.status, run.out), (0, 'As tabelas de "t.fix" estão completas.\n'))

    def test_faulty_rows_are_named_and_the_old_tables_stay(self):
        data = self.folder / "dados"
        shutil.copytree(SAMPLES.parent / "data", data)
        self.run_piped("tabelas", "construir", "--dados", "dados", "t.fix")
        before = (self.folder / "t.fix").read_bytes()
        states = data / "tblEstados.csv"
        states.write_bytes(states.read_bytes() + b"so,uma,linha,com,colunas,demais\n")
        run = self.run_piped("tabelas", "construir", "--dados", "dados", "t.fix")
        self.assertEqual(run.status, 1)
        self.assertRegex(run.out, r"tblEstados\.csv:\d+: ")
        self.assertIn('Nada foi escrito em "t.fix".', run.out)
        self.assertEqual((self.folder / "t.fix").read_bytes(), before)
        self.assertEqual(self.run_piped("tabelas", "construir", "--dados", "nenhuma", "t.fix").status, 2)
        self.assertEqual(self.run_piped("tabelas", "verificar", "nenhuma.fix").status, 2)


main()
