#include "cli/values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>
#include <system_error>
#include <utility>

#include "marovia/error.h"

namespace marovia::cli {
namespace {

template <class T>
struct Name {
  T value;
  std::string_view text;
};

constexpr std::array kMethods = {
    Name<Method>{Method::kWdr, "wdr"}, Name<Method>{Method::kAswdr, "aswdr"},
    Name<Method>{Method::kAswdr2, "aswdr2"}, Name<Method>{Method::kContext, "context"}};
constexpr std::array kCodings = {Name<Coding>{Coding::kBinary, "binary"},
                                 Name<Coding>{Coding::kArithmetic, "arithmetic"}};
constexpr std::array kWavelets = {Name<WaveletKind>{WaveletKind::kDaub97, "9/7"},
                                  Name<WaveletKind>{WaveletKind::kInteger53, "5/3"},
                                  Name<WaveletKind>{WaveletKind::kInteger22, "2+2,2"}};

constexpr std::array kPaddings = {Name<bool>{true, "auto"}, Name<bool>{false, "never"}};

constexpr float kMostShare = 0.99F;
constexpr int kMostThumbnail = 4096;

[[noreturn]] void Refuse(const std::string& option, const std::string& text,
                         const std::string& wanted) {
  Fail(Errc::kInvalidArgument, option + ": '" + text + "' is not " + wanted);
}

// The whole text as a number, whatever the locale.
template <class T>
std::optional<T> WholeNumber(std::string_view text) {
  T value{};
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
  return value;
}

double PositiveNumber(const std::string& option, const std::string& text,
                      const std::string& wanted) {
  const auto number = WholeNumber<double>(text);
  if (!number || !std::isfinite(*number) || *number <= 0) Refuse(option, text, wanted);
  return *number;
}

template <class T>
T ValueNamed(std::span<const Name<T>> names, const std::string& option, const std::string& text) {
  std::string wanted;
  for (const Name<T>& name : names) {
    if (name.text == text) return name.value;
    wanted += (wanted.empty() ? "" : " or ") + std::string(name.text);
  }
  Refuse(option, text, wanted);
}

template <class T>
std::string_view NameIn(std::span<const Name<T>> names, T value) {
  return std::ranges::find(names, value, &Name<T>::value)->text;
}

std::array<int, 4> FourNumbers(const std::string& text) {
  std::array<int, 4> numbers{};
  std::string_view rest = text;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const bool last = i + 1 == numbers.size();
    const std::size_t end = last ? rest.size() : rest.find(',');
    const auto number = WholeNumber<int>(rest.substr(0, end));
    if (!number || *number < 0 || end == std::string_view::npos)
      Refuse("--region", text, "four numbers R1,C1,R2,C2 (rows and columns from 0)");
    numbers.at(i) = *number;
    rest.remove_prefix(last ? end : end + 1);
  }
  return numbers;
}

}  // namespace

double ParseRate(const std::string& option, const std::string& text) {
  return PositiveNumber(option, text, "a number of bits per pixel above 0, such as 0.5");
}
double ParsePsnr(const std::string& text) {
  return PositiveNumber("--psnr", text, "a number of decibels above 0, such as 40");
}
double ParseGain(const std::string& text) {
  return PositiveNumber("--gain", text, "a number above 0, such as 4");
}
double ParseRatio(const std::string& text) {
  return PositiveNumber("--ratio", text, "a number above 0, such as 20");
}

std::int64_t ParseCount(const std::string& option, const std::string& text) {
  const auto count = WholeNumber<std::int64_t>(text);
  if (!count || *count < 1) Refuse(option, text, "a whole number of 1 or more");
  return *count;
}

int ParseLevels(const std::string& text) {
  const std::int64_t levels = ParseCount("--levels", text);
  return static_cast<int>(std::min<std::int64_t>(levels, std::numeric_limits<int>::max()));
}

int ParseSize(const std::string& text) {
  const auto size = WholeNumber<int>(text);
  if (!size || *size < 1 || *size > kMostThumbnail)
    Refuse("--size", text, "a number from 1 to 4096");
  return *size;
}

float ParseShare(const std::string& text) {
  const auto share = WholeNumber<float>(text);
  if (!share || !(*share >= 0 && *share <= kMostShare))
    Refuse("--share", text, "a number from 0 to 0.99");
  return *share;
}

WaveletKind ParseWavelet(const std::string& text) {
  return ValueNamed<WaveletKind>(kWavelets, "--wavelet", text);
}
Method ParseMethod(const std::string& text) {
  return ValueNamed<Method>(kMethods, "--method", text);
}
Coding ParseCoding(const std::string& text) {
  return ValueNamed<Coding>(kCodings, "--coding", text);
}
bool ParsePad(const std::string& text) {
  return ValueNamed<bool>(kPaddings, "--pad", text);
}

Region ParseRegion(const std::string& text) {
  auto [row1, col1, row2, col2] = FourNumbers(text);
  if (row1 > row2) std::swap(row1, row2);
  if (col1 > col2) std::swap(col1, col2);
  return {.row1 = row1, .col1 = col1, .row2 = row2, .col2 = col2};
}

Method MethodOf(FileKind kind) {
  if (kind == FileKind::kAwc) return Method::kAswdr2;
  if (kind == FileKind::kAwh) return Method::kContext;
  return kind == FileKind::kAwb || kind == FileKind::kAwa ? Method::kWdr : Method::kAswdr;
}

Coding CodingOf(FileKind kind) {
  const bool binary = kind == FileKind::kAwb || kind == FileKind::kAwd || kind == FileKind::kAwc;
  return binary ? Coding::kBinary : Coding::kArithmetic;
}

FileKind KindOf(Method method, Coding coding) {
  if (method == Method::kAswdr2) {
    if (coding == Coding::kBinary) return FileKind::kAwc;
    Fail(Errc::kInvalidArgument, "--method aswdr2 works with --coding binary only");
  }
  if (method == Method::kContext) {
    if (coding == Coding::kArithmetic) return FileKind::kAwh;
    Fail(Errc::kInvalidArgument, "--method context works with --coding arithmetic only");
  }
  if (method == Method::kWdr) return coding == Coding::kBinary ? FileKind::kAwb : FileKind::kAwa;
  return coding == Coding::kBinary ? FileKind::kAwd : FileKind::kAwf;
}

std::string_view NameOf(Method method) {
  return NameIn<Method>(kMethods, method);
}
std::string_view NameOf(Coding coding) {
  return NameIn<Coding>(kCodings, coding);
}
std::string_view NameOf(WaveletKind wavelet) {
  return NameIn<WaveletKind>(kWavelets, wavelet);
}

void CheckRegion(const std::optional<Region>& region, int rows, int cols) {
  if (!region || (region->row2 < rows && region->col2 < cols)) return;
  Fail(Errc::kInvalidArgument, "the region ends at row " + std::to_string(region->row2) +
                                   ", column " + std::to_string(region->col2) +
                                   ", outside the image of " + SizeText(rows, cols) +
                                   " (counted from 0)");
}

std::string SizeText(int rows, int cols) {
  return std::to_string(rows) + " rows and " + std::to_string(cols) + " columns";
}

}  // namespace marovia::cli
