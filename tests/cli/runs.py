"""Stories of importing, validating and listing, told by the JSON lines."""

import hashlib
import json
import os
import resource
import signal
import subprocess
import unittest

from command import MEASURE_MEMORY, SAMPLES, Story, main

ACCEPTED = SAMPLES / "aceito.txt"
ASKS = SAMPLES / "pergunta.txt"
SUCCESS = "A importação foi concluída com sucesso!"


class Importing(Story):
    def test_an_accepted_file_is_kept_listed_and_refused_the_second_time(self):
        run = self.run_piped("importar", ACCEPTED, "--json")
        self.assertEqual((run.status, run.err), (0, ""))
        lines = ACCEPTED.read_bytes().splitlines()
        self.assertEqual([one["registro"] for one in run.of("gravacao")],
                         [line[:2].decode() for line in lines if not line.startswith(b"01")])
        self.assertEqual([one["operacao"] for one in run.of("banco")], ["Preparar", "Abrir", "Encerrar"])
        self.assertEqual([list(one) for one in run.of("consulta")],
                         [["tipo", "arquivo", "ie", "uf", "regime", "referencia", "referenciaInicial", "existe"]] * 6)
        self.assertEqual(run.objects()[-3:], [
            {"tipo": "mensagem", "arquivo": str(ACCEPTED), "texto": SUCCESS, "estilo": 64,
             "titulo": "Arquivo Pré-Formatado", "resposta": 1},
            {"tipo": "banco", "arquivo": str(ACCEPTED), "operacao": "Encerrar"},
            {"tipo": "fim", "arquivo": str(ACCEPTED), "estado": "aceito", "saida": 0, "bolRetMonitora": False,
             "NroLinha": len(lines) + 1, "Mensagem": ""}])

        listed = self.run_piped("listar", "--json").objects()
        self.assertEqual(sum(sum(one["registros"].values()) for one in listed), len(lines) - 1)
        self.assertEqual({one["origem"] for one in listed}, {"aceito.txt"})

        again = self.run_piped("importar", ACCEPTED)
        self.assertEqual(again.status, 1)
        self.assertIn("Esta Referência já existente, Posição 3.\nLinha nº 2\n", again.out)
        self.assertIn("Nota: a mensagem diz posição 3; no leiaute o campo ocupa as colunas 38 a 43.\n", again.out)
        self.assertEqual(self.run_piped("listar", "--json").objects(), listed)

    def test_one_declaration_is_found_by_every_form_of_its_key(self):
        self.run_piped("importar", ACCEPTED)
        declaration = self.run_piped("listar", "--json").objects()[0]
        ie, (year, month) = declaration["ie"], declaration["referencia"].split("-")
        first = self.run_piped("listar", ie, f"{month}/{year}", "--json").objects()
        self.assertEqual(len(first), sum(declaration["registros"].values()))
        self.assertEqual((first[0]["registro"], first[0]["campos"]["ie"]), ("05", ie))
        for key in (f"{year}{month}", f"{year}-{month}"):
            self.assertEqual(self.run_piped("listar", ie.replace(".", ""), key, "--json").objects(), first)
        missing = self.run_piped("listar", ie, "201912")
        self.assertEqual(missing.status, 2)
        self.assertIn(f"a declaração de {ie} de 12/2019 não está em", missing.err)

    def test_validar_says_what_importar_says_and_keeps_nothing(self):
        elsewhere = self.folder / "outra"
        for answer in ("sim", "nao"):
            for sample in sorted(SAMPLES.glob("*.txt")):
                validated = self.run_piped("validar", sample, "--json", "--responder", answer)
                self.assertEqual([path.name for path in self.home.iterdir()], ["tblFixas.fix"])
                (elsewhere / "tremvik.db").unlink(missing_ok=True)
                imported = self.run_piped("importar", sample, "--json", "--responder", answer, "--pasta", elsewhere)
                self.assertEqual((validated.status, validated.out), (imported.status, imported.out))
                self.assertEqual(len(imported.of("fim")), 1)
        self.assertEqual(list(self.folder.glob("tremvik-*")), [])

    def test_a_question_is_answered_as_told_and_no_where_nobody_can_be_asked(self):
        for options, reply in ((["--responder", "SIM"], 6), (["--responder", "Não"], 7), (["--responder", "n"], 7), ([], 7)):
            run = self.run_piped("validar", ASKS, "--json", *options)
            self.assertEqual(run.status, 0 if reply == 6 else 1)
            self.assertEqual([one["resposta"] for one in run.of("mensagem") if one["estilo"] == 324], [reply])
            self.assertEqual("não há terminal para perguntar" in run.err, not options)
            self.assertNotIn("Fechar", [one["nome"] for one in run.of("evento")])
            self.assertEqual("Encerrar" in [one["operacao"] for one in run.of("banco")], reply == 6)
        run = self.run_piped("validar", ASKS, ASKS)
        self.assertEqual(run.err.count("pergunta.txt: com vários arquivos nada é perguntado"), 2)
        self.assertNotIn("terminal", run.out + run.err)

    def test_a_reader_that_goes_away_does_not_end_the_import(self):
        with subprocess.Popen(self.command(["importar", ACCEPTED, "--json"]), cwd=self.folder,
                              env=self.environment, stdout=subprocess.PIPE) as process:
            process.stdout.close()
            self.assertEqual(process.wait(), 0)
        self.assertEqual(len(self.run_piped("listar", "--json").objects()), 6)


