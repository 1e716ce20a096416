#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <system_error>

#include "marovia/error.h"

#include "image/netpbm.h"

namespace marovia {
namespace {

constexpr std::string_view kBlanks = " \t\r\v\f";
constexpr std::size_t kMostLines = 1000;

std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
  const std::size_t end = text.find_last_not_of(kBlanks) + 1;
  return text.substr(begin, end - std::min(begin, end));
}

// The words of the lines, each with what stands behind it, and what follows the last line.
struct Lines {
  std::map<std::string_view, std::string> values;
  std::size_t length = 0;
};

Lines TakeLines(std::string_view text) {
  Lines lines;
  for (std::size_t count = 0; count < kMostLines; ++count) {
    const std::size_t end = text.find('\n', lines.length);
    if (end == std::string_view::npos) break;
    const std::string_view line = Trimmed(text.substr(lines.length, end - lines.length));
    lines.length = end + 1;
    if (line == "ENDHDR") return lines;
    if (line.empty() || line.front() == '#') continue;
    const std::size_t space = std::min(line.find_first_of(kBlanks), line.size());
    // A tuple type may be told in several lines.
    std::string& value = lines.values[line.substr(0, space)];
    value += (value.empty() ? "" : " ") + std::string(Trimmed(line.substr(space)));
  }
  Fail(Errc::kMalformed, "The PAM has no end of its header (ENDHDR).");
}

const std::string& ValueOf(const Lines& lines, std::string_view word) {
  const auto line = lines.values.find(word);
  if (line != lines.values.end()) return line->second;
  Fail(Errc::kMalformed, "The PAM does not tell its " + std::string(word) + ".");
}

std::int64_t NumberOf(const Lines& lines, std::string_view word) {
  const std::string& text = ValueOf(lines, word);
  std::int64_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size())
    Fail(Errc::kMalformed, "The PAM has no number where its " + std::string(word) + " is.");
  return number;
}

struct TupleType {
  std::string_view name;
  int channels;
  bool colour;
  bool transparency;
};

constexpr std::array kTupleTypes = {
    TupleType{"GRAYSCALE", 1, false, false},
    TupleType{"GRAYSCALE_ALPHA", 2, false, true},
    TupleType{"RGB", 3, true, false},
    TupleType{"RGB_ALPHA", 4, true, true},
    TupleType{"BLACKANDWHITE", 1, false, false},
    TupleType{"BLACKANDWHITE_ALPHA", 2, false, true},
};

std::string Printable(std::string text) {
  std::ranges::replace_if(
      text, [](char c) { return c < ' ' || c > '~'; }, '?');
  return text;
}

TupleType TypeOf(const Lines& lines) {
  const std::int64_t depth = NumberOf(lines, "DEPTH");
  const auto line = lines.values.find("TUPLTYPE");
  const std::string name = line == lines.values.end() ? "" : line->second;
  for (const TupleType& type : kTupleTypes)
    if ((name.empty() || type.name == name) && type.channels == depth) return type;
  Fail(Errc::kUnsupported, "The PAM has " + std::to_string(depth) + " samples a pixel" +
                               (name.empty() ? "" : " of the type " + Printable(name)) +
                               "; grey and colour, with transparency or without, are read.");
}

}  // namespace

PamStart ReadPamStart(ByteView file, std::int64_t maxPixels) {
  constexpr std::size_t kMagicBytes = 3;
  const std::string_view text(reinterpret_cast<const char*>(file.data()), file.size());
  const Lines lines = TakeLines(text.substr(std::min(kMagicBytes, text.size())));
  const Shape shape = CheckedShape(NumberOf(lines, "HEIGHT"), NumberOf(lines, "WIDTH"), maxPixels);
  const TupleType type = TypeOf(lines);
  const NetpbmHeader header{shape,
                            type.channels,
                            type.colour,
                            type.transparency,
                            CheckedNetpbmMaximum(NumberOf(lines, "MAXVAL")),
                            type.name.starts_with("BLACKANDWHITE")};
  return {header, file.subspan(kMagicBytes + lines.length)};
}

}  // namespace marovia
