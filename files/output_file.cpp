#include "files/output_file.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

#include "marovia/error.h"

#include "files/file_descriptor.h"
#include "files/input_file.h"
#include "files/signal_hold.h"

namespace marovia {
namespace {

namespace fs = std::filesystem;

constexpr int kMostLinks = 40;
constexpr int kMostTemporaries = 100;
constexpr mode_t kOrdinaryMode = 0666;  // less what the umask takes away
constexpr mode_t kPermissionBits = 07777;

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
    std::error_code none;
    const fs::path target = fs::read_symlink(path, none);
    if (none) return path.string();
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

// A new file beside the one that it will become, removed with the object unless it was kept.
class TemporaryFile {
 public:
  explicit TemporaryFile(const fs::path& folder) {
    for (int n = 0; n < kMostTemporaries && !file_.IsOpen(); ++n) {
      const auto name = ".marovia-" + std::to_string(::getpid()) + "-" + std::to_string(n);
      path_ = (folder / name).string();
      file_ = FileDescriptor(
          ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kOrdinaryMode));
      if (!file_.IsOpen() && errno != EEXIST) break;
    }
    if (!file_.IsOpen()) FailWithErrno("cannot be written");
  }

  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!kept_) ::unlink(path_.c_str());
  }

  [[nodiscard]] const std::string& Path() const { return path_; }

  // Owner and permissions of the file at `other`, as far as the system lets us: nobody but root may
  // give a file away. The order matters, since a change of owner clears permission bits.
  void TakeOver(const std::string& other) const {
    const auto status = StatusOfFile(other);
    if (!status) return;
    static_cast<void>(::fchown(file_.Number(), status->st_uid, status->st_gid));
    static_cast<void>(::fchmod(file_.Number(), status->st_mode & kPermissionBits));
  }

  void Fill(ByteView bytes) {
    WriteAll(file_, bytes);
    if (::fsync(file_.Number()) != 0) FailWithErrno("cannot be written");
    CloseChecked(file_);
  }
  void Keep() { kept_ = true; }

 private:
  bool kept_ = false;
  std::string path_;
  FileDescriptor file_{-1};
};

[[noreturn]] void FailOnExistingFile() {
  Fail(Errc::kIo, "already exists (--force replaces it)");
}

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
  TemporaryFile temporary(fs::path(path_).parent_path());
  temporary.TakeOver(path_);
  temporary.Fill(bytes);
  if (hold.IsAnyWaiting()) Fail(Errc::kIo, "not written: interrupted");
  MoveInPlace(temporary.Path());
  temporary.Keep();
}

void OutputFile::MoveInPlace(const std::string& temporary) const {
  const char* from = temporary.c_str();
  const char* to = path_.c_str();
  int result = -1;
  if (force_) {
    result = ::rename(from, to);
  } else {
    result = ::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE);
    // A file system without this form of the call gets the check a moment before.
    if (result != 0 && (errno == EINVAL || errno == ENOSYS)) {
      if (StatusOfFile(path_)) FailOnExistingFile();
      result = ::rename(from, to);
    }
  }
  if (result == 0) return;
  if (errno == EEXIST) FailOnExistingFile();
  FailWithErrno("cannot be written");
}

}  // namespace marovia
