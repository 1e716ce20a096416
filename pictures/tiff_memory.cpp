#include "pictures/tiff_memory.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

#include "marovia/error.h"

namespace marovia {
namespace {

// The first message of each kind stays. Nothing may be thrown through the library.
int Keep(std::string& kept, const char* format, std::va_list words) {
  if (!kept.empty()) return 1;
  std::array<char, 256> text{};
  static_cast<void>(std::vsnprintf(text.data(), text.size(), format, words));
  try {
    kept = text.data();
    while (kept.ends_with('.')) kept.pop_back();
  } catch (const std::bad_alloc&) {
    kept.clear();
  }
  return 1;
}

}  // namespace

TiffMemory::TiffMemory(ByteView file, std::int64_t mostBytes) {
  state_->read = file;
  Open("r", mostBytes);
}

TiffMemory::TiffMemory(const char* mode, std::int64_t mostBytes) {
  Open(mode, mostBytes);
}

void TiffMemory::Open(const char* mode, std::int64_t mostBytes) {
  struct Freer {
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
  };
  const std::unique_ptr<TIFFOpenOptions, Freer> options(TIFFOpenOptionsAlloc());
  if (!options) throw std::bad_alloc();
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), mostBytes);
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), &KeepFailure, state_.get());
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), &KeepWarning, state_.get());
  const auto close = [](thandle_t) { return 0; };
  const auto unmap = [](thandle_t, void*, toff_t) {};
  tiff_.reset(TIFFClientOpenExt("", mode, state_.get(), &ReadBytes, &WriteBytes, &Seek, close,
                                &Size, &Map, unmap, options.get()));
  if (!tiff_) FailAsTold();
}

Bytes TiffMemory::Close() {
  tiff_.reset();
  if (!state_->failure.empty()) FailAsTold();
  return std::move(state_->written);
}

void TiffMemory::FailAsTold() const {
  Fail(Errc::kMalformed, "The TIFF library says: " +
                             (state_->failure.empty() ? "it cannot be read" : state_->failure) +
                             ".");
}

tmsize_t TiffMemory::ReadBytes(thandle_t state, void* to, tmsize_t count) {
  State& file = *static_cast<State*>(state);
  const ByteView bytes = file.read.empty() ? ByteView(file.written) : file.read;
  const std::uint64_t left = file.at < bytes.size() ? bytes.size() - file.at : 0;
  const std::uint64_t taken = std::min<std::uint64_t>(left, static_cast<std::uint64_t>(count));
  if (taken > 0) std::memcpy(to, bytes.data() + file.at, taken);
  file.at += taken;
  return static_cast<tmsize_t>(taken);
}

tmsize_t TiffMemory::WriteBytes(thandle_t state, void* from, tmsize_t count) {
  State& file = *static_cast<State*>(state);
  const auto length = static_cast<std::size_t>(count);
  try {
    file.written.resize(std::max(file.written.size(), file.at + length));
  } catch (const std::bad_alloc&) {
    return 0;
  }
  std::memcpy(file.written.data() + file.at, from, length);
  file.at += length;
  return count;
}

toff_t TiffMemory::Seek(thandle_t state, toff_t offset, int whence) {
  State& file = *static_cast<State*>(state);
  const toff_t from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? file.at : Size(state);
  return file.at = from + offset;
}

toff_t TiffMemory::Size(thandle_t state) {
  const State& file = *static_cast<State*>(state);
  return std::max(file.read.size(), file.written.size());
}

int TiffMemory::Map(thandle_t state, void** base, toff_t* size) {
  const State& file = *static_cast<State*>(state);
  // The library does not write to what it maps of a file that it reads.
  *base =
      const_cast<std::uint8_t*>(file.read.data());  // NOLINT(cppcoreguidelines-pro-type-const-cast)
  *size = file.read.size();
  return file.read.empty() ? 0 : 1;
}

int TiffMemory::KeepFailure(TIFF*, void* state, const char*, const char* format, va_list words) {
  return Keep(static_cast<State*>(state)->failure, format, words);
}

// Fields of other programs' own are everyday matters and none of ours.
int TiffMemory::KeepWarning(TIFF*, void* state, const char*, const char* format, va_list words) {
  if (std::string_view(format).find("Unknown field") != std::string_view::npos) return 1;
  return Keep(static_cast<State*>(state)->warning, format, words);
}

}  // namespace marovia
