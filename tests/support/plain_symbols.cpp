#include "tests/support/plain_symbols.h"

#include "base/checked.h"

namespace marovia::plain {
namespace {

constexpr int kMark = 2;  // behind the last digit of a number

std::int32_t Sum(std::int32_t a, std::int32_t b) {
  return ToInt32(static_cast<double>(a) + b);
}

// The frequencies of all symbols from one on.
int SumFrom(const Arithmetic::Context& context, std::size_t symbol) {
  int sum = 0;
  for (; symbol < context.size(); ++symbol) sum += context[symbol].frequency;
  return sum;
}

}  // namespace

int Bits::Code(int bit) {
  ++count;
  const std::size_t byte = next / 8;
  const auto shift = static_cast<int>(7 - next % 8);
  if (stream && byte == stream->size()) {
    ++pastEnd;
    return 0;
  }
  ++next;
  if (stream) return (*stream)[byte] >> shift & 1;
  if (shift == 7) written.push_back(0);
  written.back() = static_cast<std::uint8_t>(written.back() | bit << shift);
  return bit;
}

Arithmetic::Arithmetic(Coding coding, const Bits& of)
    : bits(of),
      codeValueBits(coding == Coding::kRaw   ? 1
                    : coding == Coding::kWdr ? 11
                                             : 9),
      hasEnd_(coding == Coding::kWdr),
      quarter_((1 << codeValueBits) / 4),
      high_((1 << codeValueBits) - 1) {
  if (coding == Coding::kRaw) return;
  for (std::size_t k = 1; k < contexts_.size(); ++k) {
    const int characters = hasEnd_ ? 4 : k <= 3 ? 3 : 2;
    for (int c = 0; c < characters; ++c) contexts_[k].push_back({c, 1});
  }
  for (int i = 0; bits.stream && i < codeValueBits; ++i) value_ = 2 * value_ + bits.Code(0);
}

int Arithmetic::Code(int context, int character) {
  EndBehindStream();
  lastContext_ = context;
  Context& symbols = contexts_[static_cast<std::size_t>(context)];
  const std::size_t symbol = Find(symbols, character);
  const int coded = symbols[symbol].character;
  Narrow(symbols, symbol);
  Widen();
  if (coded != kEnd) Learn(symbols, symbol);
  return coded;
}

void Arithmetic::Done() {
  if (hasEnd_) Code(lastContext_, kEnd);
  ++bitsToFollow;
  Emit(low_ < quarter_ ? 0 : 1);
}

void Arithmetic::EndBehindStream() const {
  if (bits.pastEnd >= codeValueBits) throw CodingEnds{};
}

std::size_t Arithmetic::Find(const Context& context, int character) const {
  const int target = ((value_ - low_ + 1) * SumFrom(context, 0) - 1) / (high_ - low_ + 1);
  std::size_t symbol = 0;
  while (bits.stream ? SumFrom(context, symbol + 1) > target
                     : context[symbol].character != character) {
    ++symbol;
  }
  return symbol;
}

void Arithmetic::Narrow(const Context& context, std::size_t symbol) {
  const int range = high_ - low_ + 1;
  const int total = SumFrom(context, 0);
  high_ = low_ + range * SumFrom(context, symbol) / total - 1;
  low_ = low_ + range * SumFrom(context, symbol + 1) / total;
}

void Arithmetic::Widen() {
  for (;;) {
    int less = 0;
    if (high_ < 2 * quarter_) {
      Emit(0);
    } else if (low_ >= 2 * quarter_) {
      Emit(1);
      less = 2 * quarter_;
    } else if (low_ >= quarter_ && high_ < 3 * quarter_) {
      ++bitsToFollow;
      less = quarter_;
    } else {
      return;
    }
    low_ = 2 * (low_ - less);
    high_ = 2 * (high_ - less) + 1;
    if (!bits.stream) continue;
    value_ = 2 * (value_ - less) + bits.Code(0);
    EndBehindStream();
  }
}

void Arithmetic::Emit(int bit) {
  if (bits.stream) return;
  bits.Code(bit);
  for (; bitsToFollow > 0; --bitsToFollow) bits.Code(1 - bit);
}

void Arithmetic::Learn(Context& context, std::size_t symbol) const {
  if (SumFrom(context, 0) == quarter_ - 1) {
    for (Symbol& each : context) each.frequency = (each.frequency + 1) / 2;
  }
  std::size_t first = symbol;
  while (first > 0 && context[first - 1].frequency == context[symbol].frequency) --first;
  std::swap(context[first], context[symbol]);
  ++context[first].frequency;
}

std::int32_t Symbols::Number(std::int32_t number) {
  std::int32_t weight = 1;
  std::int32_t value = 0;
  for (;; number /= 2, weight = CheckedMul32(weight, 2)) {
    const int digit = Digit(number >= 2 ? number % 2 : kMark);
    if (digit == kMark) return Sum(weight, value);
    if (digit == 1) value = Sum(value, weight);
  }
}

bool Symbols::Sign(bool negative) {
  return (coding_ == Coding::kRaw ? Bit(negative) : Decide(kSign, negative ? 1 : 0)) == 1;
}

bool Symbols::Refinement(bool moved) {
  return coding_ == Coding::kRaw ? Bit(moved) == 1 : Decide(kRefinement, moved ? 0 : 1) == 0;
}

Bytes Symbols::Finish() {
  if (coding_ != Coding::kRaw) coder_.Done();
  Bytes written = coder_.bits.written;
  if (coding_ == Coding::kRaw) written.push_back(128);
  return written;
}

int Symbols::Bit(bool bit) {
  const int coded = coder_.bits.Code(bit ? 1 : 0);
  coder_.EndBehindStream();
  return coded;
}

int Symbols::Digit(int digit) {
  if (coding_ != Coding::kRaw) return Decide(kDigit, digit);
  return Bit(digit == kMark) == 1 ? kMark : Bit(digit == 1);
}

// A context for each decision; in ASWDR one for each decision and the last character of its kind.
int Symbols::Decide(Decision decision, int character) {
  constexpr std::array kFirstOfAswdr = {1, 4, 6};
  int& last = last_[decision];
  const int context = coding_ == Coding::kAswdr ? kFirstOfAswdr[decision] + last : 1 + decision;
  last = coder_.Code(context, character);
  if (last == Arithmetic::kEnd) throw CodingEnds{};
  return last;
}

}  // namespace marovia::plain
