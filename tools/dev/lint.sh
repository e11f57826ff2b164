#!/usr/bin/env bash
# runs clang-tidy over all sources; those of the Windows library once ./dev windows has built it
need "${packages_test[@]}"
build_preset test "tests"
check tidy "clang-tidy" python3 -B tools/tidy.py build/test clang-tidy-14 || true
if [[ -d build/windows/x86_64 ]]; then
  check tidy-windows "clang-tidy: the automation library" \
    python3 -B tools/tidy.py build/windows/x86_64 clang-tidy-14 adapters/com tests/com examples/windows || true
fi
((${#failed_steps[@]} == 0))
