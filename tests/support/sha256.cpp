#include <bit>

#include "tests/support/testing.h"

namespace marovia::test {
namespace {

using Words = std::array<std::uint32_t, 64>;

// The first 32 bits behind the point of `root` of the i-th prime. A double holds 52 bits behind the
// point of roots below 8, so the digits are exact.
Words RootDigits(double (*root)(double)) {
  Words digits{};
  std::size_t count = 0;
  for (int n = 2; count < digits.size(); ++n) {
    bool prime = true;
    for (int d = 2; d * d <= n; ++d) prime = prime && n % d != 0;
    if (prime) digits[count++] = static_cast<std::uint32_t>(std::fmod(root(n), 1) * 4294967296.0);
  }
  return digits;
}

// The three rotations' sum; where `shifts`, the last bits fall out.
std::uint32_t Mix(std::uint32_t x, int a, int b, int c, bool shifts = false) {
  return std::rotr(x, a) ^ std::rotr(x, b) ^ (shifts ? x >> c : std::rotr(x, c));
}

void AddBlock(Words& state, ByteView block) {
  static const Words k = RootDigits(std::cbrt);
  Words w{};
  for (std::size_t i = 0; i < 64; ++i) w[i / 4] = w[i / 4] << 8 | block[i];
  for (std::size_t i = 16; i < 64; ++i) {
    w[i] = w[i - 16] + Mix(w[i - 15], 7, 18, 3, true) + w[i - 7] + Mix(w[i - 2], 17, 19, 10, true);
  }
  Words s = state;
  for (std::size_t i = 0; i < 64; ++i) {
    const std::uint32_t chosen = (s[4] & s[5]) ^ (~s[4] & s[6]);
    const std::uint32_t majority = (s[0] & s[1]) ^ (s[0] & s[2]) ^ (s[1] & s[2]);
    const std::uint32_t sum = s[7] + Mix(s[4], 6, 11, 25) + chosen + k[i] + w[i];
    s[3] += sum;
    s[7] = sum + Mix(s[0], 2, 13, 22) + majority;
    std::rotate(s.begin(), s.begin() + 7, s.begin() + 8);
  }
  for (std::size_t i = 0; i < 8; ++i) state[i] += s[i];
}

}  // namespace

std::string Sha256(ByteView bytes) {
  Bytes padded(bytes.begin(), bytes.end());
  padded.push_back(0x80);
  while (padded.size() % 64 != 56) padded.push_back(0);
  for (int shift = 56; shift >= 0; shift -= 8) {
    padded.push_back(static_cast<std::uint8_t>(std::uint64_t{bytes.size()} * 8 >> shift));
  }
  Words state = RootDigits(std::sqrt);
  for (std::size_t at = 0; at < padded.size(); at += 64) {
    AddBlock(state, ByteView(padded).subspan(at, 64));
  }
  std::string text;
  for (std::size_t i = 0; i < 64; ++i) {
    text += "0123456789abcdef"[state[i / 8] >> (28 - 4 * (i % 8)) & 15];
  }
  return text;
}

}  // namespace marovia::test
