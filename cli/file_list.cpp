#include "cli/file_list.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <unordered_map>
#include <utility>

#include "marovia/error.h"

#include "cli/file_names.h"
#include "files/input_file.h"

namespace marovia::cli {
namespace {

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

std::vector<std::string> InputsOf(const FileArguments& arguments, Console& console) {
  std::vector<std::string> inputs = arguments.names;
  if (!arguments.listFile) return inputs;
  std::vector<std::string> listed = NamesFrom(*arguments.listFile, console);
  inputs.insert(inputs.end(), std::make_move_iterator(listed.begin()),
                std::make_move_iterator(listed.end()));
  return inputs;
}

void CheckNoneClash(const std::vector<FileTask>& tasks) {
  std::unordered_map<std::string_view, std::string_view> inputOf;
  for (const FileTask& task : tasks) {
    const auto [first, isNew] = inputOf.emplace(task.output, task.input);
    if (isNew) continue;
    Fail(Errc::kInvalidArgument, "both " + std::string(first->second) + " and " + task.input +
                                     " would be written to " + task.output + "; nothing was done");
  }
}

}  // namespace

bool IsInShard(std::string_view input, const Shard& shard) {
  const auto count = static_cast<std::uint64_t>(shard.count);
  return HashOf(input) % count + 1 == static_cast<std::uint64_t>(shard.index);
}

std::vector<FileTask> TasksOf(const FileArguments& arguments, std::string_view extension,
                              Console& console) {
  std::vector<FileTask> tasks;
  for (std::string& input : InputsOf(arguments, console)) {
    console.SetInput(input);
    std::string output = NameIn(*arguments.outputDir, input, extension);
    tasks.push_back({std::move(input), std::move(output)});
  }
  console.SetInput("");
  CheckNoneClash(tasks);
  if (arguments.shard)
    std::erase_if(tasks,
                  [&](const FileTask& task) { return !IsInShard(task.input, *arguments.shard); });
  return tasks;
}

}  // namespace marovia::cli
