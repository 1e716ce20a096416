// Reading a file, or standard input.
#pragma once

#include <cstdint>
#include <string>

#include "marovia/image.h"

#include "files/file_descriptor.h"

namespace marovia {

inline constexpr const char* kStandardStream = "-";

// A file to be read from its start on; "-" is standard input.
class InputFile {
 public:
  // Error kIo where the file cannot be opened or is a folder. Of maxPixels follows how long a file
  // is read at the most: as long as any of an image of so many pixels.
  InputFile(const std::string& name, std::int64_t maxPixels);

  // The next `count` bytes, fewer where the file ends. Error kIo.
  Bytes Read(std::int64_t count);
  // All that is left. Error kLimit where the file is too long, of a regular one before it is read.
  Bytes ReadRest();
  // How many bytes are left; those of a pipe are read and dropped. Error kLimit where that is no
  // regular file and too long.
  std::int64_t CountRest();

 private:
  Bytes ReadPieces();
  std::int64_t ReadInto(std::uint8_t* to, std::int64_t count);
  void CheckLength() const;

  FileDescriptor file_;
  std::int64_t maxPixels_;
  std::int64_t length_;    // -1 where the system does not tell
  std::int64_t read_ = 0;  // so far
};

// The bytes of the file `name`, or of standard input for "-". Error kIo where it cannot be read or
// is a folder; kLimit where it is longer than any file of an image of maxPixels pixels, before that
// much is read.
Bytes ReadInput(const std::string& name, std::int64_t maxPixels);

}  // namespace marovia
