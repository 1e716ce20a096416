// The kinds of compressed files, by the names that --method, --coding and --format give them.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "marovia/codec.h"

namespace marovia::cli {

bool IsLossless(FileKind kind);
bool CanBeLossless(FileKind kind);
std::vector<FileKind> LossyKinds();

// How a kind codes positions, and how it writes symbols.
std::string MethodOf(FileKind kind);
std::string CodingOf(FileKind kind);
std::vector<std::string> MethodNames();
std::vector<std::string> CodingNames();

std::optional<FileKind> KindWith(const std::string& method, const std::string& coding,
                                 bool lossless);
// The same with the best choice where there is none: ASWDR, arithmetic coding. Error
// kInvalidArgument where no kind is so.
FileKind ChosenKind(const std::optional<std::string>& method,
                    const std::optional<std::string>& coding, bool lossless);

std::vector<std::string> ExtensionsOf(std::span<const FileKind> kinds);
// "a, b or c"; "a|b|c".
std::string Listed(const std::vector<std::string>& words, const std::string& beforeLast);
std::string Joined(const std::vector<std::string>& words, const std::string& between);

}  // namespace marovia::cli
