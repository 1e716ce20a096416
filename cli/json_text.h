// Results as JSON, its keys in the order in which a reader looks for them.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "marovia/codec.h"

namespace marovia::cli {

using Json = nlohmann::ordered_json;

// With the digits of a float, not those of the double that it becomes.
double JsonNumber(float value);

// What reading changed of an image, or null.
Json JsonOfAlteration(const LoadedImage& image);

Json JsonOf(const std::vector<PassReport>& passes);
Json JsonOf(const FileInfo& info);

// Indented, or all in one line, and ended by a line feed; what is not UTF-8 in a file name is
// replaced.
std::string JsonText(const Json& json);
std::string JsonLine(const Json& json);

}  // namespace marovia::cli
