#include "image/pnm_tokens.h"

#include <string>
#include <string_view>

#include "marovia/error.h"

namespace marovia {
namespace {

constexpr int kEnd = -1;
constexpr std::int64_t kLargest = 1'000'000'000'000'000;

bool IsDigit(int byte) {
  return byte >= '0' && byte <= '9';
}

bool IsBlank(int byte) {
  return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

bool EndsLine(int byte) {
  return byte == '\n' || byte == '\r' || byte == kEnd;
}

}  // namespace

std::int64_t PnmTokens::Number() {
  int byte = Next();
  while (IsBlank(byte)) byte = Next();
  if (!IsDigit(byte)) FailAt(byte);

  std::int64_t number = 0;
  for (; IsDigit(byte); byte = Next()) {
    number = number * 10 + (byte - '0');
    if (number > kLargest) {
      Fail(Errc::kMalformed, "A number in the file exceeds " + std::to_string(kLargest) + ".");
    }
  }
  if (byte != kEnd && !IsBlank(byte)) FailAt(byte);
  return number;
}

// The next byte, kEnd behind the last one; a comment reads as the byte that ends it.
int PnmTokens::Next() {
  bool comment = false;
  while (at_ < bytes_.size()) {
    const int byte = bytes_[at_++];
    comment = comment || byte == '#';
    if (!comment || EndsLine(byte)) return byte;
  }
  return kEnd;
}

void PnmTokens::FailAt(int byte) {
  Fail(Errc::kMalformed, byte == kEnd ? "The file ends where a number is expected."
                                      : "The file has the byte " + std::to_string(byte) +
                                            " where a number is expected.");
}

}  // namespace marovia