class ManyFiles(Story):
    def test_every_sample_gives_its_message_place_and_status(self):
        cases = json.loads((SAMPLES / "esperado.json").read_text(encoding="utf-8"))
        self.assertGreater(len(cases), 13)
        for answer in ("nao", "sim"):
            self.check_samples(SAMPLES, [case for case in cases if case.get("responder", answer) == answer], answer)

    def test_an_anonymized_sample_is_told_as_the_sample_and_nothing_is_overwritten(self):
        other = self.folder / "outro.txt"
        for sample in SAMPLES.glob("*.txt"):
            with self.subTest(sample.name):
                run = self.run_piped("anonimizar", sample, "--saida", other, "--sobrescrever")
                self.assertEqual((run.status, run.out, run.err), (0, "", ""))
                told = [[[one.get(key) for key in ("regra", "linha", "campo", "texto")] for one
                         in self.run_piped("validar", file, "--json", "--responder", "nao").objects()]
                        for file in (sample, other)]
                self.assertEqual(*told)
        before = other.read_bytes()
        self.assertIn("já existe", self.run_piped("anonimizar", ACCEPTED, "--saida", other).err)
        self.assertIn("é o próprio arquivo", self.run_piped("anonimizar", other, "--saida", other, "--sobrescrever").err)
        self.assertEqual(other.read_bytes(), before)

    def test_the_kit_of_all_rules_gives_what_it_promises_and_spares_other_files(self):
        made = self.run_piped("exemplo", "--todas-as-regras", "kit")
        kit = self.folder / "kit"
        cases = json.loads((kit / "esperado.json").read_text(encoding="utf-8"))
        self.assertEqual((made.status, made.out), (0, f'{len(cases) + 2} arquivos escritos em "kit".\n'))
        self.assertGreater(len(cases), 200)
        self.check_samples(kit, cases, "nao")
        one = self.run_piped("exemplo", "--regra", "cr10-11")
        self.assertEqual(one.raw, (kit / "CR10-11.txt").read_bytes())
        self.assertEqual(self.run_piped("exemplo", "--todas-as-regras", "kit", "--sobrescrever").status, 0)
        (kit / "CR01-02.txt").unlink()
        (kit / "LEIA-ME.md").write_text("de outra pessoa")
        for options, reason in ((), "já existe. Escolha"), (("--sobrescrever",), 'LEIA-ME.md" já existe e não é'):
            run = self.run_piped("exemplo", "--todas-as-regras", "kit", *options)
            self.assertEqual((run.status, run.out), (2, ""))
            self.assertIn(reason, run.err)
        self.assertFalse((kit / "CR01-02.txt").exists())  # all or none

    def check_samples(self, folder, cases, answer):
        names = [str(folder / case["arquivo"]) for case in cases]
        run = self.run_piped("validar", *names, "--json", "--responder", answer, "--paralelo", "3")
        self.assertEqual(run.status, max(case["saida"] for case in cases))
        files = {name: [] for name in names}
        for one in run.objects():
            files[one.pop("arquivo")].append(one)
        self.assertEqual([one["arquivo"] for one in run.objects() if one["tipo"] == "fim"], names)
        for case, objects in zip(cases, files.values()):
            with self.subTest(case["arquivo"]):
                boxes = [one for one in objects if one["tipo"] == "mensagem"]
                places = [one for one in objects if one["tipo"] == "inconsistencia"]
                self.assertEqual([{key: box[key] for key in ("texto", "estilo", "titulo")} for box in boxes],
                                 case["mensagens"])
                self.assertEqual([{key: place[key] for key in ("linha", "registro", "campo", "posicao")}
                                  for place in places], case["inconsistencias"])
                for key in {"regra", "porque"} & case.keys():
                    self.assertEqual({place[key] for place in places}, {case[key]} if places else set())
                end = ("fim", ("aceito", "recusado")[case["saida"]], case["saida"], case["saida"] == 1)
                self.assertEqual(tuple(objects[-1][key] for key in ("tipo", "estado", "saida", "bolRetMonitora")), end)

    def test_names_come_from_standard_input_and_the_order_is_theirs(self):
        names = [str(SAMPLES / name) for name in ("recusado-soma.txt", "aceito.txt", "recusado-texto.txt")] * 20
        by_argument = self.run_piped("validar", *names, "--paralelo", "1")
        self.assertTrue(by_argument.out.endswith("60 arquivos: 20 aceitos, 40 recusados.\n"))
        verdicts = [line for line in by_argument.out.splitlines() if line.startswith(str(SAMPLES))]
        self.assertEqual([line.split(": ")[0] for line in verdicts], names)
        self.assertEqual(verdicts[1], f"{names[1]}: aceito (6 declarações, 114 registros)")
        for stdin, options in (("\n".join(names), ()), ("\r\n".join([*names, ""]), ()), ("\0".join(names), ("-0",)),
                               ("\0".join([*names, ""]), ("--nulo",))):
            piped = self.run_piped("validar", "-", *options, "--paralelo", "4", stdin=stdin.encode())
            self.assertEqual((piped.status, piped.out), (1, by_argument.out))
        name = self.write("duas\nlinhas.txt", ACCEPTED.read_bytes())
        self.assertEqual(self.run_piped("validar", "-", "-0", stdin=bytes(name) + b"\0").status, 0)

    def test_a_list_of_names_that_is_none_is_said(self):
        longest = "/" * 4096 + str(ACCEPTED)[-5:]
        for stdin, sentence in (("", "está vazia"), ("\n\r\n", "está vazia"), (f"{ACCEPTED}\0{ACCEPTED}\0", "Diga isso com -0"),
                                (longest, "longo demais")):
            run = self.run_piped("validar", "-", stdin=stdin.encode())
            self.assertEqual((run.status, run.out), (2, ""))
            self.assertIn(sentence, run.err)
        with open("/dev/zero", "rb") as endless:
            folder = os.open(self.folder, os.O_RDONLY)
            self.addCleanup(os.close, folder)
            for stdin, sentence in ((endless, "longo demais"), (folder, "não pode ser lida (é uma pasta)")):
                run = subprocess.run(self.command(["validar", "-"]), stdin=stdin, env=self.environment, timeout=20,
                                     capture_output=True, check=False)
                self.assertEqual((run.returncode, sentence in run.stderr.decode()), (2, True))
        after_one = f"{ACCEPTED}\n{longest}\n"
        run = self.run_piped("validar", "-", stdin=after_one.encode())
        self.assertEqual((run.status, run.out.splitlines()[-1]), (2, "1 arquivo: 1 aceito, 0 recusados."))

    def test_one_signal_ends_the_wait_for_names(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP) * 4:
            with subprocess.Popen(self.command(["validar", "-", "--paralelo", "8"]), stdin=subprocess.PIPE,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=self.environment) as process:
                process.stdin.write(bytes(ACCEPTED) + b"\n")
                process.stdin.flush()
                self.assertIn(b"aceito", process.stdout.readline())
                process.send_signal(number)
                self.assertEqual(process.wait(timeout=20), 2)
                self.assertIn("interrompido", process.stderr.read().decode())
        with subprocess.Popen(self.command(["validar", *[ACCEPTED] * 9, "--json"]), env=self.environment,
                              stdout=subprocess.PIPE) as process:  # nobody reads what fills the pipe
            self.assertEqual(process.stdout.read(1), b"{")
            process.send_signal(signal.SIGINT)
            self.assertNotEqual(process.wait(timeout=20), 0)

    def test_the_worst_file_gives_the_status(self):
        run = self.run_piped("validar", ACCEPTED, "nada.txt", SAMPLES / "recusado-soma.txt")
        self.assertEqual(run.status, 2)
        self.assertIn("nada.txt: não validado\nErro 53 -  Arquivo não encontrado\n", run.out)
        self.assertTrue(run.out.endswith("3 arquivos: 1 aceito, 1 recusado, 1 não validado.\n"))
        self.assertIn('o arquivo "nada.txt" não existe', run.err)


