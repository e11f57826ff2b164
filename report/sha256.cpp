#include "report/sha256.h"

#include <fmt/format.h>

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace tremvik::report {
namespace {

constexpr std::size_t kBlock = 64;

// The first 32 bits of the fractions of the cube roots of the first 64 primes.
constexpr std::array<std::uint32_t, 64> kRounds{
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

using Words = std::array<std::uint32_t, 8>;

// The first 32 bits of the fractions of the square roots of the first 8 primes.
constexpr Words kStart{0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                       0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};

std::uint32_t BigEndianWord(const char* bytes) {
  std::uint32_t word = 0;
  for (std::size_t i = 0; i < 4; ++i)
    word = word << 8U | static_cast<unsigned char>(bytes[i]);
  return word;
}

std::array<std::uint32_t, 64> Schedule(const char* block) {
  std::array<std::uint32_t, 64> w{};
  for (std::size_t i = 0; i < 16; ++i)
    w[i] = BigEndianWord(block + 4 * i);
  for (std::size_t i = 16; i < w.size(); ++i) {
    const std::uint32_t a = w[i - 15];
    const std::uint32_t b = w[i - 2];
    w[i] = w[i - 16] + (std::rotr(a, 7) ^ std::rotr(a, 18) ^ a >> 3U) + w[i - 7] +
           (std::rotr(b, 17) ^ std::rotr(b, 19) ^ b >> 10U);
  }
  return w;
}

// One round; what it leaves in the place of `h` is the next round's `a`, and so on for the others.
void Round(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t& d, std::uint32_t e,
           std::uint32_t f, std::uint32_t g, std::uint32_t& h, std::uint32_t added) {
  h += (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) + (g ^ (e & (f ^ g))) + added;
  d += h;
  h += (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + ((a & b) | (c & (a | b)));
}

void AddBlock(Words& state, const char* block) {
  const auto w = Schedule(block);
  auto [a, b, c, d, e, f, g, h] = state;
  for (std::size_t i = 0; i < w.size(); i += state.size()) {
    const auto added = [&w, i](std::size_t round) { return kRounds[i + round] + w[i + round]; };
    Round(a, b, c, d, e, f, g, h, added(0));
    Round(h, a, b, c, d, e, f, g, added(1));
    Round(g, h, a, b, c, d, e, f, added(2));
    Round(f, g, h, a, b, c, d, e, added(3));
    Round(e, f, g, h, a, b, c, d, added(4));
    Round(d, e, f, g, h, a, b, c, added(5));
    Round(c, d, e, f, g, h, a, b, added(6));
    Round(b, c, d, e, f, g, h, a, added(7));
  }
  const Words mixed{a, b, c, d, e, f, g, h};
  for (std::size_t i = 0; i < state.size(); ++i)
    state[i] += mixed[i];
}

// What stands behind the last whole block: the rest, a one bit, zeros, the length in bits.
std::string Tail(std::string_view rest, std::uint64_t bytes) {
  std::string tail(rest);
  tail += '\x80';
  while (tail.size() % kBlock != kBlock - sizeof(bytes))
    tail += '\0';
  for (unsigned shift = 64; shift > 0;) {
    shift -= 8;
    tail += static_cast<char>(bytes * 8 >> shift & 0xFFU);
  }
  return tail;
}

}  // namespace

std::string Sha256(std::string_view bytes) {
  Words state = kStart;
  const std::uint64_t length = bytes.size();
  for (; bytes.size() >= kBlock; bytes.remove_prefix(kBlock))
    AddBlock(state, bytes.data());
  const std::string tail = Tail(bytes, length);
  for (std::size_t at = 0; at < tail.size(); at += kBlock)
    AddBlock(state, tail.data() + at);
  std::string digits;
  for (const std::uint32_t word : state)
    fmt::format_to(std::back_inserter(digits), "{:08x}", word);
  return digits;
}

}  // namespace tremvik::report
