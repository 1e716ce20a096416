#include "app/file_dialog.h"

#include <algorithm>
#include <cctype>
#include <exception>
#include <new>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "app/desktop.h"
#include "files/input_file.h"
#include "files/output_file.h"

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

std::string LowerCase(std::string text) {
  std::ranges::transform(text, text.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// A whole path is never "-", which would be a standard stream.
std::string WholePath(const std::string& fileName) {
  return std::filesystem::absolute(fileName).string();
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

std::string NameAfter(const std::filesystem::path& file, std::string_view end) {
  return file.empty() ? "" : file.stem().string().append(end);
}

std::filesystem::path WithSuffix(std::filesystem::path file, std::string_view suffix) {
  // A point at the end begins no suffix.
  if (file.extension().string().size() < 2) file.replace_extension(suffix);
  return file;
}

std::string NameRefusal(const FileDialog& question, const std::filesystem::path& file) {
  if (!question.writesFile) return {};
  const std::string pattern = "*" + LowerCase(file.extension().string());
  std::string right;
  for (const FileFilter& part : SplitFilter(question.filter)) {
    if (part.pattern == pattern) return {};
    right += (right.empty() ? "" : " or ") + part.pattern.substr(1);
  }
  return file.filename().string() + ": the name of this file must end in " + right + ".";
}

std::string ReplaceQuestion(const std::filesystem::path& file) {
  return file.filename().string() + " already exists. Do you want to replace it?";
}

bool FileQuestion::Ask(DialogForm form, std::string_view title, int flags) {
  dialog_.form = form;
  dialog_.title = title;
  dialog_.flags = flags;
  dialog_.fileName.clear();
  dialog_.initialFolder = folder_.empty() ? desktop_.PicturesFolder() : folder_;
  const auto chosen = desktop_.ChooseFile(dialog_);
  if (!chosen) return false;
  folder_ = chosen->parent_path();
  dialog_.fileName = chosen->string();
  return true;
}

Bytes ReadChosenFile(const std::string& fileName) {
  return ReadInput(WholePath(fileName), kDefaultMaxPixels);
}

void WriteChosenFile(const std::string& fileName, ByteView bytes) {
  OutputFile(WholePath(fileName), true).Put(bytes);
}

std::string FailureOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const std::bad_alloc&) {
    return "There is not enough memory.";
  } catch (const std::exception& error) {
    const std::string_view what = error.what();
    return std::string(what) + (what.ends_with('.') ? "" : ".");
  }
  return {};
}

void OfFile(const std::string& fileName, const std::function<void()>& action,
            std::string_view lead) {
  const std::string failure = FailureOf(action);
  if (failure.empty()) return;
  const std::string firstLine = lead.empty() ? "" : std::string(lead) + "\r\n";
  const std::string name = std::filesystem::path(fileName).filename().string();
  throw std::runtime_error(firstLine + name + ": " + failure);
}

std::filesystem::path FolderOfProgramFiles(const std::filesystem::path& program) {
  if (exists(program / "Marovia.HLP")) return program;
  return (program / ".." / "share" / "marovia").lexically_normal();
}

}  // namespace marovia