class Samples(Story):
    def test_the_same_seed_gives_the_same_accepted_file(self):
        digests = set()
        for target in ("um.txt", "dois.txt"):
            run = self.run_piped("exemplo", "--semente", "7", "--declaracoes", "20", "--saida", target)
            self.assertEqual((run.status, run.out, run.err), (0, "", ""))
            digests.add(hashlib.sha256((self.folder / target).read_bytes()).digest())
        printed = self.run_piped("exemplo", "--semente", "7", "--declaracoes", "20")
        digests.add(hashlib.sha256(printed.raw).digest())
        self.assertEqual(len(digests), 1)
        self.assertEqual(self.run_piped("validar", "um.txt").status, 0)

    def test_the_longest_file_is_accepted_and_one_line_more_is_not(self):
        for records, status, message in ((32766, 0, ""), (32767, 1, "6 - Estouro")):
            self.run_piped("exemplo", "--registros", str(records), "--declaracoes", "900", "--saida", "g.txt", "--sobrescrever")
            run = self.run_piped("validar", "g.txt", "--json")
            end = run.objects()[-1]
            self.assertEqual((run.status, end["NroLinha"], end["Mensagem"]), (status, 32767, message))
            self.assertEqual("tem mais de 32.766 registros" in run.err, status == 1)

    def test_a_line_too_long_carries_what_it_has_too_much(self):
        self.write("longa.txt", b"07" + b"x" * 24 + b"\xe9\x90" + b"y" * 2000 + b"\r\n")
        run = self.run_piped("validar", "longa.txt", "--json")
        fault = run.of("inconsistencia")[0]
        self.assertEqual((fault["regra"], fault["porque"]), ("ARQ-03", "a linha tem 2028 caracteres; o certo são 26"))
        self.assertEqual((fault["posicao"], fault["largura"], fault["valor"]), (27, 2002, "é\u0090" + "y" * 998))
        self.assertNotIn("\u0090", run.out)

    @unittest.skipUnless(MEASURE_MEMORY, "the sanitizers take more")
    def test_memory_does_not_grow_with_the_file_or_a_line(self):
        self.run_piped("exemplo", "--registros", "32766", "--declaracoes", "900", "--saida", "g.txt")
        with (self.folder / "longa.txt").open("wb") as long_line:
            long_line.write(b"07")
            long_line.truncate(256 << 20)
        def limit():
            resource.setrlimit(resource.RLIMIT_DATA, (30 << 20, 30 << 20))

        for name, status in (("g.txt", 0), ("longa.txt", 1)):
            self.assertEqual(self.run_piped("validar", name, preexec_fn=limit).status, status)


main()
