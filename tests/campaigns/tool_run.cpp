#include "tests/campaigns/tool_run.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

// The tool's main.
int ToolMain(int argc, char** argv);

namespace marovia::test {
namespace {

constexpr const char* kOut = "out";
constexpr const char* kErr = "err";

// What the process ends with: the tool's status, and what only the process itself can know.
constexpr int kStatusBits = 7;
constexpr int kStruck = 8;
constexpr int kLosesMemory = 16;

void LeadInto(int stream, const char* path) {
  const int file = ::open(path, O_WRONLY | O_CREAT | O_TRUNC, 0600);
  ::dup2(file, stream);
  ::close(file);
}

// Nothing catches here what a main lets go.
[[noreturn]] void RunAndEnd(std::vector<char*>& arguments, std::int64_t nth,
                            Shortage shortage) noexcept {
  LeadInto(STDOUT_FILENO, kOut);
  LeadInto(STDERR_FILENO, kErr);
  const std::int64_t before = BlocksInUse();
  const MemoryShortage memory(nth, shortage);
  const int status = ToolMain(static_cast<int>(arguments.size()), arguments.data());
  ::_exit(status | (memory.Struck() ? kStruck : 0) | (BlocksInUse() != before ? kLosesMemory : 0));
}

void CheckComplaint(int status) {
  const Bytes bytes = ReadAll(kErr);
  const std::string text(bytes.begin(), bytes.end());
  if (status != 1 || !text.starts_with("marovia: ") || !text.ends_with("out of memory\n") ||
      text.find('\n') != text.size() - 1)
    throw std::runtime_error("status " + std::to_string(status) + ", says '" + text + "'");
}

}  // namespace

Bytes ReadAll(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

ToolRun::ToolRun(std::vector<std::string> words) : words_(std::move(words)) {
  words_.insert(words_.begin(), "marovia");
  (*this)(0, Shortage::kOnce);
  whole_ = ReadAll(kOutput);
}

Outcome ToolRun::operator()(std::int64_t nth, Shortage shortage) {
  std::filesystem::remove(kOutput);
  const int end = Wait(Start(nth, shortage));
  const int status = end & kStatusBits;
  const Bytes written = ReadAll(kOutput);
  if (status == 0) {
    Bytes all = ReadAll(kOut);
    all.insert(all.end(), written.begin(), written.end());
    return {std::move(all), (end & kStruck) != 0};
  }
  CheckComplaint(status);
  // What fails when the file is in its place does not take it away.
  if (!written.empty() && written != whole_) throw std::runtime_error("leaves half a file");
  return {std::nullopt, true};
}

pid_t ToolRun::Start(std::int64_t nth, Shortage shortage) {
  std::vector<char*> arguments;
  for (std::string& word : words_) arguments.push_back(word.data());
  const pid_t process = ::fork();
  if (process == 0) RunAndEnd(arguments, nth, shortage);
  return process;
}

int ToolRun::Wait(pid_t process) const {
  int end = 0;
  ::waitpid(process, &end, 0);
  if (!WIFEXITED(end)) throw std::runtime_error("ended by signal " + std::to_string(WTERMSIG(end)));
  const int code = WEXITSTATUS(end);
  // The JSON library loses what it built if memory runs out meanwhile.
  if ((code & kLosesMemory) != 0 && std::ranges::count(words_, "--json") == 0)
    throw std::runtime_error("loses memory");
  return code;
}

}  // namespace marovia::test
