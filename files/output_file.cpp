#include "files/output_file.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "marovia/error.h"

#include "files/file_access.h"
#include "files/file_descriptor.h"
#include "files/input_file.h"
#include "files/signal_hold.h"

namespace marovia {
namespace {

namespace fs = std::filesystem;

constexpr int kMostLinks = 40;
constexpr int kMostTemporaries = 100;
constexpr mode_t kOrdinaryMode = 0666;  // less what the umask takes away
constexpr mode_t kPrivateMode = 0600;   // until it is known who else may

std::optional<struct stat> StatusOfFile(const std::string& name) {
  struct stat status {};
  if (::stat(name.c_str(), &status) == 0) return status;
  if (errno == ENOENT) return std::nullopt;
  FailWithErrno("cannot be written");
}

// Follows links by hand, since the last one may lead to a file that is yet to be created.
std::string BehindLinks(const std::string& name) {
  fs::path path = name;
  for (int links = 0; links < kMostLinks; ++links) {
    std::error_code failure;
    const fs::path target = fs::read_symlink(path, failure);
    if (failure == std::errc::invalid_argument || failure == std::errc::no_such_file_or_directory)
      return path.string();
    if (failure) Fail(Errc::kIo, "cannot be written: " + failure.message());
    path = path.parent_path() / target;
  }
  Fail(Errc::kIo, "cannot be written: more than " + std::to_string(kMostLinks) + " symbolic links");
}

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

void PutDirectly(FileDescriptor file, ByteView bytes) {
  if (!file.IsOpen()) FailWithErrno("cannot be written");
  WriteAll(file, bytes);
  CloseChecked(file);
}

[[noreturn]] void FailOnExistingFile() {
  Fail(Errc::kIo, "already exists (--force replaces it)");
}

// A new file beside the one that it will become. Where the file system can, it has no name while it
// is written, so that nothing is left of it even if the program is killed; elsewhere, and for the
// moment in which it replaces a file, it has one of its own, which goes with the object.
class TemporaryFile {
 public:
  TemporaryFile(fs::path folder, mode_t mode)
      : folder_(std::move(folder)),
        file_(::open(folder_.empty() ? "." : folder_.c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC,
                     mode)) {
    // A nameless file is reached through /proc, which may not be there.
    if (file_.IsOpen() && ::access(OpenFile().c_str(), F_OK) == 0) return;
    TakeName([&](const char* name) {
      file_ = FileDescriptor(::open(name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
      return file_.IsOpen();
    });
  }

  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!name_.empty()) ::unlink(name_.c_str());
  }

  [[nodiscard]] const FileDescriptor& File() const { return file_; }

  void Fill(ByteView bytes) const {
    WriteAll(file_, bytes);
    if (::fsync(file_.Number()) != 0) FailWithErrno("cannot be written");
  }

  // Gives the file its name, in place of the file that has it where `force` allows that.
  void Become(const std::string& path, bool force) {
    if (name_.empty()) {
      if (LinkTo(path.c_str())) return;
      if (errno != EEXIST) FailWithErrno("cannot be written");
      if (!force) FailOnExistingFile();
      TakeName([this](const char* name) { return LinkTo(name); });
    }
    // Some file systems report a full disk only here.
    CloseChecked(file_);
    RenameTo(path, force);
    name_.clear();
  }

 private:
  [[nodiscard]] std::string OpenFile() const {
    return "/proc/self/fd/" + std::to_string(file_.Number());
  }

  [[nodiscard]] bool LinkTo(const char* name) const {
    return ::linkat(AT_FDCWD, OpenFile().c_str(), AT_FDCWD, name, AT_SYMLINK_FOLLOW) == 0;
  }

  // take(name) fails with EEXIST where there is a file of that name, left by a program killed.
  template <class Take>
  void TakeName(Take take) {
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

  void RenameTo(const std::string& path, bool force) const {
    const char* from = name_.c_str();
    const char* to = path.c_str();
    int result = ::renameat2(AT_FDCWD, from, AT_FDCWD, to, force ? 0 : RENAME_NOREPLACE);
    // A file system without this form of the call gets the check a moment before.
    if (result != 0 && !force && (errno == EINVAL || errno == ENOSYS)) {
      if (StatusOfFile(path)) FailOnExistingFile();
      result = ::rename(from, to);
    }
    if (result == 0) return;
    if (errno == EEXIST) FailOnExistingFile();
    FailWithErrno("cannot be written");
  }

  fs::path folder_;
  FileDescriptor file_;
  std::string name_;  // empty while it has none
};

}  // namespace

bool IsDeviceOrPipe(const std::string& name) {
  struct stat status {};
  return ::stat(name.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

OutputFile::OutputFile(const std::string& name, bool force)
    : kind_(KindOf(name, force)),
      force_(force),
      // The links of /dev/stdout end in a name that only the system can open.
      path_(kind_ == Kind::kDirect ? name : BehindLinks(name)) {}

OutputFile::Kind OutputFile::KindOf(const std::string& name, bool force) {
  if (name.empty()) Fail(Errc::kInvalidArgument, "the name of what is written is empty");
  if (name == kStandardStream) {
    if (::isatty(STDOUT_FILENO) == 1 && !force)
      Fail(Errc::kInvalidArgument, "standard output is a terminal (--force writes to it)");
    return Kind::kStandardOutput;
  }
  const auto status = StatusOfFile(name);
  if (!status) return Kind::kNewFile;
  if (S_ISDIR(status->st_mode)) Fail(Errc::kIo, "cannot be written: it is a folder");
  if (!S_ISREG(status->st_mode)) return Kind::kDirect;
  if (!force) FailOnExistingFile();
  return Kind::kReplacedFile;
}

void OutputFile::Put(ByteView bytes) const {
  switch (kind_) {
    case Kind::kNewFile:
    case Kind::kReplacedFile:
      PutInPlace(bytes);
      break;
    case Kind::kDirect:
      PutDirectly(FileDescriptor(::open(path_.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY)), bytes);
      break;
    case Kind::kStandardOutput:
      PutDirectly(FileDescriptor(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0)), bytes);
      break;
  }
}

void OutputFile::PutInPlace(ByteView bytes) const {
  // The hold outlives the temporary file: an interrupt strikes when that is gone.
  const SignalHold hold;
  const bool replaces = StatusOfFile(path_).has_value();
  TemporaryFile temporary(fs::path(path_).parent_path(), replaces ? kPrivateMode : kOrdinaryMode);
  if (replaces) TakeOverAccess(path_, temporary.File());
  temporary.Fill(bytes);
  if (hold.IsAnyWaiting()) Fail(Errc::kIo, "not written: interrupted");
  temporary.Become(path_, force_);
}

}  // namespace marovia
