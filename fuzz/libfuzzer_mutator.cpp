// Lets libFuzzer change inputs by records and fields.
#include <algorithm>
#include <string>

#include "fuzz/mutator.h"
#include "fuzz/target.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t max_size);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t max_size,
                                               unsigned int seed) {
  using tremvik::fuzz::kFileAt;
  constexpr unsigned kRaw = 64;  // one in so many inputs is changed as plain bytes, the first ones included
  if (size < kFileAt || max_size <= kFileAt || seed % kRaw == 0)
    return LLVMFuzzerMutate(data, size, max_size);
  const auto raw = [max_size](std::string& bytes) {
    const std::size_t before = bytes.size();
    bytes.resize(std::max(max_size - kFileAt, before));
    auto* const begin = reinterpret_cast<std::uint8_t*>(bytes.data());
    bytes.resize(LLVMFuzzerMutate(begin, before, max_size - kFileAt));
  };
  const std::string file =
      tremvik::fuzz::MutateFile(tremvik::fuzz::AsText(data, size).substr(kFileAt), seed, raw);
  const std::size_t length = std::min(file.size(), max_size - kFileAt);
  std::copy_n(file.begin(), length, data + kFileAt);
  return kFileAt + length;
}
