#include "files/temporary_file.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "marovia/error.h"

namespace marovia {
namespace {

namespace fs = std::filesystem;

constexpr int kMostTemporaries = 100;
constexpr const char* kAccessList = "system.posix_acl_access";
constexpr auto kOwnerUnchanged = static_cast<uid_t>(-1);

// What the system makes of a file's content, which is about to be another.
bool IsOfTheContent(std::string_view name) {
  constexpr std::array<std::string_view, 3> kNames = {"security.capability", "security.ima",
                                                      "security.evm"};
  for (const std::string_view one : kNames)
    if (name == one) return true;
  return false;
}

// Labels of the system are set by its own rules; what a user attached must not get lost, and no
// access be given that a list held back.
bool MustBeKept(std::string_view name) {
  return name.starts_with("user.") || name.starts_with("system.");
}

// The result of ask(buffer, size), which gives the size alone where that is 0. Empty where the file
// system knows of no such thing or the file has none.
template <class Ask>
std::vector<char> Answer(Ask ask) {
  for (;;) {
    std::vector<char> answer;
    ssize_t size = ask(nullptr, std::size_t{0});
    if (size > 0) {
      answer.resize(static_cast<std::size_t>(size));
      size = ask(answer.data(), answer.size());
    }
    if (size >= 0) {
      answer.resize(static_cast<std::size_t>(size));
      return answer;
    }
    if (errno == ENOTSUP || errno == ENODATA) return {};
    if (errno != ERANGE) FailWithErrno("cannot be replaced: its attributes cannot be read");
  }
}

void CopyAttribute(const std::string& from, const FileDescriptor& to, const char* name) {
  const std::vector<char> value = Answer(
      [&](char* buffer, std::size_t size) { return ::getxattr(from.c_str(), name, buffer, size); });
  if (::fsetxattr(to.Number(), name, value.data(), value.size(), 0) == 0 || !MustBeKept(name))
    return;
  FailWithErrno(std::string("cannot be replaced: its attribute ") + name + " cannot be kept");
}

// The folder may have given the new file a list, in whose terms the permissions would be read.
void DropAccessList(const FileDescriptor& file) {
  if (::fremovexattr(file.Number(), kAccessList) == 0 || errno == ENODATA || errno == ENOTSUP)
    return;
  FailWithErrno("cannot be replaced: its permissions cannot be kept");
}

void CopyAttributes(const std::string& from, const FileDescriptor& to) {
  DropAccessList(to);
  const std::vector<char> names = Answer(
      [&](char* buffer, std::size_t size) { return ::listxattr(from.c_str(), buffer, size); });
  for (std::size_t at = 0; at < names.size();) {
    const char* name = names.data() + at;
    if (!IsOfTheContent(name)) CopyAttribute(from, to, name);
    at += std::string_view(name).size() + 1;
  }
}

struct stat StatusOf(const FileDescriptor& file) {
  struct stat status {};
  if (::fstat(file.Number(), &status) != 0) FailWithErrno("cannot be written");
  return status;
}

void KeepOwnerOrGroup(const struct stat& old, const FileDescriptor& to) {
  if (::fchown(to.Number(), old.st_uid, old.st_gid) == 0) return;
  static_cast<void>(::fchown(to.Number(), kOwnerUnchanged, old.st_gid));
}

// Rights of an owner or a group are those of that one, and not of another that took its place. The
// bits of the group bound a list's other entries as well.
mode_t ModeFor(const struct stat& old, const struct stat& now) {
  mode_t mode = old.st_mode & 07777;
  if (now.st_uid != old.st_uid) mode &= ~mode_t{S_ISUID};
  if (now.st_gid == old.st_gid) return mode;
  const mode_t everyones = (mode & S_IRWXO) << 3;
  return mode & ~mode_t{S_ISGID} & (everyones | ~mode_t{S_IRWXG});
}

}  // namespace

void WriteAll(const FileDescriptor& file, ByteView bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(file.Number(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) FailWithErrno("cannot be written");
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
}

void CloseChecked(FileDescriptor& file) {
  if (!file.Close()) FailWithErrno("cannot be written");
}

[[noreturn]] void FailOnExistingFile() {
  Fail(Errc::kIo, "already exists (--force replaces it)");
}

TemporaryFile::TemporaryFile(fs::path folder, mode_t mode)
    : folder_(std::move(folder)),
      file_(
          ::open(folder_.empty() ? "." : folder_.c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, mode)) {
  // A nameless file is reached through /proc, which may not be there.
  if (file_.IsOpen() && ::access(OpenFile().c_str(), F_OK) == 0) return;
  TakeName([&](const char* name) {
    file_ = FileDescriptor(::open(name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    return file_.IsOpen();
  });
}

TemporaryFile::~TemporaryFile() {
  if (!name_.empty()) ::unlink(name_.c_str());
}

// The order matters: attributes can be set while the file is writable by the caller, and a change
// of owner clears permission bits.
void TemporaryFile::TakeOverAccess(const std::string& from) const {
  struct stat old {};
  if (::stat(from.c_str(), &old) != 0) FailWithErrno("cannot be replaced");
  KeepOwnerOrGroup(old, file_);
  CopyAttributes(from, file_);
  const struct stat now = StatusOf(file_);
  const mode_t mode = ModeFor(old, now);
  if (::fchmod(file_.Number(), mode) == 0 || (now.st_mode & 07777) == mode) return;
  FailWithErrno("cannot be replaced: its permissions cannot be kept");
}

void TemporaryFile::Fill(ByteView bytes) const {
  WriteAll(file_, bytes);
  if (::fsync(file_.Number()) != 0) FailWithErrno("cannot be written");
}

void TemporaryFile::Become(const std::string& path, bool force) {
  if (name_.empty()) {
    if (LinkTo(path.c_str())) return;
    if (errno != EEXIST) FailWithErrno("cannot be written");
    if (!force) FailOnExistingFile();
    TakeName([this](const char* name) { return LinkTo(name); });
  }
  CloseChecked(file_);
  RenameTo(path, force);
  name_.clear();
}

std::string TemporaryFile::OpenFile() const {
  return "/proc/self/fd/" + std::to_string(file_.Number());
}

bool TemporaryFile::LinkTo(const char* name) const {
  return ::linkat(AT_FDCWD, OpenFile().c_str(), AT_FDCWD, name, AT_SYMLINK_FOLLOW) == 0;
}

// take(name) fails with EEXIST where there is a file of that name, left by a program killed.
template <class Take>
void TemporaryFile::TakeName(Take take) {
  for (int n = 0; n < kMostTemporaries; ++n) {
    const auto name = ".marovia-" + std::to_string(::getpid()) + "-" + std::to_string(n);
    std::string path = (folder_ / name).string();
    if (take(path.c_str())) {
      // A copy might find no memory, and the file then would stay.
      name_ = std::move(path);
      return;
    }
    if (errno != EEXIST) break;
  }
  FailWithErrno("cannot be written");
}

void TemporaryFile::RenameTo(const std::string& path, bool force) const {
  const char* from = name_.c_str();
  const char* to = path.c_str();
  int result = ::renameat2(AT_FDCWD, from, AT_FDCWD, to, force ? 0 : RENAME_NOREPLACE);
  // A file system without this form of the call gets the check a moment before.
  if (result != 0 && !force && (errno == EINVAL || errno == ENOSYS)) {
    if (::access(to, F_OK) == 0) FailOnExistingFile();
    result = ::rename(from, to);
  }
  if (result == 0) return;
  if (errno == EEXIST) FailOnExistingFile();
  FailWithErrno("cannot be written");
}

}  // namespace marovia
