// The values of options as users write them, and as the tool prints them: as words and as JSON.
#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "marovia/codec.h"

#include "cli/console.h"
#include "pictures/picture.h"

namespace marovia::cli {

// Error kInvalidArgument, as the parsers below throw it where a text is not what the option wants.
[[noreturn]] void RefuseValue(const std::string& option, const std::string& text,
                              const std::string& wanted);

// The whole text as a number, whatever the locale.
template <class T>
std::optional<T> WholeNumber(std::string_view text) {
  T value{};
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
  return value;
}

double ParsePositive(const std::string& option, const std::string& text, const std::string& wanted);
double ParseRate(const std::string& option, const std::string& text);
std::int64_t ParseCount(const std::string& option, const std::string& text);
WaveletKind ParseWavelet(const std::string& text);
std::string_view NameOf(WaveletKind wavelet);

// Two opposite corners in any order.
Region ParseRegion(const std::string& text);
// Error kInvalidArgument where the region reaches outside an image of rows x cols.
void CheckRegion(const std::optional<Region>& region, int rows, int cols);

std::string SizeText(int rows, int cols);

// With the digits of a float, not those of the double that it becomes.
double JsonNumber(float value);
// What reading changed of an image, or null.
Json JsonOfAlteration(const Picture& picture);
// Extension, method, coding, and whether it is lossless.
Json JsonOf(FileKind kind);
Json JsonOf(const std::vector<PassReport>& passes);
Json JsonOf(const FileInfo& info);

}  // namespace marovia::cli
