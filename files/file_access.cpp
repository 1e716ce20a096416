#include "files/file_access.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace marovia {
namespace {

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

// The order matters: attributes can be set while the file is writable by the caller, and a change
// of owner clears permission bits.
void TakeOverAccess(const std::string& from, const FileDescriptor& to) {
  struct stat old {};
  if (::stat(from.c_str(), &old) != 0) FailWithErrno("cannot be replaced");
  KeepOwnerOrGroup(old, to);
  CopyAttributes(from, to);
  const struct stat now = StatusOf(to);
  const mode_t mode = ModeFor(old, now);
  if (::fchmod(to.Number(), mode) == 0 || (now.st_mode & 07777) == mode) return;
  FailWithErrno("cannot be replaced: its permissions cannot be kept");
}

}  // namespace marovia
