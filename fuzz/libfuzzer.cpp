// Binds a target to libFuzzer, which changes "Pré-Formatado" files by records and fields.
#include <algorithm>
#include <cstdint>
#include <string>

#include "fuzz/mutator.h"
#include "fuzz/target.h"

namespace {

std::string_view AsText(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t max_size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tremvik::fuzz::Check(AsText(data, size));
  return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t max_size,
                                               unsigned int seed) {
  if (!tremvik::fuzz::kTakesFiles) return LLVMFuzzerMutate(data, size, max_size);
  const auto raw = [max_size](std::string& bytes) {
    const std::size_t before = bytes.size();
    bytes.resize(std::max(max_size, before));
    bytes.resize(LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(bytes.data()), before, max_size));
  };
  return tremvik::fuzz::MutateFile(AsText(data, size), seed, raw)
      .copy(reinterpret_cast<char*>(data), max_size);
}
