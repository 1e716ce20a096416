// A TIFF in memory, and what the library says of it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <tiffio.h>

#include "marovia/image.h"

namespace marovia {

class TiffMemory {
 public:
  // To be read, or with "w" and "w8" (one of more than 4 GB) to be written. The library allocates
  // nothing larger than `mostBytes` at once. Error kMalformed.
  TiffMemory(ByteView file, std::int64_t mostBytes);
  TiffMemory(const char* mode, std::int64_t mostBytes);

  [[nodiscard]] TIFF* Get() const { return tiff_.get(); }
  // All that was written; it is complete then.
  Bytes Close();

  // Throws Error kMalformed with the first failure that the library told of.
  [[noreturn]] void FailAsTold() const;
  // The first thing that it minded and went on, empty where there was none.
  [[nodiscard]] const std::string& Warning() const { return state_->warning; }

 private:
  // At an address of its own, which the library keeps.
  struct State {
    ByteView read;
    Bytes written;
    std::uint64_t at = 0;
    std::string failure;
    std::string warning;
  };
  struct Closer {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
  };

  static tmsize_t ReadBytes(thandle_t state, void* to, tmsize_t count);
  static tmsize_t WriteBytes(thandle_t state, void* from, tmsize_t count);
  static toff_t Seek(thandle_t state, toff_t offset, int whence);
  static toff_t Size(thandle_t state);
  static int Map(thandle_t state, void** base, toff_t* size);
  static int KeepFailure(TIFF*, void* state, const char* module, const char* format, va_list words);
  static int KeepWarning(TIFF*, void* state, const char* module, const char* format, va_list words);

  void Open(const char* mode, std::int64_t mostBytes);

  std::unique_ptr<State> state_ = std::make_unique<State>();
  std::unique_ptr<TIFF, Closer> tiff_;
};

}  // namespace marovia
