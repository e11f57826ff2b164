"""Stories of a machine where something is wrong, and of what stays on its disk. TREMVIK_KILLS: kills of an import."""

import fcntl
import os
import pathlib
import random
import resource
import shutil
import signal
import sqlite3
import stat
import subprocess
import sys
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "cli"))
from command import PROGRAM, Story, main  # noqa: E402

KEPT = {"tblFixas.fix", "tremvik.db", "tremvik.lock"}
NOBODY = 65534
RECORDS = ("declaracao", "pagamento", "cfop", "interestadual", "zona_franca", "ocorrencia", "ocorrencia_ie",
           "ocorrencia_substituto", "ocorrencia_substituido", "ocorrencia_autorizacao", "dipam", "exportacao")


class Folder(Story):
    """The store in "casa" holds one declaration; "nova.txt" brings another one."""

    def setUp(self):
        super().setUp()
        for name, seed in (("velha.txt", 2), ("nova.txt", 1)):
            self.run_piped("exemplo", "--declaracoes", 1, "--semente", seed, "--saida", name)
        self.assertEqual(self.run_piped("importar", "velha.txt").status, 0)
        self.store, self.tables = self.home / "tremvik.db", self.home / "tblFixas.fix"

    def held(self):
        """Declarations of the store, after a check of the whole store."""
        store = sqlite3.connect(self.store)
        self.assertEqual(store.execute("PRAGMA integrity_check").fetchall(), [("ok",)])
        self.assertEqual(store.execute("PRAGMA foreign_key_check").fetchall(), [])
        count = lambda table: store.execute(f"SELECT count(*) FROM {table}").fetchone()[0]
        self.assertEqual(store.execute("SELECT sum(declaracoes), sum(registros) FROM importacao").fetchone(),
                         (count("declaracao"), sum(map(count, RECORDS))))
        return count("declaracao")

    def expect(self, status, sentence, *arguments, **options):
        run = self.run_piped(*arguments, **options)
        self.assertEqual(run.status, status, run.out + run.err)
        self.assertIn(sentence, run.out + run.err)

    def execute(self, database, sql):
        with sqlite3.connect(database) as connection:
            connection.executescript(sql)


