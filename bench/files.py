"""The files that are measured, and what every program must say of them."""
import collections
import dataclasses
import json

import measure

LINES = (1000, 10000, 32766)  # a file of 32,767 lines is refused at its last one: the counter of lines has 16 bits
SMALL_FILES = 2000
START = "start"  # the label of the smallest file


@dataclasses.dataclass
class FileSet:
    label: str
    files: list
    lines: int  # of all files together
    bytes: int
    answer: dict  # {record code: count, "sum": third field of CR=10 in cents}


def file_set(label, files):
    lines = [line for file in files for line in file.read_bytes().split(b"\r\n")[:-1]]
    answer = collections.Counter(line[:2].decode() for line in lines)
    answer["sum"] = sum(int(line[8:23]) for line in lines if line.startswith(b"10"))
    return FileSet(label, files, len(lines), sum(file.stat().st_size for file in files), dict(answer))


def parse_answer(text, separator=None):
    """The answer that peers print, a line "KEY NUMBER" each."""
    return {key: int(number) for key, number in (line.split(separator) for line in text.splitlines())}


def program_answer(program, files):
    """The same answer out of the JSON lines of `program`, which validates: what it accepted and would have stored."""
    answer = collections.Counter()
    for line in measure.output([*program, "--json", *files]).splitlines():
        event = json.loads(line)
        if event["tipo"] == "gravacao":
            answer[event["registro"]] += 1
            if event["registro"] == "10":
                answer["sum"] += int(event["campos"]["ValorContábil"].replace(".", "").replace(",", ""))
        elif event["tipo"] == "fim":
            answer["01"] += not event["bolRetMonitora"]  # the master record is not stored
    return dict(answer)


def generate(tremvik, work):
    """The smallest file first, then one for each length, then the small files."""
    def sample(name, *options):
        file = work / name
        if not file.exists() or file.stat().st_mtime < tremvik.stat().st_mtime:
            file.unlink(missing_ok=True)
            measure.output([tremvik, "exemplo", *options, "--saida", file])
        return file

    (work / "small").mkdir(parents=True, exist_ok=True)
    small = [sample(f"small/{n:04}.txt", "--declaracoes", 1, "--semente", n) for n in range(1, SMALL_FILES + 1)]
    single = [file_set(f"{n:,}", [sample(f"{n}.txt", "--registros", n)]) for n in LINES]
    return [file_set(START, small[:1]), *single, file_set(f"{SMALL_FILES:,} files", small)]
