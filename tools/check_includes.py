#!/usr/bin/env python3
"""Holds the levels of the code: a file includes only files of its own folder or a lower level, and the core includes
nothing but itself and the standard library. Prints each include that does not fit; exit status 1 if any.

usage: check_includes.py [ROOT]      (default: the project that holds this script)
"""
import pathlib
import re
import sys

# Level of each folder: a file includes files of its own folder and of lower levels. Folders that stand above all
# (tests, tools, ...) may include anything.
FOLDER_LEVELS = {
    "host": 0,
    "layout": 1,
    "runtime": 2,
    "input": 3,
    "checks": 3,
    "records": 4,
    "passes": 4,
    "component": 5,
    "examination": 6,
    "text": 6,
    "adapters/local": 6,
    "adapters/tables": 6,
    "adapters/memory": 7,
    "adapters/sqlite": 7,
    "adapters/trace": 7,
    "adapters/com": 8,
    "report": 8,
    "sample": 8,
    "anonymizer": 9,
    "cli": 10,
    "page": 10,
}
FREE_FOLDERS = {"tests", "bench", "fuzz", "tools", "examples", "packaging"}
CORE_FOLDERS = {"host", "layout", "runtime", "input", "checks", "records", "passes", "component", "examination"}

STANDARD_HEADERS = set(
    """algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono cinttypes
    climits clocale cmath codecvt compare complex concepts condition_variable coroutine csetjmp csignal cstdarg
    cstddef cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype deque exception execution filesystem
    format forward_list fstream functional future initializer_list iomanip ios iosfwd iostream istream iterator
    latch limits list locale map memory memory_resource mutex new numbers numeric optional ostream queue random
    ranges ratio regex scoped_allocator semaphore set shared_mutex source_location span sstream stack stdexcept
    stop_token streambuf string string_view strstream syncstream system_error thread tuple type_traits typeindex
    typeinfo unordered_map unordered_set utility valarray variant vector version""".split()
)

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(?:"([^"]+)"|<([^>]+)>)', re.MULTILINE)


def includes(path):
    """The (line number, quoted name or None, angle name or None) of each include of the file `path`."""
    text = path.read_text(encoding="utf-8", errors="replace")
    for match in INCLUDE.finditer(text):
        yield text.count("\n", 0, match.start()) + 1, match.group(1), match.group(2)


def folder_of(relative):
    """The folder of the table that holds the file at `relative` (from the root), or None."""
    return next((str(folder) for folder in relative.parents if str(folder) in FOLDER_LEVELS), None)


def faults_of(root, relative):
    own_folder = folder_of(relative)
    own = FOLDER_LEVELS[own_folder]
    for line, quoted, angle in includes(root / relative):
        place = f"{relative}:{line}"
        if angle:
            if own_folder in CORE_FOLDERS and angle not in STANDARD_HEADERS:
                yield f"{place}: <{angle}> is no standard header; the core includes itself and the standard library only"
            continue
        included = pathlib.PurePosixPath(quoted)
        folder = folder_of(included)
        if (root / relative).parent.joinpath(quoted).is_file() and not (root / quoted).is_file():
            yield f'{place}: "{quoted}": write the path from the project\'s root'
        elif not (root / quoted).is_file():
            if own_folder in CORE_FOLDERS:  # above the core it is a header that the build generates
                yield f'{place}: "{quoted}" is not in the project'
        elif folder is None:
            yield f'{place}: "{quoted}" belongs to no level that other code may include'
        elif folder != own_folder and FOLDER_LEVELS[folder] >= own:
            yield f'{place}: {own_folder} (level {own}) includes "{quoted}" of level {FOLDER_LEVELS[folder]}'


def check(root):
    """All faults under `root`, in the order of the files."""
    faults = []
    for path in sorted(root.rglob("*")):
        relative = path.relative_to(root)
        if path.suffix not in {".h", ".cpp"} or not path.is_file():
            continue
        folder = relative.parts[0]
        if folder in FREE_FOLDERS or folder.startswith((".", "build")) or folder == "dist":
            continue
        if folder_of(relative) is None:
            faults.append(f"{relative}: give the folder a level in tools/check_includes.py")
        else:
            faults += faults_of(root, relative)
    return faults


def main():
    root = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).resolve().parent.parent
    faults = check(root.resolve())
    print("\n".join(faults) or "includes: every file keeps to its level")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
