#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>
#include <unordered_map>
#include <utility>
#include <vector>

#include "marovia/error.h"

#include "cli/file_kinds.h"
#include "cli/many_files.h"
#include "files/input_file.h"

namespace marovia::cli {
namespace {

namespace fs = std::filesystem;

// FNV-1a, its halves folded. Part of what users rely on: shares stay the same between versions.
std::uint64_t HashOf(std::string_view name) {
  std::uint64_t hash = 0xcbf29ce484222325U;
  for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
  return hash ^ (hash >> 32U);
}

std::vector<std::string> NamesFrom(const std::string& listFile, Console& console) {
  console.SetInput(listFile);
  const Bytes list = ReadInput(listFile, kDefaultMaxPixels);
  std::string_view rest(reinterpret_cast<const char*>(list.data()), list.size());
  constexpr auto kNone = std::string_view::npos;
  if (rest.find('\0') == kNone && rest.find('\n') != kNone)
    Fail(Errc::kInvalidArgument,
         "holds lines, but each name must end with a NUL (find -print0 writes such lists)");
  std::vector<std::string> names;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\0'), rest.size());
    names.emplace_back(rest.substr(0, end));
    if (names.back().empty())
      Fail(Errc::kInvalidArgument, "name " + std::to_string(names.size()) + " is empty");
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return names;
}

std::vector<std::string> NamesOf(const FileArguments& arguments, Console& console) {
  std::vector<std::string> names = arguments.names;
  if (!arguments.listFile) return names;
  std::vector<std::string> listed = NamesFrom(*arguments.listFile, console);
  names.insert(names.end(), std::make_move_iterator(listed.begin()),
               std::make_move_iterator(listed.end()));
  return names;
}

// Walks folders for the files that a command takes. What it leaves alone is counted.
class FolderWalk {
 public:
  FolderWalk(const FileArguments& arguments, const ManyFiles& many)
      : arguments_(arguments), many_(many) {}

  // Those in the folder and in the folders of it, by their names. Links to folders are not
  // followed, and what was written by an earlier run is no input.
  std::vector<std::string> FilesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code failure;
    for (fs::recursive_directory_iterator entry(folder, failure), end; entry != end && !failure;
         entry.increment(failure)) {
      if (IsFolderOfOutputs(entry->path())) {
        entry.disable_recursion_pending();
      } else if (IsFile(*entry)) {
        Take(entry->path().string(), names);
      }
    }
    if (failure) Fail(Errc::kIo, "cannot be read: " + failure.message() + "; nothing was done");
    std::ranges::sort(names);
    return names;
  }

  [[nodiscard]] int LeftAlone() const { return leftAlone_; }

 private:
  [[nodiscard]] bool IsFolderOfOutputs(const fs::path& path) const {
    std::error_code none;
    return many_.Writes() && fs::is_directory(path, none) &&
           fs::equivalent(path, *arguments_.folder, none);
  }

  static bool IsFile(const fs::directory_entry& entry) {
    std::error_code none;
    return entry.is_regular_file(none);
  }

  void Take(const std::string& name, std::vector<std::string>& names) {
    if (many_.takes(name)) {
      names.push_back(name);
    } else {
      ++leftAlone_;
    }
  }

  const FileArguments& arguments_;
  const ManyFiles& many_;
  int leftAlone_ = 0;
};

bool IsFolder(const std::string& name) {
  std::error_code none;
  return fs::is_directory(name, none);
}

std::vector<std::string> InputsOf(const FileArguments& arguments, const ManyFiles& many,
                                  Console& console) {
  std::vector<std::string> inputs;
  FolderWalk walk(arguments, many);
  for (const std::string& name : NamesOf(arguments, console)) {
    console.SetInput(name);
    if (arguments.recursive && IsFolder(name)) {
      std::ranges::move(walk.FilesIn(name), std::back_inserter(inputs));
    } else {
      inputs.push_back(name);
    }
  }
  console.SetInput("");
  if (inputs.empty()) Fail(Errc::kInvalidArgument, "no file that is read here is in the folders");
  if (walk.LeftAlone() > 0)
    console.Tell(std::to_string(walk.LeftAlone()) + " other files in the folders are left alone\n");
  return inputs;
}

// The folders of the input below the root, by the names alone. Error kInvalidArgument where it lies
// elsewhere.
fs::path FoldersBelow(const std::string& root, const std::string& input) {
  const fs::path folder = fs::absolute(input).lexically_normal().parent_path();
  const fs::path below = folder.lexically_relative(fs::absolute(root).lexically_normal());
  if (below.empty() || *below.begin() == "..")
    Fail(Errc::kInvalidArgument, "does not lie below " + root + ", the root of --mirror");
  return below == "." ? fs::path() : below;
}

FileTask TaskFor(std::string input, const FileArguments& arguments, const ManyFiles& many) {
  if (!arguments.folder) return {std::move(input), ""};
  fs::path folder = *arguments.folder;
  if (arguments.mirror) folder /= FoldersBelow(*arguments.mirror, input);
  std::string output = NameIn(folder, input, many.Writes() ? many.extension(input) : "");
  return {std::move(input), std::move(output)};
}

// Names the first clash, and counts the others.
void CheckNoneClash(const std::vector<FileTask>& tasks, bool mirrored) {
  std::unordered_map<std::string_view, std::string_view> inputOf;
  std::string clash;
  int others = -1;
  for (const FileTask& task : tasks) {
    const auto [first, isNew] = inputOf.emplace(task.output, task.input);
    if (isNew || ++others > 0) continue;
    clash = "both " + std::string(first->second) + " and " + task.input + " would be written to " +
            task.output;
  }
  if (clash.empty()) return;
  if (others > 0) clash += ", and " + std::to_string(others) + " more likewise";
  Fail(Errc::kInvalidArgument,
       clash + "; nothing was done" + (mirrored ? "" : " (--mirror ROOT keeps folders apart)"));
}

}  // namespace

bool IsInShard(std::string_view input, const Shard& shard) {
  const auto count = static_cast<std::uint64_t>(shard.count);
  return HashOf(input) % count + 1 == static_cast<std::uint64_t>(shard.index);
}

std::vector<FileTask> TasksOf(const FileArguments& arguments, const ManyFiles& many,
                              Console& console) {
  std::vector<FileTask> tasks;
  for (std::string& input : InputsOf(arguments, many, console)) {
    console.SetInput(input);
    tasks.push_back(TaskFor(std::move(input), arguments, many));
  }
  console.SetInput("");
  if (many.Writes()) CheckNoneClash(tasks, arguments.mirror.has_value());
  if (arguments.shard)
    std::erase_if(tasks,
                  [&](const FileTask& task) { return !IsInShard(task.input, *arguments.shard); });
  return tasks;
}

}  // namespace marovia::cli
