#!/usr/bin/env bash
# builds the automation library for Windows, tries it under Wine (against PROGRAM, if given) and fills dist/
packages_windows=("${packages_build[@]}" g++-mingw-w64-x86-64-posix mingw-w64-tools wine wine64 libwine-dev
  googletest locales python3 dpkg-dev gcc make tcl)
windows=$PWD/build/windows
program=${1:-}
[[ -z $program || -x $program ]] || fail_usage "windows wants a built command line, not \"$program\""

# cross_build ARCHITECTURE : in build/windows/ARCHITECTURE.
cross_build() {
  step "configure-$1" "Windows $1: configure" cmake -S . -B "$windows/$1" -G Ninja -DWIN_ARCH="$1" \
    -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/toolchain-mingw.cmake" -DTREMVIK_CLI=OFF -DTREMVIK_TESTS=OFF \
    -DTREMVIK_SQLITE="$windows/sqlite"
  step "build-$1" "Windows $1: build" cmake --build "$windows/$1" --parallel "$(nproc)"
}

# The locales that the library is tried in, for these runs alone: without them accented file names are lost.
make_locales() {
  local locale
  for locale in pt_BR en_US; do
    [[ -d $LOCPATH/$locale.UTF-8 ]] || localedef -i "$locale" -f UTF-8 "$LOCPATH/$locale.UTF-8"
  done
}

# Fetched apart from the step's usual report, since the 64-bit library is built and tried without them too.
fetch_32bit() {
  mkdir -p "$log_dir"
  cmake/wine-32bit "$windows/wine32" >"$log_dir/wine-32bit.log" 2>&1
}

# text_for_windows FILE... : UTF-8 with its mark and CR LF line ends, as every editor of Windows reads it.
text_for_windows() {
  sed -i -e '1s/^/\xef\xbb\xbf/' -e 's/$/\r/' "$@"
}

# What a maker of hosts ships; in the folder of each architecture all that belongs beside its library.
fill_dist() {
  local architecture
  rm -rf dist
  mkdir -p dist/exemplos dist/tabelas
  for architecture in "${architectures[@]}"; do
    mkdir -p "dist/$architecture"
    cp "$windows/$architecture/adapters/com/DllTremvik.dll" packaging/windows/Tremvik.Componente.manifest "dist/$architecture/"
    "$program" tabelas construir "dist/$architecture/tblFixas.fix"
  done
  # Of two type libraries the 32-bit one, the last, serves tools of either architecture.
  cp "$windows/$architecture/adapters/com/tremvik_idl/DllTremvik.tlb" adapters/com/DllTremvik.idl docs/windows.md \
    docs/componentes.idl packaging/windows/LEIAME.txt dist/
  cp data/tbl*.csv data/tables.json dist/tabelas/
  cp examples/windows/* dist/exemplos/
  text_for_windows dist/LEIAME.txt
  # The script host reads scripts in the system's 8-bit characters.
  iconv -f UTF-8 -t WINDOWS-1252 packaging/windows/criar-tblFixas.vbs | sed 's/$/\r/' >dist/criar-tblFixas.vbs
}

# A library that needs anything but the system's own would not load on a user's machine.
system_libraries_only() {
  local architecture foreign status=0
  for architecture in "${architectures[@]}"; do
    foreign=$("$architecture-w64-mingw32-objdump" -p "dist/$architecture/DllTremvik.dll" | sed -n 's/.*DLL Name: //p' |
      grep -viE '^(advapi32|kernel32|msvcrt|ole32|oleaut32|user32)\.dll$') || continue
    echo "$architecture needs $foreign"
    status=1
  done
  return $status
}

need "${packages_windows[@]}"
export WINEPREFIX=$windows/prefix LOCPATH=$windows/locale
mkdir -p "$LOCPATH"
unset WINEDLLPATH
architectures=(x86_64)
left_out=
if ! (need g++-mingw-w64-i686-posix); then
  left_out="the 32-bit compiler is not to be had"
elif ! fetch_32bit; then
  left_out="the 32-bit parts of Wine are not to be had; build/log/wine-32bit.log says why"
else
  architectures+=(i686)
  export WINEDLLPATH=$windows/wine32
fi

step sqlite-source "SQLite: source" cmake/sqlite-source "$windows/sqlite"
if [[ -z $program ]]; then
  build_preset release "program"
  program=build/release/cli/tremvik
fi
for architecture in "${architectures[@]}"; do
  cross_build "$architecture"
done
step dist "dist/" fill_dist
step windows-imports "Windows: system libraries only" system_libraries_only
step wine-locales "Wine: locales" make_locales
step wine-prefix "Wine: prefix" cmake/wine-prefix
builds=()
for architecture in "${architectures[@]}"; do
  builds+=(--build "$architecture=$windows/$architecture")
done
check windows-clients "Windows: real clients under Wine" \
  python3 -B tests/com/run.py --cli "$program" --work "$windows/try" "${builds[@]}" || true

echo "dist/: $(cd dist && echo */DllTremvik.dll), DllTremvik.tlb, descriptions, page and examples"
if [[ $left_out ]]; then echo "left out: the 32-bit library and its tests ($left_out)"; fi
if ((${#failed_steps[@]})); then printf 'failed: %s\n' "${failed_steps[@]}"; fi
grep -E '^[0-9]+ passed, [0-9]+ failed$' "$log_dir/windows-clients.log" || echo "the clients did not run to their end"
((${#failed_steps[@]} == 0))
