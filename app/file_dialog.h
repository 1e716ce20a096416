// The question for a file, and the kinds of files that it offers.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "marovia/image.h"

namespace marovia {

class Desktop;

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
  [[nodiscard]] bool AsksBeforeReplacing() const {
    return writesFile && (flags & kAskBeforeReplacing) != 0;
  }
  std::string proposedName;   // in the initial folder
  std::string fileName;       // the last one chosen
  std::string defaultSuffix;  // for a name typed without one, under the first pattern
};

// The filter's parts, each with its pattern behind it: "Windows bitmap (*.bmp);;PGM file (*.pgm)".
std::string FilterNames(std::string_view filter);
// A list that shows a file says more than an empty one: the name of the first part that finds one
// in the folder, else of the first.
std::string UsefulFilter(std::string_view filter, const std::filesystem::path& folder);
// What a name typed without a suffix gets under a part of this name.
std::string SuffixOfFilter(std::string_view name);
// The name of another file with something else in place of its extension; none after none.
std::string NameAfter(const std::filesystem::path& file, std::string_view end);
// A chosen name, with this suffix where it has none.
std::filesystem::path WithSuffix(std::filesystem::path file, std::string_view suffix);
// Why no file of this name may be written: its extension is none of the filter's, and would say
// something else of the file than what is in it. Empty where it may.
std::string NameRefusal(const FileDialog& question, const std::filesystem::path& file);
// Before a file of this name is replaced.
std::string ReplaceQuestion(const std::filesystem::path& file);

// Puts a dialog's question, and remembers where the user keeps files.
class FileQuestion {
 public:
  // Both must outlive it.
  FileQuestion(FileDialog& dialog, Desktop& desktop) : dialog_(dialog), desktop_(desktop) {}

  // Of the dialog as it is set up. Whether a file was chosen; fileName is its path.
  bool Ask(DialogForm form, std::string_view title, int flags);
  // Of the last file that was chosen, or that came without a question.
  [[nodiscard]] const std::filesystem::path& Folder() const { return folder_; }
  void SetFolder(const std::filesystem::path& folder) { folder_ = folder; }

 private:
  FileDialog& dialog_;
  Desktop& desktop_;
  std::filesystem::path folder_;
};

// A chosen name is that of a file, whatever it is ("-", "*.awd").
Bytes ReadChosenFile(const std::string& fileName);
// Either all of it gets there, or an earlier file of that name stays as it was.
void WriteChosenFile(const std::string& fileName, ByteView bytes);

// What goes wrong in an action, as one sentence; empty where nothing does.
std::string FailureOf(const std::function<void()>& action);
// Whatever goes wrong in the action is said of this file, below a line of its own, if any.
void OfFile(const std::string& fileName, const std::function<void()>& action,
            std::string_view lead = {});

// Where the files of a program are: beside it, or where an installation puts them.
std::filesystem::path FolderOfProgramFiles(const std::filesystem::path& program);

}  // namespace marovia
