#include "tests/cli/tool_process.h"

#include <fcntl.h>
#include <fstream>
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

}  // namespace

ScratchFolder::ScratchFolder() {
  std::string pattern = ::testing::TempDir() + "marovia-cli-XXXXXX";
  folder_ = fs::path(::mkdtemp(pattern.data())) / "work";
  fs::create_directory(folder_);
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  fs::remove_all(folder_.parent_path(), ignored);
}

void ScratchFolder::Write(const std::string& name, const std::string& content) const {
  std::ofstream(folder_ / name, std::ios::binary) << content;
}

std::string ScratchFolder::Read(const std::string& name) const {
  return ReadAll(folder_ / name);
}

Words ScratchFolder::Names(const std::string& folder) const {
  Words names;
  for (const auto& entry : fs::directory_iterator(folder_ / folder))
    names.push_back(entry.path().filename());
  std::ranges::sort(names);
  return names;
}

ToolResult ScratchFolder::Run(const Words& words, const std::string& input,
                              const std::string& outFile) const {
  Write("../in", input);
  const std::string in = Path("../in");
  const std::string out = outFile.empty() ? Path("../out") : outFile;
  const std::string err = Path("../err");

  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  const int written = O_WRONLY | O_CREAT | O_TRUNC;
  ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, in.c_str(), O_RDONLY, 0);
  ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, out.c_str(), written, 0600);
  ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, err.c_str(), written, 0600);
  ::posix_spawn_file_actions_addchdir_np(&actions, folder_.c_str());

  Words all = words;
  all.insert(all.begin(), MAROVIA_TOOL);
  std::vector<char*> arguments;
  for (std::string& word : all) arguments.push_back(word.data());
  arguments.push_back(nullptr);

  pid_t process = 0;
  const int failure =
      ::posix_spawn(&process, MAROVIA_TOOL, &actions, nullptr, arguments.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) return {};
  int status = 0;
  ::waitpid(process, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status),
          outFile.empty() ? ReadAll(out) : "", ReadAll(err)};
}

std::string ToolTest::Done(const Words& words, const std::string& input) const {
  const ToolResult result = folder_.Run(words, input);
  EXPECT_EQ(result.status, 0) << ::testing::PrintToString(words) << result.err;
  return result.out;
}

Json ToolTest::Record(Words words) const {
  words.emplace_back("--json");
  return Json::parse(Done(words));
}

std::string PgmText(const Image& image) {
  const Bytes bytes = WritePgm(image);
  return {bytes.begin(), bytes.end()};
}

Image ImageIn(const std::string& file) {
  return ReadImage(Bytes(file.begin(), file.end())).image;
}

}  // namespace marovia::test
