#!/usr/bin/env bash
# builds the browser page build/page/tremvik.html and tries it in a browser (against PROGRAM, if given)
packages_page=(clang-19 lld-19 libc++-19-dev-wasm32 libclang-rt-19-dev-wasm32 wasi-libc nlohmann-json3-dev libfmt-dev
  libutfcpp-dev cmake ninja-build python3)
packages_browser=(chromium chromium-driver python3-selenium)
page=$PWD/build/page
program=${1:-}
[[ -z $program || -x $program ]] || fail_usage "page wants a built command line, not \"$program\""

build_page() {
  cmake/wasm-exceptions "$page/exceptions" &&
    cmake -S . -B "$page/module" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/toolchain-wasm.cmake" \
      -DWASM_EXCEPTIONS="$page/exceptions" -DTREMVIK_PAGE=ON -DTREMVIK_CLI=OFF -DTREMVIK_TESTS=OFF &&
    cmake --build "$page/module" --parallel "$(nproc)" &&
    python3 -B page/assemble.py page "$page/module/page/tremvik_page" "$page/tremvik.html"
}

# The checker of accessibility, where npm is at hand.
fetch_axe() {
  [[ -f $page/npm/node_modules/axe-core/axe.min.js ]] && return
  command -v npm >/dev/null && npm install --silent --no-audit --no-fund --prefix "$page/npm" axe-core@4
}

need "${packages_page[@]}"
step page "page: build" build_page
echo "  build/page/tremvik.html, $(($(stat -c %s "$page/tremvik.html") / 1000)) kB"

if ! (need "${packages_browser[@]}"); then
  echo "  left out: the page's tests, as Chromium is not to be had"
  return 0
fi
mkdir -p "$log_dir"
if ! fetch_axe >"$log_dir/axe.log" 2>&1; then echo "  left out: the check of accessibility, as npm is not to be had"; fi
if [[ -z $program ]]; then
  need "${packages_build[@]}"
  build_preset release "program"
  program=build/release/cli/tremvik
fi
# Debian's own Python: another one in the path does not see Debian's modules.
check page-tests "page: in a browser" /usr/bin/python3 -B tests/page/page.py "$page/tremvik.html" "$program" samples \
  "$page/npm/node_modules/axe-core/axe.min.js" || true
((${#failed_steps[@]} == 0))
