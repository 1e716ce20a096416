#include "app/file_dialog.h"

#include <algorithm>
#include <system_error>

namespace marovia {
namespace {

std::string TakePart(std::string_view& text) {
  const auto end = text.find('|');
  std::string part(text.substr(0, end));
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return part;
}

}  // namespace

std::vector<FileFilter> SplitFilter(std::string_view filter) {
  std::vector<FileFilter> filters;
  while (!filter.empty()) {
    FileFilter part{.description = TakePart(filter), .pattern = TakePart(filter)};
    if (part.description.find('(') == std::string::npos)
      part.description += " (" + part.pattern + ")";
    filters.push_back(part);
  }
  return filters;
}

std::size_t UsefulFilter(const std::vector<FileFilter>& filters,
                         const std::filesystem::path& folder) {
  const auto finds = [&folder](const FileFilter& filter) {
    std::error_code unreadable;
    const std::filesystem::directory_iterator files(folder, unreadable);
    return std::any_of(begin(files), end(files), [&filter](const auto& file) {
      return "*" + file.path().extension().string() == filter.pattern;
    });
  };
  const auto found = std::ranges::find_if(filters, finds);
  return found == filters.end() ? 0 : static_cast<std::size_t>(found - filters.begin());
}

}  // namespace marovia
