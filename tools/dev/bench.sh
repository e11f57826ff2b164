#!/usr/bin/env bash
# measures speed against other programs; "--docs" rewrites the figures of docs/, "--cpu" suits a busy machine
case ${1:-} in
  "" | --cpu | --docs) option=${1:-} ;;
  *) fail_usage "bench knows \"--cpu\" and \"--docs\", not \"$1\"" ;;
esac

# A Node.js that did not come from Debian brings its own npm, and Debian's would not stand beside it.
packages_bench=("${packages_test[@]}" hyperfine time gawk perl gnucobol3 python3-pandas sqlite3)
if ! command -v node >/dev/null || ! command -v npm >/dev/null; then packages_bench+=(nodejs npm); fi

install_npm_peer() {
  mkdir -p build/bench
  cp bench/package.json build/bench/
  npm install --prefix build/bench --no-package-lock --no-audit --no-fund --ignore-scripts
}

need "${packages_bench[@]}"
build_preset release "program"
step configure-test "allocation counter: configure" cmake --preset test
step build-allocations "allocation counter: build" cmake --build build/test --target allocations
check npm-peer "peer from npm" install_npm_peer || echo "  goes on without it"

echo "measuring, which takes some minutes; leave the machine alone meanwhile"
python3 -B bench/bench.py build/release/cli/tremvik build/test/bench/allocations build/bench $option
