#include "base/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <system_error>

#include "marovia/error.h"

namespace marovia {
namespace {

#ifdef __cpp_lib_to_chars

template <class T>
std::string General(T value, int digits) {
  std::array<char, 40> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                    std::chars_format::general, digits);
  return {buffer.data(), result.ptr};
}

// All of the text, which is digits with a point or an exponent at most: infinite where it exceeds a
// double, 0 where it is too near 0.
double UnsignedNumber(std::string_view text) {
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc::result_out_of_range) return value;
  // from_chars says the same of a number too near 0 as of one too large.
  const bool tiny = text.find_first_of("eE") == std::string_view::npos
                        ? text.find_first_not_of("0.") > text.find('.')
                        : text[text.find_first_of("eE") + 1] == '-';
  return tiny ? 0 : std::numeric_limits<double>::infinity();
}

#else

// Where the standard library has no from_chars for these, as on WebAssembly: there is one locale,
// that of C, and no tables of to_chars, which are as large as the rest of the codec.
std::string General(double value, int digits) {
  std::array<char, 40> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%.*g", digits, value);
  return buffer.data();
}

double UnsignedNumber(std::string_view text) {
  return std::strtod(std::string(text).c_str(), nullptr);
}

#endif

std::string Shortest(auto value, int digits) {
  std::string text = General(value, digits);
  if (const auto exponent = text.find('e'); exponent != std::string::npos) text[exponent] = 'E';
  return text;
}

std::string WithLeadingBlank(std::string text) {
  if (!text.starts_with('-')) text.insert(text.begin(), ' ');
  return text;
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// The length of the number at the start of `text`, which has no sign and no blanks before it.
std::size_t UnsignedLength(std::string_view text) {
  std::size_t end = 0;
  std::size_t digits = 0;
  const auto skipDigits = [&](std::size_t from) {
    while (from < text.size() && IsDigit(text[from])) ++from;
    return from;
  };
  end = skipDigits(0);
  digits = end;
  if (end < text.size() && text[end] == '.') {
    const std::size_t fractionEnd = skipDigits(end + 1);
    digits += fractionEnd - end - 1;
    end = fractionEnd;
  }
  if (digits == 0) return 0;
  if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
    std::size_t exponent = end + 1;
    if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
    const std::size_t exponentEnd = skipDigits(exponent);
    if (exponentEnd > exponent) end = exponentEnd;
  }
  return end;
}

}  // namespace

std::string TrimmedNumberText(std::int32_t value) {
  return std::to_string(value);
}
std::string TrimmedNumberText(float value) {
  return Shortest(value, 7);
}
std::string TrimmedNumberText(double value) {
  return Shortest(value, 15);
}

std::string NumberText(std::int32_t value) {
  return WithLeadingBlank(TrimmedNumberText(value));
}
std::string NumberText(float value) {
  return WithLeadingBlank(TrimmedNumberText(value));
}
std::string NumberText(double value) {
  return WithLeadingBlank(TrimmedNumberText(value));
}

std::string SizeText(int rows, int cols) {
  return std::to_string(rows) + " x " + std::to_string(cols);
}

double LeadingNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  text = text.substr(0, UnsignedLength(text));
  if (text.empty()) return 0;

  const double value = UnsignedNumber(text);
  if (std::isinf(value))
    Fail(Errc::kOverflow, "Overflow: the number " + std::string(text) + " is too large.");
  return negative ? -value : value;
}

}  // namespace marovia
