#include "files/input_file.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <deque>
#include <fcntl.h>
#include <iterator>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

#include "marovia/error.h"

namespace marovia {
namespace {

constexpr std::int64_t kBytesPerPixel = 8;                    // a plain PGM of 16 bits takes 6
constexpr std::int64_t kHeaderBytes = std::int64_t{1} << 20;  // with room for long comments
constexpr std::int64_t kPiece = std::int64_t{1} << 20;

std::int64_t MostBytes(std::int64_t maxPixels) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  if (maxPixels > (kMost - kHeaderBytes) / kBytesPerPixel) return kMost;
  return maxPixels * kBytesPerPixel + kHeaderBytes;
}

FileDescriptor Open(const std::string& name) {
  const int flags = O_RDONLY | O_CLOEXEC | O_NOCTTY;
  FileDescriptor file(name == kStandardStream ? ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                                              : ::open(name.c_str(), flags));
  if (!file.IsOpen()) FailWithErrno("cannot be opened");
  return file;
}

// Pipes and devices have none, and files of the system's own tell 0.
std::int64_t LengthOf(const FileDescriptor& file) {
  struct stat status {};
  if (::fstat(file.Number(), &status) != 0) FailWithErrno("cannot be read");
  if (S_ISDIR(status.st_mode)) Fail(Errc::kIo, "cannot be read: it is a folder");
  return S_ISREG(status.st_mode) && status.st_size > 0 ? status.st_size : -1;
}

}  // namespace

InputFile::InputFile(const std::string& name, std::int64_t maxPixels)
    : file_(Open(name)), maxPixels_(maxPixels), length_(LengthOf(file_)) {}

Bytes InputFile::Read(std::int64_t count) {
  Bytes bytes(static_cast<std::size_t>(length_ < 0 ? count : std::min(count, length_)));
  bytes.resize(static_cast<std::size_t>(ReadInto(bytes.data(), std::ssize(bytes))));
  return bytes;
}

Bytes InputFile::ReadRest() {
  CheckLength();
  if (length_ < 0) return ReadPieces();
  Bytes bytes = Read(length_ - read_);
  // It may have grown meanwhile.
  const Bytes more = ReadPieces();
  bytes.insert(bytes.end(), more.begin(), more.end());
  return bytes;
}

// Joined at the end, each given back as it is copied: a vector that grows would hold twice as much.
Bytes InputFile::ReadPieces() {
  std::deque<Bytes> pieces;
  std::size_t total = 0;
  do {
    pieces.push_back(Read(kPiece));
    total += pieces.back().size();
    CheckLength();
  } while (std::ssize(pieces.back()) == kPiece);
  Bytes bytes;
  bytes.reserve(total);
  for (; !pieces.empty(); pieces.pop_front()) {
    bytes.insert(bytes.end(), pieces.front().begin(), pieces.front().end());
  }
  return bytes;
}

std::int64_t InputFile::CountRest() {
  if (length_ >= 0) return std::max<std::int64_t>(0, length_ - read_);
  const std::int64_t before = read_;
  while (!Read(kPiece).empty()) CheckLength();
  return read_ - before;
}

std::int64_t InputFile::ReadInto(std::uint8_t* to, std::int64_t count) {
  std::int64_t length = 0;
  while (length < count) {
    const ssize_t some =
        ::read(file_.Number(), to + length, static_cast<std::size_t>(count - length));
    if (some == 0) break;
    if (some > 0) {
      length += some;
    } else if (errno != EINTR) {
      FailWithErrno("cannot be read");
    }
  }
  read_ += length;
  return length;
}

void InputFile::CheckLength() const {
  const std::int64_t most = MostBytes(maxPixels_);
  if (std::max(length_, read_) <= most) return;
  Fail(Errc::kLimit, "longer than " + std::to_string(most) +
                         " bytes, which is more than the limit of " + std::to_string(maxPixels_) +
                         " pixels needs");
}

Bytes ReadInput(const std::string& name, std::int64_t maxPixels) {
  return InputFile(name, maxPixels).ReadRest();
}

}  // namespace marovia
