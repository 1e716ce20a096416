#include "files/output_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "marovia/error.h"

#include "files/file_descriptor.h"
#include "files/input_file.h"
#include "files/temporary_file.h"

namespace marovia {
namespace {

namespace fs = std::filesystem;

constexpr int kMostLinks = 40;
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

void PutDirectly(FileDescriptor file, ByteView bytes) {
  if (!file.IsOpen()) FailWithErrno("cannot be written");
  WriteAll(file, bytes);
  CloseChecked(file);
}

constexpr std::array kEndingSignals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

bool IsIgnored(int signal) {
  struct sigaction action {};
  return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

SignalHold::SignalHold() {
  sigemptyset(&held_);
  for (const int signal : kEndingSignals) {
    if (!IsIgnored(signal)) sigaddset(&held_, signal);
  }
  ::pthread_sigmask(SIG_BLOCK, &held_, &before_);
}

SignalHold::~SignalHold() {
  ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

bool SignalHold::IsAnyWaiting() const {
  sigset_t waiting{};
  sigpending(&waiting);
  return std::ranges::any_of(kEndingSignals, [&](int signal) {
    return sigismember(&held_, signal) == 1 && sigismember(&waiting, signal) == 1;
  });
}

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
  if (replaces) temporary.TakeOverAccess(path_);
  temporary.Fill(bytes);
  if (hold.IsAnyWaiting()) Fail(Errc::kIo, "not written: interrupted");
  temporary.Become(path_, force_);
}

}  // namespace marovia
