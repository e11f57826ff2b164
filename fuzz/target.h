// What every fuzz target gives: libFuzzer links with it, and so does the replay of the kept corpus.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace tremvik::fuzz {

/// Runs the target on one input. Ends the process when one of its properties does not hold.
void Check(std::string_view input);

/// True when inputs are "Pré-Formatado" files, which the mutator knows how to change.
extern const bool kTakesFiles;

/// Ends the process when a property does not hold: the fuzzer keeps the input.
inline void Expect(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "the property does not hold: %s\n", property);
  std::abort();
}

}  // namespace tremvik::fuzz
