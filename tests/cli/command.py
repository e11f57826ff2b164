"""Runs the real command line in a folder of its own, with pipes or on a pseudo-terminal."""

import fcntl
import json
import os
import pathlib
import pty
import shutil
import struct
import subprocess
import sys
import tempfile
import termios
import unittest

PROGRAM, SAMPLES = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
MEASURE_MEMORY = "--memory" in sys.argv


class Run:
    """What one run said and how it ended."""

    def __init__(self, status, out, err=b""):
        self.status = status
        self.raw = out
        self.out = out.decode("utf-8", "replace")
        self.err = err.decode("utf-8")

    def objects(self):
        return [json.loads(line) for line in self.out.splitlines()]

    def of(self, tipo):
        return [one for one in self.objects() if one["tipo"] == tipo]


class Story(unittest.TestCase):
    """A test with an empty working folder, a component's folder "casa" and a bare environment."""

    maxDiff = None

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="tremvik-teste-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.home = self.folder / "casa"
        self.environment = {"HOME": str(self.folder / "usuario"), "TERM": "xterm", "TZ": "UTC",
                            "TMPDIR": str(self.folder), "PATH": os.environ["PATH"]}
        for name in ("ASAN_OPTIONS", "UBSAN_OPTIONS"):
            if name in os.environ:
                self.environment[name] = os.environ[name]

    def command(self, arguments):
        command = [str(PROGRAM), *(str(argument) for argument in arguments)]
        uses_folder = command[1:2] and command[1] in ("importar", "validar", "listar", "explicar", "mostrar")
        named = any(argument.startswith("--pasta") for argument in command)
        return command + ["--pasta", str(self.home)] if uses_folder and not named else command

    def run_piped(self, *arguments, stdin=b"", stdout=subprocess.PIPE, preexec_fn=None):
        done = subprocess.run(self.command(arguments), cwd=self.folder, env=self.environment, input=stdin,
                              stdout=stdout, stderr=subprocess.PIPE, timeout=300, check=False, preexec_fn=preexec_fn)
        return Run(done.returncode, done.stdout or b"", done.stderr)

    def start_on_terminal(self, *arguments, columns=80, stdout=None, **environment):
        """Starts the program on a pseudo-terminal (standard output elsewhere with `stdout`); the result is its
        process and the terminal's other end."""
        ours, theirs = pty.openpty()
        fcntl.ioctl(theirs, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        process = subprocess.Popen(self.command(arguments), cwd=self.folder, stdin=theirs,
                                   stdout=stdout or theirs, stderr=theirs, env=self.environment | environment, start_new_session=True)
        os.close(theirs)
        self.addCleanup(process.wait)
        self.addCleanup(os.close, ours)
        return process, ours

    def read_until(self, terminal, end):
        """What comes on the terminal up to and with `end`; all of it where `end` is None."""
        text = b""
        while end is None or end not in text:
            try:
                piece = os.read(terminal, 65536)
            except OSError:  # the program closed its end
                break
            if not piece:
                break
            text += piece
        return text

    def run_on_terminal(self, *arguments, answers=(), **options):
        process, terminal = self.start_on_terminal(*arguments, **options)
        text = b""
        for answer in answers:
            text += self.read_until(terminal, "[Não]: ".encode())
            os.write(terminal, answer)
        text += self.read_until(terminal, None)
        return Run(process.wait(), text.replace(b"\r\n", b"\n"))

    def write(self, name, content):
        path = self.folder / name
        path.write_bytes(content)
        return path


def main():
    unittest.main(module="__main__", argv=sys.argv[:1])
