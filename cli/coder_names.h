// The kinds of compressed files, by the names that --method, --coding and --format give them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "marovia/codec.h"

namespace marovia::cli {

// All that there are, or just those with a budget.
std::vector<FileKind> AllKinds();
std::vector<FileKind> LossyKinds();
bool IsLossless(FileKind kind);

// How a kind codes positions, and how it writes symbols.
std::string_view MethodOf(FileKind kind);
std::string_view CodingOf(FileKind kind);
std::vector<std::string> MethodNames();
std::vector<std::string> CodingNames();
// "--method wdr --coding binary".
std::string OptionsFor(FileKind kind);

std::optional<FileKind> KindWith(std::string_view method, std::string_view coding, bool lossless);
// The same with the best choice where there is none: ASWDR, arithmetic coding. Error
// kInvalidArgument where no kind is so.
FileKind ChosenKind(const std::optional<std::string>& method,
                    const std::optional<std::string>& coding, bool lossless);

std::vector<std::string> ExtensionsOf(const std::vector<FileKind>& kinds);
// "a, b or c"; "a|b|c".
std::string Listed(const std::vector<std::string>& words, const std::string& beforeLast);
std::string Joined(const std::vector<std::string>& words, const std::string& between);

}  // namespace marovia::cli
