"""Stories of what is seen: on a terminal, and as plain text where there is none."""

import contextlib
import json
import re
import sqlite3

from command import SAMPLES, Story, main

ASKS = SAMPLES / "pergunta.txt"
HEADER = """\
Sr(a) usuário(a), entre em contato com a empresa
responsável pela geração do arquivo Pré-Formatado
e informe a mensagem abaixo : 

"""


def visible(text):
    """The text that stays on the screen: without colours and without what is drawn over."""
    return re.sub("\x1b\\[[0-9;]*m", "", re.sub("[^\n]*\r\x1b\\[K", "", text))


class PlainText(Story):
    def test_a_refusal_names_and_marks_its_place(self):
        sample = SAMPLES / "recusado-pagamento-periodo.txt"
        line = sample.read_text("cp1252").splitlines()[49]
        run = self.run_piped("validar", sample)
        self.assertEqual((run.status, run.err), (1, ""))
        self.assertEqual(run.out, HEADER + f"""\
Tabela 20, CR=07, Campo - Data
Período Inválido, Posição 19
Linha nº 50

linha 50, registro 07, campo Data, colunas 19 a 26, valor "20140701"
regra CR07-10: permitido: de 01/04/2014 a 30/06/2014
      │ ----+---10----+---20----+-
   50 │ {line}
      │                   ^^^^^^^^
""")

    def test_a_field_far_inside_its_line_is_shown_with_what_is_around_it(self):
        run = self.run_piped("validar", SAMPLES / "recusado-quantidades.txt")
        rulers = [line for line in run.out.splitlines() if "+--140----+" in line]
        self.assertEqual(len(rulers), 2)
        for ruler, line, carets in re.findall(r" +│  (.*)\n +46 │ …(.*)\n +│  (.*)\n", run.out):
            column = carets.index("^")
            first = 150 - (ruler.index("150") + 2)  # the last digit of a number stands at its column
            self.assertIn((first + column, line[column:column + 4]), ((146, "0004"), (158, "0003")))
            self.assertLessEqual(len(line) + 9, 100)

    def test_bytes_that_cannot_be_seen_are_made_visible(self):
        self.write("bytes.txt", b"\x1b[31mX\x07\xe9\x81\r\n")
        run = self.run_piped("validar", "bytes.txt")
        self.assertEqual(run.out, """\
Código de Registro inválido! CR = ␛[  -  Linha 1

linha 1, campo CR, colunas 1 a 2, valor "\\x1B["
regra ARQ-02
      │ ----+----
    1 │ ␛[31mX␇é�
      │ ^^
""")

    def test_line_ends_and_lengths_are_told_as_they_are(self):
        for sample, expected in (
                ("recusado-fim-de-linha-lf.txt", 'valor "\\x0A0"\nregra CR01-08\n      │ ----+---10----+---20----+---30--\n    1 │ '
                                                 "010120150124120000000002100006␊0\n" + "      │ " + " " * 30 + "^^\n"),
                ("recusado-tamanho.txt", "linha 47, registro 07, tamanho, coluna 26\n"),
                ("recusado-tamanho.txt", "regra ARQ-03: a linha tem 25 caracteres; o certo são 26\n"),
                ("recusado-ultimo-fim.txt", "Nota: a mensagem diz linha 114, a última lida; o campo está na linha 103.\n"),
                ("recusado-vazio.txt", "Arquivo vazio ou inválido !\n")):
            with self.subTest(sample):
                self.assertIn(expected, self.run_piped("validar", SAMPLES / sample).out)

    def test_a_note_is_only_there_where_the_message_names_another_column(self):
        named = {sample.name: re.findall(r"Nota: a mensagem diz posição ([^;]+)", self.run_piped("validar", sample).out)
                 for sample in SAMPLES.glob("*.txt")}
        self.assertEqual({name: found for name, found in named.items() if found},
                         {"recusado-cfop-interestadual.txt": ["3 ou 114"]})

    def test_the_list_of_declarations_tells_the_local_time(self):
        self.environment["TZ"] = "BRT3"
        self.run_piped("importar", SAMPLES / "aceito.txt")
        with contextlib.closing(sqlite3.connect(self.home / "tremvik.db")) as store:
            store.executescript("UPDATE importacao SET importado_em = '2012-03-01T01:30:00Z'")
        run = self.run_piped("listar")
        first = run.out.splitlines()[1]
        self.assertRegex(first, r"^\d{3}(\.\d{3}){3}  \d\d/\d{4}     \d\d  +\d+  29/02/2012 22:30  \d\d=")

    def test_a_line_of_megabytes_is_shown_in_part(self):
        self.write("longa.txt", b"07" + b"x" * (5 << 20) + b"\r\n")
        run = self.run_piped("validar", "longa.txt")
        self.assertLess(len(run.raw), 2000)
        self.assertIn("a linha tem 5242882 caracteres; o certo são 26", run.out)