class Surroundings(Folder):
    def test_a_spoilt_folder_is_told_and_nothing_is_lost(self):
        build = "tremvik tabelas construir"
        def other(path, *make):
            path.unlink()
            return make[0](path)

        cases = (
            (lambda: self.tables.unlink(), 0, "Guardado em"),
            (lambda: self.tables.write_bytes(b""), 2, build),
            (lambda: os.truncate(self.tables, 5000), 2, build),
            (lambda: self.tables.write_bytes(b"x" * 4096), 2, build),
            (lambda: shutil.copy(self.store, self.tables), 2, build),
            (lambda: self.execute(self.tables, "UPDATE tblTodosCFOPs SET CFOP = '5.109' WHERE CFOP = '5.102'"), 2,
             "o resumo não confere"),
            (lambda: other(self.tables, os.mkdir), 2, "não é um arquivo comum"),
            (lambda: other(self.tables, os.mkfifo), 2, "não é um arquivo comum"),
            (lambda: (self.home / "BDTemp.mdb" / "x").mkdir(parents=True), 2, "Confira"),
            (lambda: self.store.rename(self.home / "outro.db") and self.store.symlink_to("outro.db"), 2, "atalho"),
            (lambda: other(self.home / "tremvik.lock", lambda lock: lock.symlink_to(self.store)), 2, "atalho"),
            (lambda: other(self.home / "tremvik.lock", os.mkfifo), 2, "atalho"),
            (lambda: self.execute(self.store, "PRAGMA user_version = 9"), 2, "Atualize o programa ou use outra pasta"),
            (lambda: self.execute(self.store, "DROP TABLE cfop"), 2, "as declarações guardadas na pasta"),
        )
        shutil.copytree(self.home, self.folder / "inteira")
        for number, (spoil, status, sentence) in enumerate(cases):
            with self.subTest(number):
                shutil.rmtree(self.home)
                shutil.copytree(self.folder / "inteira", self.home)
                spoil()
                before = self.store.read_bytes()
                self.expect(status, sentence, "importar", "nova.txt")
                self.assertEqual(self.store.read_bytes() != before, status == 0)

    def test_databases_held_by_another_program_and_a_damaged_store(self):
        for database in (self.tables, self.store):
            other = sqlite3.connect(database, isolation_level=None)
            other.execute("BEGIN EXCLUSIVE")
            self.expect(2, "em uso por outro programa", "importar", "nova.txt")
            other.close()
        for content in (b"x" * 4096, self.store.read_bytes()[:6000]):
            self.store.write_bytes(content)
            self.expect(2, "cópia de segurança", "importar", "nova.txt")
            self.assertEqual(self.store.read_bytes(), content)

    def test_folders_that_cannot_be_used(self):
        (self.folder / "laço").symlink_to("laço")
        self.write("arquivo", b"")
        for folder in ("laço", "laço/x", "x" * 300, "arquivo/x", "/proc/x"):
            for command in (("importar", "nova.txt"), ("validar", "nova.txt"), ("listar",)):
                run = self.run_piped(*command, "--pasta", folder)
                useless = command[0] == "importar" or folder[0] in "lx"
                self.assertEqual(run.status, 2 if useless else 0, (folder, command, run.err))
                self.assertEqual("--pasta" in run.err, useless)
        self.expect(2, "leva a si mesmo", "validar", "laço")
        gone = self.folder / "some"
        gone.mkdir()
        leave = lambda: (os.chdir(gone), gone.rmdir())
        self.expect(2, "pasta de trabalho", "importar", self.folder / "nova.txt", "--pasta", "p", preexec_fn=leave)

    @unittest.skipIf(os.geteuid() != 0, "only root can run the program as somebody else")
    def test_without_permissions_a_file_can_still_be_validated(self):
        program = shutil.copy(PROGRAM, self.folder)
        self.command = lambda arguments: [program, *map(str, arguments), "--pasta", str(self.home)]
        self.folder.chmod(0o755)
        self.home.chmod(0o555)
        self.store.chmod(0o644)
        as_nobody = {"preexec_fn": lambda: os.setuid(NOBODY)}
        self.expect(2, "Confira se ela existe e se você pode gravar nela", "importar", "nova.txt", **as_nobody)
        self.expect(0, "Arquivo aceito", "validar", "nova.txt", **as_nobody)
        self.home = self.folder / "outra"
        self.expect(0, "Arquivo aceito", "validar", "nova.txt", **as_nobody)
        self.assertEqual(sorted(self.folder.glob("tremvik-*")), [])

    def test_a_limit_on_the_size_of_files_is_an_error(self):
        limit = lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (8192, 8192))
        self.expect(2, "ulimit -f", "importar", "nova.txt", preexec_fn=limit)
        self.assertEqual(self.held(), 1)

    def test_a_folder_removed_during_the_run(self):
        self.run_piped("exemplo", "--declaracoes", 1, "--duvida", "--saida", "pergunta.txt")
        process, terminal = self.start_on_terminal("importar", "pergunta.txt")
        self.read_until(terminal, "[Não]: ".encode())
        shutil.rmtree(self.home)
        os.write(terminal, b"s\n")
        self.assertIn(b"tremvik: ", self.read_until(terminal, None))
        self.assertEqual(process.wait(), 2)
        self.expect(0, "Guardado em", "importar", "nova.txt")

    def test_pipes_in_the_place_of_settings_are_no_settings(self):
        settings = pathlib.Path(self.environment["HOME"]) / ".config" / "Brunsel"
        settings.mkdir(parents=True)
        os.mkfifo(settings / "configuracao.ini")
        self.expect(0, "Guardado em", "importar", "nova.txt")


