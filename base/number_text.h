// Numbers as the reports write them and as the text boxes are read, whatever the locale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace marovia {

// One leading blank where the number is not negative, then the shortest decimal form of at most 7
// (float) or 15 (double) significant digits, without fixed decimals: " 0.25", "-3", " 1E-07".
std::string NumberText(std::int32_t value);
std::string NumberText(float value);
std::string NumberText(double value);

// The same without the leading blank.
std::string TrimmedNumberText(std::int32_t value);
std::string TrimmedNumberText(float value);
std::string TrimmedNumberText(double value);

// "512 x 768", rows first.
std::string SizeText(int rows, int cols);

// The longest leading part of the text that reads as a decimal number, after leading blanks; 0
// where there is none ("0.25abc" is 0.25, "0,25" is 0, "inf" is 0). Error kOverflow where it
// exceeds a double.
double LeadingNumber(std::string_view text);

}  // namespace marovia
