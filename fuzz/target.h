// What every fuzz target gives: libFuzzer links with it, and so does the replay of the kept corpus.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

/// Runs the target on one input. Aborts when one of its properties does not hold.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace tremvik::fuzz {

/// Bytes of the target's input before the "Pré-Formatado" file that it holds; npos when it holds none.
extern const std::size_t kFileAt;

/// Ends the process when a property does not hold: the fuzzer keeps the input.
inline void Expect(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "the property does not hold: %s\n", property);
  std::abort();
}

/// The bytes of an input as a text.
inline std::string_view AsText(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace tremvik::fuzz
