#include "app/file_dialog.h"

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

}  // namespace marovia
