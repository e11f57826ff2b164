#!/usr/bin/env bash
# fuzzes for SECONDS (60) in all, under sanitizers, and kills 200 imports
seconds=${1:-60}
[[ $seconds =~ ^[1-9][0-9]*$ ]] || fail_usage "fuzz wants a number of seconds, not \"$seconds\""

need "${packages_test[@]}" clang-14 libclang-rt-14-dev

# The targets, each with its share of the time in twentieths and the inputs to begin with besides the kept ones.
fuzz_targets=(file:12:build/fuzz/seeds examination:5:build/fuzz/seeds values:1: csv_reader:2:data)

build_fuzz() {
  cmake -S . -B build/fuzz -G Ninja -D CMAKE_BUILD_TYPE=RelWithDebInfo -D CMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1 \
    -D CMAKE_C_COMPILER=clang-14 -D CMAKE_CXX_COMPILER=clang++-14 -D CMAKE_CXX_FLAGS=-fsanitize=fuzzer-no-link \
    -D TREMVIK_SANITIZE=ON -D TREMVIK_TESTS=ON -D TREMVIK_FUZZ=ON &&
    cmake --build build/fuzz --parallel "$(nproc)" --target $(fuzz_programs)
}

fuzz_programs() {
  local target
  for target in "${fuzz_targets[@]}"; do echo "fuzz_${target%%:*}"; done
}

# Whole files: the samples and small generated ones.
make_seeds() {
  rm -rf build/fuzz/seeds && mkdir -p build/fuzz/seeds && cp samples/*.txt build/fuzz/seeds/
  local number
  for number in {1..9}; do
    build/test/cli/tremvik exemplo --declaracoes 1 --semente "$number" --saida "build/fuzz/seeds/exemplo-$number.txt" --sobrescrever
  done
}

# fuzz_one TARGET SECONDS SEEDS : on every core at once; the processes share what they find.
fuzz_one() {
  local root=$PWD work=build/fuzz/run/$1 status=0
  mkdir -p "$work" "build/fuzz/found/$1" "build/fuzz/faults/$1"
  rm -f "$work"/fuzz-*.log
  (cd "$work" && exec "$root/build/fuzz/fuzz/fuzz_$1" -max_total_time="$2" -jobs="$(nproc)" -workers="$(nproc)" \
    -max_len=12000 -timeout=20 -rss_limit_mb=4096 -print_final_stats=1 \
    -artifact_prefix="$root/build/fuzz/faults/$1/" "$root/build/fuzz/found/$1" "$root/fuzz/corpus/$1" \
    ${3:+"$root/$3"}) >"$work/jobs.log" 2>&1 || status=$?
  cat "$work"/fuzz-*.log 2>/dev/null || cat "$work/jobs.log"  # which repeats them
  return "$status"
}

# What a target's log says: executions of all processes together, edges reached by the best of them.
tell() {
  awk -v target="$1" '/stat::number_of_executed_units/ { runs += $2 }
    { for (i = 1; i < NF; i++) if ($i == "cov:" && $(i + 1) + 0 > edges) edges = $(i + 1) }
    END { printf "  %s: %d inputs run, %d edges reached\n", target, runs, edges }' "$log_dir/fuzz-$1.log"
}

step build-fuzz "fuzz: build the targets (clang, sanitizers)" build_fuzz
build_preset test "tests"
step fuzz-seeds "fuzz: inputs from samples/ and exemplo" make_seeds
for target in "${fuzz_targets[@]}"; do
  IFS=: read -r name share seeds <<<"$target"
  check "fuzz-$name" "fuzz: $name" fuzz_one "$name" $((seconds * share / 20 + 1)) "$seeds" || true
  tell "$name"
done
check fuzz-killed "200 imports killed" \
  env TREMVIK_KILLS=200 python3 -B tests/faults/machine.py build/test/cli/tremvik samples || true

if ((${#failed_steps[@]})); then
  printf 'failed: %s\n' "${failed_steps[@]}"
  echo "inputs that fail are in build/fuzz/faults/TARGET/; run one again with build/test/fuzz/replay_TARGET 0 FILE"
fi
((${#failed_steps[@]} == 0))
