#include "cli/coder_names.h"

#include <algorithm>

#include "marovia/error.h"

#include "codec/coders.h"

namespace marovia::cli {
namespace {

constexpr const char* kBestMethod = "context";
constexpr const char* kBestOfRawBits = "aswdr";
constexpr const char* kBestCoding = "arithmetic";

// Each once, in the order of the table.
std::vector<std::string> Distinct(std::string (*name)(FileKind), std::span<const FileKind> kinds) {
  std::vector<std::string> names;
  for (const FileKind kind : kinds)
    if (std::ranges::find(names, name(kind)) == names.end()) names.push_back(name(kind));
  return names;
}

std::vector<std::string> CodingsOf(const std::string& method) {
  std::vector<FileKind> kinds = LossyKinds();
  std::erase_if(kinds, [&](FileKind kind) { return MethodOf(kind) != method; });
  return Distinct(CodingOf, kinds);
}

std::string DefaultMethod(const std::optional<std::string>& coding) {
  return coding.value_or(kBestCoding) == kBestCoding ? kBestMethod : kBestOfRawBits;
}

std::string DefaultCoding(const std::string& method) {
  return KindWith(method, kBestCoding, false) ? kBestCoding : CodingsOf(method).front();
}

[[noreturn]] void RefuseLossless() {
  std::vector<std::string> choices;
  for (const FileKind kind : AllKinds())
    if (CanBeLossless(kind))
      choices.push_back("--method " + MethodOf(kind) + " --coding " + CodingOf(kind));
  Fail(Errc::kInvalidArgument, "--lossless works with " + Joined(choices, " or ") + " only");
}

[[noreturn]] void RefuseCoding(const std::string& method) {
  Fail(Errc::kInvalidArgument, "--method " + method + " works with --coding " +
                                   Joined(CodingsOf(method), " or ") + " only");
}

}  // namespace

bool IsLossless(FileKind kind) {
  return CoderOf(kind).lossless;
}

bool CanBeLossless(FileKind kind) {
  return IsLossless(kind) || kind == FileKind::kAwh;
}

std::vector<FileKind> LossyKinds() {
  const auto all = AllKinds();
  std::vector<FileKind> kinds(all.begin(), all.end());
  std::erase_if(kinds, IsLossless);
  return kinds;
}

// The first version of a method goes without its number.
std::string MethodOf(FileKind kind) {
  const Coder& coder = CoderOf(kind);
  if (coder.method == ScanMethod::kContext) return "context";
  const std::string method = coder.method == ScanMethod::kWdr ? "wdr" : "aswdr";
  return coder.version == 1 ? method : method + std::to_string(coder.version);
}

std::string CodingOf(FileKind kind) {
  return CoderOf(kind).IsArithmetic() ? "arithmetic" : "binary";
}

std::vector<std::string> MethodNames() {
  return Distinct(MethodOf, AllKinds());
}
std::vector<std::string> CodingNames() {
  return Distinct(CodingOf, AllKinds());
}

std::optional<FileKind> KindWith(const std::string& method, const std::string& coding,
                                 bool lossless) {
  for (const FileKind kind : AllKinds())
    if (MethodOf(kind) == method && CodingOf(kind) == coding &&
        (lossless ? CanBeLossless(kind) : !IsLossless(kind)))
      return kind;
  return std::nullopt;
}

FileKind ChosenKind(const std::optional<std::string>& method,
                    const std::optional<std::string>& coding, bool lossless) {
  const std::string one = method.value_or(DefaultMethod(coding));
  if (const auto kind = KindWith(one, coding.value_or(DefaultCoding(one)), lossless)) return *kind;
  if (lossless) RefuseLossless();
  RefuseCoding(one);
}

std::vector<std::string> ExtensionsOf(std::span<const FileKind> kinds) {
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
