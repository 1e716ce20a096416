#include "files/output_file.h"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

#include "tests/support/testing.h"

namespace marovia::cli {
namespace {

namespace fs = std::filesystem;
using test::TemporaryFolder;

const Bytes kContent = {'n', 'e', 'w'};

mode_t ModeOf(const std::string& path) {
  struct stat status {};
  ::stat(path.c_str(), &status);
  return status.st_mode & 07777;
}

// From here on the system answers this thread as a file system does that knows neither nameless
// files nor a rename that spares the file in its way.
void LeaveNamedFilesOnly() {
  constexpr std::uint32_t kNameless = O_TMPFILE & ~O_DIRECTORY;
  std::array filter = {
      sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 0, 3),
      sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[2])),
      sock_filter BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, kNameless, 0, 4),
      sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EOPNOTSUPP),
      sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 0, 2),
      sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[4])),
      sock_filter BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, RENAME_NOREPLACE, 1, 0),
      sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
      sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL)};
  const sock_fprog program{filter.size(), filter.data()};
  ASSERT_EQ(::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), 0);
  ASSERT_EQ(::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program), 0);
  ASSERT_EQ(::open("/tmp", O_WRONLY | O_TMPFILE, 0600), -1);
}

// Runs the test where files can be written without a name, and where they cannot.
void OnEveryFileSystem(const std::function<void(const TemporaryFolder&)>& test) {
  for (const bool named : {false, true}) {
    std::jthread([&] {
      SCOPED_TRACE(named ? "named" : "nameless");
      const TemporaryFolder folder;
      if (named) LeaveNamedFilesOnly();
      test(folder);
    }).join();
  }
}

TEST(OutputFile, GetsThePermissionsOfAnyNewFileOrOfTheOneThatItReplaces) {
  OnEveryFileSystem([](const TemporaryFolder& folder) {
    const mode_t before = ::umask(027);
    OutputFile(folder.Path("new"), false).Put(kContent);
    ::umask(before);
    EXPECT_EQ(ModeOf(folder.Path("new")), 0640U);

    folder.Write("old", "old");
    ::chmod(folder.Path("old").c_str(), 0604);
    OutputFile(folder.Path("old"), true).Put(kContent);
    EXPECT_EQ(ModeOf(folder.Path("old")), 0604U);
    EXPECT_EQ(folder.Read("old"), "new");
    EXPECT_EQ(folder.Names(), (std::vector<std::string>{"new", "old"}));
    EXPECT_THROW(OutputFile("", true), Error);
  });
}

// A list in the system's own form: the owner, user 1234, the group, the mask and everyone, with the
// permissions given.
std::string AccessList(std::array<char, 5> permissions) {
  constexpr std::array<char, 5> kTags = {0x01, 0x02, 0x04, 0x10, 0x20};
  std::string list("\2\0\0\0", 4);
  for (std::size_t i = 0; i < kTags.size(); ++i) {
    list += {kTags[i], 0, permissions[i], 0};
    list += kTags[i] == 0x02 ? std::string("\xd2\x04\0\0", 4) : std::string(4, '\xff');
  }
  return list;
}

std::string Attribute(const std::string& path, const char* name) {
  std::string value(200, ' ');
  const ssize_t size = ::getxattr(path.c_str(), name, value.data(), value.size());
  return size < 0 ? "none" : value.substr(0, static_cast<std::size_t>(size));
}

TEST(OutputFile, GetsTheListAndTheAttributesOfTheOneThatItReplacesAndNoneOfTheFolder) {
  constexpr const char* kList = "system.posix_acl_access";
  OnEveryFileSystem([](const TemporaryFolder& folder) {
    const std::string old = folder.Path("old");
    const std::string list = AccessList({6, 4, 0, 4, 0});
    const std::string wide = AccessList({7, 7, 7, 7, 7});
    folder.Write("old", "old");
    if (::setxattr(old.c_str(), kList, list.data(), list.size(), 0) != 0) GTEST_SKIP();
    ::setxattr(old.c_str(), "user.origin", "a scanner", 9, 0);
    ::setxattr(folder.Path("").c_str(), "system.posix_acl_default", wide.data(), wide.size(), 0);
    OutputFile(old, true).Put(kContent);
    EXPECT_EQ(folder.Read("old"), "new");
    EXPECT_EQ(Attribute(old, kList), list);
    EXPECT_EQ(Attribute(old, "user.origin"), "a scanner");

    ::removexattr(old.c_str(), kList);
    ::chmod(old.c_str(), 0640);
    OutputFile(old, true).Put(kContent);
    EXPECT_EQ(Attribute(old, kList), "none");
    EXPECT_EQ(ModeOf(old), 0640U);
  });
}

TEST(OutputFile, FollowsSymbolicLinksAlsoToAFileYetToBe) {
  const TemporaryFolder folder;
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

void ExpectOldAlone(const TemporaryFolder& folder) {
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"old"});
  EXPECT_EQ(folder.Read("old"), "old");
}

TEST(OutputFile, DoesNotReplaceAFileThatAppearedMeanwhile) {
  OnEveryFileSystem([](const TemporaryFolder& folder) {
    const OutputFile output(folder.Path("old"), false);
    folder.Write("old", "old");
    EXPECT_THROW(output.Put(kContent), Error);
    ExpectOldAlone(folder);
  });
}

TEST(OutputFile, LeavesTheOldFileAndNothingElseAfterAnInterrupt) {
  OnEveryFileSystem([](const TemporaryFolder& folder) {
    folder.Write("old", "old");
    // Held back here, the signal waits for the thread while the file is written.
    sigset_t terminate{};
    sigemptyset(&terminate);
    sigaddset(&terminate, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &terminate, nullptr);
    ::pthread_kill(::pthread_self(), SIGTERM);
    EXPECT_THROW(OutputFile(folder.Path("old"), true).Put(kContent), Error);
    const timespec atOnce{};
    EXPECT_EQ(::sigtimedwait(&terminate, nullptr, &atOnce), SIGTERM);
    ExpectOldAlone(folder);
  });
}

TEST(OutputFile, LeavesTheOldFileAndNothingElseWhereTheDiskIsFull) {
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  OnEveryFileSystem([&](const TemporaryFolder& folder) {
    folder.Write("old", "old");
    const rlimit tiny{.rlim_cur = 2, .rlim_max = before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &tiny);
    for (const char* name : {"old", "new"})
      EXPECT_THROW(OutputFile(folder.Path(name), true).Put(kContent), Error);
    ::setrlimit(RLIMIT_FSIZE, &before);
    ExpectOldAlone(folder);
  });
  std::signal(SIGXFSZ, handler);
}

}  // namespace
}  // namespace marovia::cli
