#include "app/file_dialog.h"

#include <algorithm>
#include <system_error>
#include <vector>

namespace marovia {
namespace {

struct FileFilter {
  std::string name;     // "PGM file (*.pgm)"
  std::string pattern;  // "*.pgm"
};

std::string TakePart(std::string_view& text) {
  const auto end = text.find('|');
  std::string part(text.substr(0, end));
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return part;
}

std::vector<FileFilter> SplitFilter(std::string_view filter) {
  std::vector<FileFilter> filters;
  while (!filter.empty()) {
    FileFilter part{.name = TakePart(filter), .pattern = TakePart(filter)};
    if (part.name.find('(') == std::string::npos) part.name += " (" + part.pattern + ")";
    filters.push_back(part);
  }
  return filters;
}

}  // namespace

std::string FilterNames(std::string_view filter) {
  std::string names;
  for (const FileFilter& part : SplitFilter(filter))
    names += (names.empty() ? "" : ";;") + part.name;
  return names;
}

std::string UsefulFilter(std::string_view filter, const std::filesystem::path& folder) {
  const auto finds = [&folder](const FileFilter& part) {
    std::error_code unreadable;
    const std::filesystem::directory_iterator files(folder, unreadable);
    return std::any_of(begin(files), end(files), [&part](const auto& file) {
      return "*" + file.path().extension().string() == part.pattern;
    });
  };
  const std::vector<FileFilter> parts = SplitFilter(filter);
  const auto found = std::ranges::find_if(parts, finds);
  if (found != parts.end()) return found->name;
  return parts.empty() ? "" : parts.front().name;
}

std::string SuffixOfFilter(std::string_view name) {
  const auto suffix = name.substr(name.rfind('.') + 1);
  return std::string(suffix.substr(0, suffix.find(')')));
}

std::string ReplaceQuestion(const std::filesystem::path& file) {
  return file.filename().string() + " already exists. Do you want to replace it?";
}

}  // namespace marovia
