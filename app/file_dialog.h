// The question for a file, and the kinds of files that it offers.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace marovia {

enum class DialogForm { kOpen, kSave };

// Flags of the dialog: ask before an existing file is replaced; accept only a file that is there.
inline constexpr int kAskBeforeReplacing = 2;
inline constexpr int kFileMustExist = 4096;

struct FileDialog {
  DialogForm form = DialogForm::kOpen;
  std::string title;
  std::string filter;  // "Windows bitmap|*.bmp|PGM file|*.pgm": description and pattern in turn
  std::filesystem::path initialFolder;  // need not be there
  int flags = 0;
  // Whether the chosen file is about to be written; one that is read is never replaced, whatever
  // the flags.
  bool writesFile = false;
  std::string fileName;       // the last one chosen
  std::string defaultSuffix;  // for a name typed without one, under the first pattern
};

struct FileFilter {
  std::string description;  // with the pattern behind it: "PGM file (*.pgm)"
  std::string pattern;      // "*.pgm"
};

std::vector<FileFilter> SplitFilter(std::string_view filter);
// A list that shows a file says more than an empty one: the first filter that finds one in the
// folder, else the first.
std::size_t UsefulFilter(const std::vector<FileFilter>& filters,
                         const std::filesystem::path& folder);

}  // namespace marovia
