#!/usr/bin/env python3
"""The files of samples/ are what tools/make_samples.py makes of samples/aceito.txt."""

import filecmp
import pathlib
import shutil
import subprocess
import sys
import tempfile

root = pathlib.Path(sys.argv[1])
samples = root / "samples"
with tempfile.TemporaryDirectory() as folder:
    for name in ("aceito.txt", "README.md"):
        shutil.copy(samples / name, folder)
    subprocess.run([sys.executable, "-B", root / "tools" / "make_samples.py", folder], check=True)
    names = {p.name for p in samples.iterdir()} | {p.name for p in pathlib.Path(folder).iterdir()}
    _, changed, missing = filecmp.cmpfiles(samples, folder, names, shallow=False)
    if changed or missing:
        sys.exit(f"run tools/make_samples.py; changed: {changed}, missing: {missing}")
