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

    @property
    def many(self):
        return len(self.files) > 1


def answer_of(contents):
    count = collections.Counter()
    for content in contents:
        for line in content.split(b"\r\n")[:-1]:
            count[line[:2].decode()] += 1
            if line.startswith(b"10"):
                count["sum"] += int(line[8:23])
    return dict(count)


def parse_answer(text):
    return {key: int(number) for key, number in (line.split() for line in text.splitlines())}


def program_answer(program, files):
    """The same answer out of the JSON lines of `program`, which validates: what it accepted and would have stored."""
    count = collections.Counter()
    for line in measure.output([*program, "--json", *files]).splitlines():
        event = json.loads(line)
        if event["tipo"] == "gravacao":
            count[event["registro"]] += 1
            if event["registro"] == "10":
                count["sum"] += int(event["campos"]["ValorContábil"].replace(".", "").replace(",", ""))
        elif event["tipo"] == "fim":
            count["01"] += not event["bolRetMonitora"]  # the master record is not stored
    return dict(count)


def file_set(label, files):
    contents = [file.read_bytes() for file in files]
    answer = answer_of(contents)
    lines = sum(number for key, number in answer.items() if key != "sum")
    return FileSet(label, files, lines, sum(map(len, contents)), answer)


def generate(tremvik, work):
    """The smallest file first, then one for each length, then the small files."""
    def sample(name, *options):
        file = work / name
        if not file.exists() or file.stat().st_mtime < tremvik.stat().st_mtime:
            measure.output([tremvik, "exemplo", *options, "--saida", file])
        return file

    (work / "small").mkdir(parents=True, exist_ok=True)
    small = [sample(f"small/{n:04}.txt", "--declaracoes", 1, "--semente", n) for n in range(1, SMALL_FILES + 1)]
    sets = [file_set(START, small[:1])]
    sets += [file_set(f"{n:,}", [sample(f"{n}.txt", "--registros", n)]) for n in LINES]
    return [*sets, file_set(f"{SMALL_FILES:,} files", small)]
