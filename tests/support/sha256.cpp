#include "tests/support/sha256.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace marovia::test {
namespace {

using Words8 = std::array<std::uint32_t, 8>;
using Words64 = std::array<std::uint32_t, 64>;

// The first 32 bits behind the point of `root` of the i-th prime. A double holds 52 bits behind the
// point of roots below 8, so the digits are exact.
Words64 RootDigits(double (*root)(double)) {
  Words64 digits{};
  std::size_t count = 0;
  for (int n = 2; count < digits.size(); ++n) {
    bool prime = true;
    for (int d = 2; d * d <= n; ++d) prime = prime && n % d != 0;
    if (!prime) continue;
    const double value = root(n);
    digits[count++] = static_cast<std::uint32_t>((value - std::floor(value)) * 4294967296.0);
  }
  return digits;
}

Words64 Schedule(ByteView block) {
  Words64 w{};
  for (std::size_t i = 0; i < 64; ++i) w[i / 4] = w[i / 4] << 8 | block[i];
  for (std::size_t i = 16; i < 64; ++i) {
    const std::uint32_t a = w[i - 15];
    const std::uint32_t b = w[i - 2];
    w[i] = w[i - 16] + (std::rotr(a, 7) ^ std::rotr(a, 18) ^ (a >> 3)) + w[i - 7] +
           (std::rotr(b, 17) ^ std::rotr(b, 19) ^ (b >> 10));
  }
  return w;
}

void Compress(Words8& state, ByteView block) {
  static const Words64 k = RootDigits(std::cbrt);
  const Words64 w = Schedule(block);
  Words8 s = state;
  for (std::size_t i = 0; i < 64; ++i) {
    const std::uint32_t chosen = (s[4] & s[5]) ^ (~s[4] & s[6]);
    const std::uint32_t majority = (s[0] & s[1]) ^ (s[0] & s[2]) ^ (s[1] & s[2]);
    const std::uint32_t t1 = s[7] +
                             (std::rotr(s[4], 6) ^ std::rotr(s[4], 11) ^ std::rotr(s[4], 25)) +
                             chosen + k[i] + w[i];
    const std::uint32_t t2 =
        (std::rotr(s[0], 2) ^ std::rotr(s[0], 13) ^ std::rotr(s[0], 22)) + majority;
    s[3] += t1;
    s[7] = t1 + t2;
    std::rotate(s.begin(), s.end() - 1, s.end());
  }
  for (std::size_t i = 0; i < 8; ++i) state[i] += s[i];
}

Bytes Pad(ByteView bytes) {
  Bytes padded(bytes.begin(), bytes.end());
  padded.push_back(0x80);
  while (padded.size() % 64 != 56) padded.push_back(0);
  const std::uint64_t bits = std::uint64_t{bytes.size()} * 8;
  for (int shift = 56; shift >= 0; shift -= 8) {
    padded.push_back(static_cast<std::uint8_t>(bits >> shift));
  }
  return padded;
}

}  // namespace

std::string Sha256(ByteView bytes) {
  Words8 state{};
  const Words64 roots = RootDigits(std::sqrt);
  for (std::size_t i = 0; i < 8; ++i) state[i] = roots[i];
  const Bytes padded = Pad(bytes);
  for (std::size_t at = 0; at < padded.size(); at += 64) {
    Compress(state, ByteView(padded).subspan(at, 64));
  }
  std::string text;
  for (const std::uint32_t word : state) {
    for (int shift = 28; shift >= 0; shift -= 4) text += "0123456789abcdef"[word >> shift & 15];
  }
  return text;
}

}  // namespace marovia::test