class Remains(Folder):
    def test_what_ended_programs_left_goes_and_what_live_ones_use_stays(self):
        left = ("tremvik.db-mj0A1B2C9FF", "tblFixas.fix.novo-aB3xY9", "BDTempPrf.fix", "BDTempPrf.fix-journal",
                "BDTemp.mdb")
        stays = ("tblFixas.fix.novo-vivo01", "tblFixas.fix.novo-copia", "tremvik.db-mjx")
        for name in left + stays:
            (self.home / name).write_bytes(b"resto")
        with (self.home / stays[0]).open("rb") as live:
            fcntl.flock(live, fcntl.LOCK_EX)
            self.expect(0, "Guardado em", "importar", "nova.txt")
            self.assertEqual({path.name for path in self.home.iterdir()}, KEPT | set(stays))

    def test_nothing_of_the_run_has_a_name_while_it_runs(self):
        self.run_piped("exemplo", "--declaracoes", 1, "--duvida", "--saida", "pergunta.txt")
        for ending in (signal.SIGINT, signal.SIGTERM, signal.SIGKILL):
            process, terminal = self.start_on_terminal("importar", "pergunta.txt")
            self.read_until(terminal, "[Não]: ".encode())
            self.assertEqual({path.name for path in self.home.iterdir()}, KEPT)
            process.send_signal(ending)
            self.assertEqual(process.wait(), -ending)
        self.assertEqual(self.held(), 1)

    def test_what_is_made_is_the_users_own(self):
        for mask in (0o000, 0o077):
            made = self.folder / f"a{mask}"
            self.run_piped("importar", "nova.txt", "--pasta", made / "b", preexec_fn=lambda: os.umask(mask))
            modes = {path.name: stat.S_IMODE(path.stat().st_mode) for path in (made, *made.rglob("*"))}
            self.assertEqual(modes, {made.name: 0o700, "b": 0o700, "tremvik.db": 0o600, "tremvik.lock": 0o600,
                                     "tblFixas.fix": 0o666 & ~mask})

    def test_an_output_that_is_something_else_is_not_replaced(self):
        before = self.store.read_bytes()
        self.expect(2, "não é um banco de tabelas", "tabelas", "construir", self.store)
        for options, sentence in (((), "já existe"), (("--sobrescrever",), "não será sobrescrito")):
            self.expect(2, sentence, "exemplo", "--saida", self.store, *options)
        self.assertEqual(self.store.read_bytes(), before)
        self.expect(2, "use --sobrescrever", "exemplo", "--saida", "nova.txt")
        self.expect(0, "", "exemplo", "--saida", "nova.txt", "--sobrescrever")
        self.expect(0, "construídas", "tabelas", "construir", self.tables)

    def test_a_killed_import_leaves_a_whole_store(self):
        self.run_piped("exemplo", "--declaracoes", 40, "--semente", 7, "--saida", "muitas.txt")
        self.run_piped("listar", "--pasta", "medida")
        started = time.monotonic()
        self.run_piped("importar", "muitas.txt", "--pasta", "medida")
        whole = time.monotonic() - started
        kills = int(os.environ.get("TREMVIK_KILLS", "30"))
        draw, killed = random.Random(20120320), 0
        before = self.store.read_bytes()
        for _ in range(kills):
            with subprocess.Popen(self.command(["importar", "muitas.txt"]), cwd=self.folder, env=self.environment,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as process:
                time.sleep(draw.uniform(0, whole))
                process.kill()
            held = self.held()
            self.assertIn(held, (1, 41) if process.returncode else (41,))
            killed += process.returncode != 0
            if held == 1:
                self.assertEqual(self.run_piped("importar", "muitas.txt").status, 0)
                self.assertEqual(self.held(), 41)
            self.assertEqual({path.name for path in self.home.iterdir()} - {"BDTemp.mdb"}, KEPT)
            self.store.write_bytes(before)
        self.assertGreater(killed, 0)  # how many is a matter of the machine's load


main()
