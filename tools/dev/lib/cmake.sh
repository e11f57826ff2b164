# Building one of the presets of CMakePresets.json, which lands in build/PRESET.

# build_preset PRESET LABEL
build_preset() {
  step "configure-$1" "$2: configure" cmake --preset "$1"
  step "build-$1" "$2: build" cmake --build "build/$1" --parallel "$(nproc)"
}

# Every C++ file of the project, also one that is not yet committed. No name holds a blank.
sources() {
  git ls-files --cached --others --exclude-standard --deduplicate -- '*.h' '*.cpp' | while read -r file; do
    if [[ -f $file ]]; then echo "$file"; fi
  done
}
