#include "cli/coder_names.h"

#include <algorithm>
#include <array>

#include "marovia/error.h"

namespace marovia::cli {
namespace {

constexpr const char* kBestMethod = "aswdr";
constexpr const char* kBestCoding = "arithmetic";

struct CoderNames {
  FileKind kind;
  std::string_view method;
  std::string_view coding;
  bool lossless;
};

constexpr std::array kCoders = {
    CoderNames{FileKind::kAwb, "wdr", "binary", false},
    CoderNames{FileKind::kAwa, "wdr", "arithmetic", false},
    CoderNames{FileKind::kAwd, "aswdr", "binary", false},
    CoderNames{FileKind::kAwf, "aswdr", "arithmetic", false},
    CoderNames{FileKind::kAwg, "aswdr", "arithmetic", true},
    CoderNames{FileKind::kAwc, "aswdr2", "binary", false},
};

const CoderNames& NamesOf(FileKind kind) {
  return *std::ranges::find(kCoders, kind, &CoderNames::kind);
}

// Each once, in the order of the table.
std::vector<std::string> Distinct(std::string_view CoderNames::*name) {
  std::vector<std::string> names;
  for (const CoderNames& coder : kCoders)
    if (std::ranges::find(names, coder.*name) == names.end()) names.emplace_back(coder.*name);
  return names;
}

// The kinds of a method, either lossy or lossless.
std::vector<FileKind> KindsOf(const std::string& method, bool lossless) {
  std::vector<FileKind> kinds = AllKinds();
  std::erase_if(kinds, [&](FileKind kind) {
    return MethodOf(kind) != method || IsLossless(kind) != lossless;
  });
  return kinds;
}

std::string DefaultCoding(const std::string& method) {
  if (KindWith(method, kBestCoding, false)) return kBestCoding;
  return std::string(CodingOf(KindsOf(method, false).front()));
}

[[noreturn]] void RefuseLossless() {
  std::vector<std::string> choices;
  for (const FileKind kind : AllKinds())
    if (IsLossless(kind)) choices.push_back(OptionsFor(kind));
  Fail(Errc::kInvalidArgument, "--lossless works with " + Joined(choices, " or ") + " only");
}

[[noreturn]] void RefuseCoding(const std::string& method) {
  std::vector<std::string> codings;
  for (const FileKind kind : KindsOf(method, false)) codings.emplace_back(CodingOf(kind));
  Fail(Errc::kInvalidArgument,
       "--method " + method + " works with --coding " + Joined(codings, " or ") + " only");
}

}  // namespace

std::vector<FileKind> AllKinds() {
  std::vector<FileKind> kinds;
  for (const CoderNames& coder : kCoders) kinds.push_back(coder.kind);
  return kinds;
}

std::vector<FileKind> LossyKinds() {
  std::vector<FileKind> kinds = AllKinds();
  std::erase_if(kinds, IsLossless);
  return kinds;
}

bool IsLossless(FileKind kind) {
  return NamesOf(kind).lossless;
}

std::string_view MethodOf(FileKind kind) {
  return NamesOf(kind).method;
}
std::string_view CodingOf(FileKind kind) {
  return NamesOf(kind).coding;
}
std::vector<std::string> MethodNames() {
  return Distinct(&CoderNames::method);
}
std::vector<std::string> CodingNames() {
  return Distinct(&CoderNames::coding);
}

std::string OptionsFor(FileKind kind) {
  return "--method " + std::string(MethodOf(kind)) + " --coding " + std::string(CodingOf(kind));
}

std::optional<FileKind> KindWith(std::string_view method, std::string_view coding, bool lossless) {
  for (const CoderNames& coder : kCoders)
    if (coder.method == method && coder.coding == coding && coder.lossless == lossless)
      return coder.kind;
  return std::nullopt;
}

FileKind ChosenKind(const std::optional<std::string>& method,
                    const std::optional<std::string>& coding, bool lossless) {
  const std::string one = method.value_or(kBestMethod);
  if (const auto kind = KindWith(one, coding.value_or(DefaultCoding(one)), lossless)) return *kind;
  lossless ? RefuseLossless() : RefuseCoding(one);
}

std::vector<std::string> ExtensionsOf(const std::vector<FileKind>& kinds) {
  std::vector<std::string> extensions;
  for (const FileKind kind : kinds) extensions.emplace_back(Extension(kind));
  return extensions;
}

std::string Listed(const std::vector<std::string>& words, const std::string& beforeLast) {
  if (words.size() < 2) return Joined(words, "");
  return Joined({words.begin(), words.end() - 1}, ", ") + " " + beforeLast + " " + words.back();
}

std::string Joined(const std::vector<std::string>& words, const std::string& between) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : between) + word;
  return text;
}

}  // namespace marovia::cli