class OnATerminal(Story):
    def test_a_box_fits_the_width_and_every_line_of_it_is_as_wide(self):
        for columns in (80, 52):
            run = self.run_on_terminal("validar", SAMPLES / "recusado-subitem-periodo.txt", columns=columns)
            self.assertEqual(run.status, 1)
            box = [line for line in visible(run.out).splitlines() if line.startswith(("┌", "│", "└"))]
            self.assertEqual({len(line) for line in box}, {len(box[0])})
            self.assertLessEqual(max(len(line) for line in visible(run.out).splitlines() if "│" in line), columns)
            self.assertTrue(box[0].startswith("┌─ Atenção ──"))
            self.assertIn("CódSubitem", "".join(box))
            self.assertIn("\x1b[1;31m", run.out)

    def test_no_color_and_a_dumb_terminal_are_respected(self):
        run = self.run_on_terminal("validar", SAMPLES / "recusado-soma.txt", NO_COLOR="1")
        self.assertNotRegex(run.out, "\x1b\\[[0-9;]*m")
        self.assertIn("█", run.out)
        self.assertIn("conferindo quantidades", run.out)
        run = self.run_on_terminal("validar", SAMPLES / "recusado-soma.txt", TERM="dumb")
        self.assertNotIn("\x1b", run.out)
        self.assertNotIn("█", run.out)

    def test_the_question_waits_for_an_answer_and_no_is_the_second_button(self):
        success = "Arquivo aceito: 6 declarações"
        for answers, status in (((b"s\n",), 0), ((b"Sim\n",), 0), ((b"talvez\n", b"sim\n"), 0), ((b"\n",), 1),
                                ((b"n\n",), 1), (("não\n".encode(),), 1), ((b"\x04",), 1)):
            with self.subTest(answers):
                run = self.run_on_terminal("validar", ASKS, answers=answers)
                self.assertEqual((run.status, success in visible(run.out)), (status, status == 0))
                self.assertEqual("Responda sim ou não." in run.out, len(answers) > 1)
                self.assertIn("linha 93, registro 10, campo Imposto, colunas 39 a 53", visible(run.out))

    def test_json_stays_alone_on_standard_output_while_the_question_is_asked(self):
        target = self.folder / "saida.jsonl"
        with target.open("wb") as out:
            run = self.run_on_terminal("validar", ASKS, "--json", answers=(b"s\n",), stdout=out)
        self.assertEqual(run.status, 0)
        self.assertIn("│ Deseja continuar Sim/Não ?", visible(run.out))
        objects = [json.loads(line) for line in target.read_text(encoding="utf-8").splitlines()]
        self.assertEqual(objects[-1]["tipo"], "fim")

    def test_a_second_import_is_told_that_the_folder_is_in_use(self):
        process, terminal = self.start_on_terminal("importar", ASKS)
        self.read_until(terminal, "[Não]: ".encode())
        second = self.run_piped("importar", SAMPLES / "aceito.txt")
        self.assertEqual((second.status, second.out), (2, ""))
        self.assertIn("está em uso por outra importação", second.err)
        self.assertEqual(self.run_piped("validar", SAMPLES / "aceito.txt").status, 0)
        process.kill()
        process.wait()
        self.assertEqual(self.run_piped("importar", SAMPLES / "aceito.txt").status, 0)


main()
