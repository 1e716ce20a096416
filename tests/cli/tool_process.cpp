#include "tests/cli/tool_process.h"

#include <algorithm>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace marovia::test {
namespace {

namespace fs = std::filesystem;

std::string ReadAll(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void WriteAll(const fs::path& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

int WaitFor(pid_t process) {
  int status = 0;
  ::waitpid(process, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

}  // namespace

ScratchFolder::ScratchFolder() {
  std::string pattern = ::testing::TempDir() + "marovia-cli-XXXXXX";
  const fs::path base = ::mkdtemp(pattern.data());
  folder_ = base / "work";
  streams_ = base / "streams";
  fs::create_directory(folder_);
  fs::create_directory(streams_);
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  fs::remove_all(folder_.parent_path(), ignored);
}

std::string ScratchFolder::Path(const std::string& name) const {
  return (folder_ / name).string();
}

void ScratchFolder::Write(const std::string& name, const std::string& content) const {
  WriteAll(folder_ / name, content);
}

std::string ScratchFolder::Read(const std::string& name) const {
  return ReadAll(folder_ / name);
}

std::vector<std::string> ScratchFolder::Names() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder_))
    names.push_back(entry.path().filename());
  std::ranges::sort(names);
  return names;
}

ToolResult ScratchFolder::Run(const std::vector<std::string>& words,
                              const std::string& input) const {
  return Spawn(words, input, streams_ / "out");
}

ToolResult ScratchFolder::RunInto(const std::string& outFile,
                                  const std::vector<std::string>& words) const {
  return Spawn(words, "", outFile);
}

ToolResult ScratchFolder::Spawn(const std::vector<std::string>& words, const std::string& input,
                                const std::string& outFile) const {
  const std::string in = streams_ / "in";
  const std::string err = streams_ / "err";
  WriteAll(in, input);

  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  const int written = O_WRONLY | O_CREAT | O_TRUNC;
  ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, in.c_str(), O_RDONLY, 0);
  ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outFile.c_str(), written, 0600);
  ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, err.c_str(), written, 0600);
  ::posix_spawn_file_actions_addchdir_np(&actions, folder_.c_str());

  std::vector<std::string> all = {MAROVIA_TOOL};
  all.insert(all.end(), words.begin(), words.end());
  std::vector<char*> arguments;
  for (std::string& word : all) arguments.push_back(word.data());
  arguments.push_back(nullptr);

  pid_t process = 0;
  const int failure =
      ::posix_spawn(&process, MAROVIA_TOOL, &actions, nullptr, arguments.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) return {};
  const int status = WaitFor(process);
  return {status, fs::is_regular_file(outFile) ? ReadAll(outFile) : "", ReadAll(err)};
}

std::string PgmText(const Image& image) {
  const Bytes bytes = WritePgm(image);
  return {bytes.begin(), bytes.end()};
}

}  // namespace marovia::test
