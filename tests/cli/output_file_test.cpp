#include "files/output_file.h"

#include <csignal>
#include <ctime>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>

#include "marovia/error.h"

#include "tests/cli/tool_process.h"

namespace marovia::cli {
namespace {

namespace fs = std::filesystem;
using test::ScratchFolder;

const Bytes kContent = {'n', 'e', 'w'};

mode_t ModeOf(const std::string& path) {
  struct stat status {};
  ::stat(path.c_str(), &status);
  return status.st_mode & 07777;
}

TEST(OutputFile, GetsThePermissionsOfAnyNewFileOrOfTheOneThatItReplaces) {
  const ScratchFolder folder;
  const mode_t before = ::umask(027);
  OutputFile(folder.Path("new"), false).Put(kContent);
  ::umask(before);
  EXPECT_EQ(ModeOf(folder.Path("new")), 0640U);

  folder.Write("old", "old");
  ::chmod(folder.Path("old").c_str(), 0604);
  OutputFile(folder.Path("old"), true).Put(kContent);
  EXPECT_EQ(ModeOf(folder.Path("old")), 0604U);
  EXPECT_EQ(folder.Read("old"), "new");
}

TEST(OutputFile, FollowsSymbolicLinksAlsoToAFileYetToBe) {
  const ScratchFolder folder;
  fs::create_directory(folder.Path("deep"));
  fs::create_symlink("deep/target", folder.Path("link"));
  for (const bool force : {false, true}) {
    OutputFile(folder.Path("link"), force).Put(kContent);
    EXPECT_TRUE(fs::is_symlink(folder.Path("link")));
    EXPECT_EQ(folder.Read("deep/target"), "new");
    folder.Write("deep/target", "old");
  }
  fs::create_symlink("loop", folder.Path("loop"));
  EXPECT_THROW(OutputFile(folder.Path("loop"), true), Error);
}

TEST(OutputFile, DoesNotReplaceAFileThatAppearedMeanwhile) {
  const ScratchFolder folder;
  const OutputFile output(folder.Path("late"), false);
  folder.Write("late", "first");
  EXPECT_THROW(output.Put(kContent), Error);
  EXPECT_EQ(folder.Read("late"), "first");
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"late"});
}

TEST(OutputFile, LeavesTheOldFileAndNothingElseAfterAnInterrupt) {
  const ScratchFolder folder;
  folder.Write("old", "old");
  // Held back here, the signal waits for the process while the file is written.
  sigset_t terminate{};
  sigset_t before{};
  sigemptyset(&terminate);
  sigaddset(&terminate, SIGTERM);
  ::pthread_sigmask(SIG_BLOCK, &terminate, &before);
  std::raise(SIGTERM);
  EXPECT_THROW(OutputFile(folder.Path("old"), true).Put(kContent), Error);
  const timespec atOnce{};
  EXPECT_EQ(::sigtimedwait(&terminate, nullptr, &atOnce), SIGTERM);
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  EXPECT_EQ(folder.Read("old"), "old");
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"old"});
}

TEST(OutputFile, LeavesTheOldFileAndNothingElseWhereTheDiskIsFull) {
  const ScratchFolder folder;
  folder.Write("old", "old");
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const rlimit tiny{.rlim_cur = 2, .rlim_max = before.rlim_max};
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  ::setrlimit(RLIMIT_FSIZE, &tiny);
  EXPECT_THROW(OutputFile(folder.Path("old"), true).Put(kContent), Error);
  ::setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(folder.Read("old"), "old");
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"old"});
}

TEST(OutputFile, MayBeTheFileThatWasRead) {
  const ScratchFolder folder;
  folder.Write(
      "in.pgm", "P2 8 8 255" + [] {
        std::string text;
        for (int i = 0; i < 64; ++i) text += " " + std::to_string(3 * i);
        return text;
      }());
  ASSERT_EQ(folder.Run({"compress", "in.pgm", "a", "--lossless"}).status, 0);
  ASSERT_EQ(folder.Run({"truncate", "a.awg", "a", "--rate", "4"}).status, 0);
  const std::string before = folder.Read("a.awf");
  ASSERT_EQ(folder.Run({"truncate", "a.awf", "a.awf", "-f", "--rate", "3"}).status, 0);
  EXPECT_LT(folder.Read("a.awf").size(), before.size());
  EXPECT_EQ(folder.Names(), (std::vector<std::string>{"a.awf", "a.awg", "in.pgm"}));
}

}  // namespace
}  // namespace marovia::cli
