// The values of options as users write them, and their names as the tool prints them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "marovia/codec.h"

namespace marovia::cli {

enum class Method { kWdr, kAswdr, kAswdr2, kContext };
enum class Coding { kBinary, kArithmetic };

// The parsers throw Error kInvalidArgument, which names the option.
double ParseRate(const std::string& option, const std::string& text);
double ParsePsnr(const std::string& text);
double ParseRatio(const std::string& text);
double ParseGain(const std::string& text);
std::int64_t ParseCount(const std::string& option, const std::string& text);
int ParseLevels(const std::string& text);
// Of a thumbnail: 1 to 4096.
int ParseSize(const std::string& text);
float ParseShare(const std::string& text);
WaveletKind ParseWavelet(const std::string& text);
Method ParseMethod(const std::string& text);
Coding ParseCoding(const std::string& text);
bool ParsePad(const std::string& text);

// Two opposite corners in any order.
Region ParseRegion(const std::string& text);

Method MethodOf(FileKind kind);
Coding CodingOf(FileKind kind);
// Error kInvalidArgument where a method has no such coding.
FileKind KindOf(Method method, Coding coding);

std::string_view NameOf(Method method);
std::string_view NameOf(Coding coding);
std::string_view NameOf(WaveletKind wavelet);

// Error kInvalidArgument where the region reaches outside an image of rows x cols.
void CheckRegion(const std::optional<Region>& region, int rows, int cols);

std::string SizeText(int rows, int cols);

}  // namespace marovia::cli
