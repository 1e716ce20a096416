#include "files/input_file.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

#include "marovia/error.h"

#include "files/file_descriptor.h"

namespace marovia {
namespace {

constexpr std::int64_t kBytesPerPixel = 8;                    // a plain PGM of 16 bits takes 6
constexpr std::int64_t kHeaderBytes = std::int64_t{1} << 20;  // with room for long comments
constexpr std::size_t kChunk = std::size_t{1} << 16;

std::int64_t MostBytes(std::int64_t maxPixels) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  if (maxPixels > (kMost - kHeaderBytes) / kBytesPerPixel) return kMost;
  return maxPixels * kBytesPerPixel + kHeaderBytes;
}

[[noreturn]] void FailOnLength(std::int64_t mostBytes, std::int64_t maxPixels) {
  Fail(Errc::kLimit, "longer than " + std::to_string(mostBytes) +
                         " bytes, which is more than the limit of " + std::to_string(maxPixels) +
                         " pixels needs");
}

FileDescriptor Open(const std::string& name) {
  const int flags = O_RDONLY | O_CLOEXEC | O_NOCTTY;
  FileDescriptor file(name == kStandardStream ? ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                                              : ::open(name.c_str(), flags));
  if (!file.IsOpen()) FailWithErrno("cannot be opened");
  return file;
}

// What is known of the length beforehand; 0 for pipes and devices.
std::int64_t ExpectedBytes(const FileDescriptor& file) {
  struct stat status {};
  if (::fstat(file.Number(), &status) != 0) FailWithErrno("cannot be read");
  if (S_ISDIR(status.st_mode)) Fail(Errc::kIo, "cannot be read: it is a folder");
  return S_ISREG(status.st_mode) ? status.st_size : 0;
}

std::size_t ReadSome(const FileDescriptor& file, std::uint8_t* to, std::size_t room) {
  for (;;) {
    const ssize_t count = ::read(file.Number(), to, room);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) FailWithErrno("cannot be read");
  }
}

}  // namespace

Bytes ReadInput(const std::string& name, std::int64_t maxPixels) {
  const FileDescriptor file = Open(name);
  const std::int64_t mostBytes = MostBytes(maxPixels);
  const std::int64_t expected = ExpectedBytes(file);
  if (expected > mostBytes) FailOnLength(mostBytes, maxPixels);

  // One byte more than expected, so that the end of a regular file shows without growing.
  Bytes bytes(std::max(static_cast<std::size_t>(expected) + 1, kChunk));
  std::size_t length = 0;
  while (const std::size_t count = ReadSome(file, bytes.data() + length, bytes.size() - length)) {
    length += count;
    if (static_cast<std::int64_t>(length) > mostBytes) FailOnLength(mostBytes, maxPixels);
    if (length == bytes.size()) bytes.resize(2 * length);
  }
  bytes.resize(length);
  return bytes;
}

}  // namespace marovia
