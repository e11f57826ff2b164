#!/usr/bin/env bash
# runs all tests and checks; "quick" leaves out the sanitizers, Windows and the page
case ${1:-} in
  "" | quick) scope=${1:-all} ;;
  *) fail_usage "test knows \"quick\", not \"$1\"" ;;
esac

passed=0
failed=0

# examine NAME LABEL COMMAND... : one check that is no test program; it counts as one.
examine() {
  if check "$@"; then passed=$((passed + 1)); else failed=$((failed + 1)); fi
}

# run_tests PRESET LABEL : all tests of a built preset, counted.
run_tests() {
  check "test-$1" "$2" ctest --preset "$1" --parallel "$(nproc)" || true
  local closing
  closing=$(grep -E '^[0-9]+% tests passed' "$log_dir/test-$1.log" || true)
  if [[ $closing =~ ,\ ([0-9]+)\ tests\ failed\ out\ of\ ([0-9]+) ]]; then
    failed=$((failed + BASH_REMATCH[1]))
    passed=$((passed + BASH_REMATCH[2] - BASH_REMATCH[1]))
  else
    failed=$((failed + 1))
  fi
  echo "  ${closing:-no test was run}"
}

# run_windows : the automation library under Wine, its clients counted. Shows its own steps.
run_windows() {
  mkdir -p "$log_dir"
  ./dev windows build/test/cli/tremvik 2>&1 | tee "$log_dir/windows.log" || failed_steps+=("Windows")
  local tally
  tally=$(tail -n 1 "$log_dir/windows.log")
  if [[ $tally =~ ^([0-9]+)\ passed,\ ([0-9]+)\ failed$ ]]; then
    passed=$((passed + BASH_REMATCH[1]))
    failed=$((failed + BASH_REMATCH[2]))
  else
    failed=$((failed + 1))
  fi
}

# run_sarif : reports before the validator that npm has for them. Shows its own steps, and what it leaves out.
run_sarif() {
  if ./dev sarif build/test/cli/tremvik; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    failed_steps+=("SARIF")
  fi
}

need "${packages_test[@]}"
examine format "format: clang-format" clang-format-14 --dry-run --Werror $(sources)
build_preset test "tests"
run_tests test "tests: run"
if [[ $scope == all ]]; then
  build_preset asan "sanitizers"
  run_tests asan "sanitizers: the same tests"
  run_windows
  examine page-all "page: build, and its tests in a browser" ./dev page build/test/cli/tremvik
  cat "$log_dir/page-all.log"
  run_sarif
fi

echo
if ((${#failed_steps[@]})); then printf 'failed: %s\n' "${failed_steps[@]}"; fi
echo "$passed passed, $failed failed"
((${#failed_steps[@]} == 0 && passed > 0))
