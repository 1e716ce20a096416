// The arguments of a campaign over seeds: how many, and the first of them.
#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace marovia::test {

struct CountAndFirst {
  std::uint32_t count = 0;
  std::uint32_t first = 0;
};

inline bool ParseNumber(std::string_view text, std::uint32_t& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc{} && end == text.data() + text.size();
}

// What the words after the program's name say, if they are just these two.
inline std::optional<CountAndFirst> ParseCountAndFirst(std::span<char*> arguments) {
  CountAndFirst parsed;
  if (arguments.size() != 3 || !ParseNumber(arguments[1], parsed.count) ||
      !ParseNumber(arguments[2], parsed.first))
    return std::nullopt;
  return parsed;
}

}  // namespace marovia::test
