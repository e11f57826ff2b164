#!/usr/bin/env bash
# measures the branches of the core that the tests reach (at least 95 %)
need "${packages_test[@]}" gcovr

build_cobertura() {
  cmake -S . -B build/cobertura -G Ninja -D CMAKE_BUILD_TYPE=Debug -D TREMVIK_TESTS=ON \
    -D "CMAKE_CXX_FLAGS=--coverage -O0 -fprofile-update=atomic" &&
    cmake --build build/cobertura --parallel "$(nproc)" && find build/cobertura -name '*.gcda' -delete
}

# Branches that an exception alone takes are left out, as every call may throw one; tests/faults throws from them
# all the same. So are those that the compiler makes up where no line of the source can reach them.
measure() {
  gcovr --root . build/cobertura --exclude-throw-branches --exclude-unreachable-branches \
    --filter layout/ --filter runtime/ --filter input/ --filter checks/ --filter records/ --filter passes/ --filter component/ --branches --print-summary \
    --txt build/cobertura/branches.txt --html-details build/cobertura/index.html --fail-under-branch 95
}

step build-cobertura "coverage: build" build_cobertura
# The package's test links the installed libraries into a program that knows nothing of coverage.
check test-cobertura "coverage: run the tests" \
  ctest --test-dir build/cobertura --output-on-failure --parallel "$(nproc)" --exclude-regex '^tools\.package$' || true
check cobertura "coverage: 95 % of the branches" measure || true
grep -E '^(lines|branches)' "$log_dir/cobertura.log" || true
echo "  by file: build/cobertura/branches.txt; line by line: build/cobertura/index.html"
echo "  what nothing reaches, and why: docs/trust.md"
((${#failed_steps[@]} == 0))
