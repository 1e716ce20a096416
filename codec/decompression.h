// A decompression as the steps of a run.
#pragma once

#include <type_traits>

#include "marovia/codec.h"

#include "codec/coders.h"
#include "format/file_header.h"

namespace marovia {

// What the header and the length of a stream say of a file.
FileInfo InfoOf(const FileHeader& header, FileKind kind, std::int64_t streamBytes);

class Decompression {
 public:
  // Reads the header. The bytes must outlive the decompression. Errors as Inspect.
  Decompression(ByteView file, FileKind kind, std::int64_t maxPixels);
  // A stream under a header that CheckedHeader gave, or one like it with another budget.
  Decompression(const FileHeader& header, FileKind kind, ByteView stream);

  [[nodiscard]] const FileInfo& Info() const { return info_; }
  [[nodiscard]] const Coder& TheCoder() const { return coder_; }

  // 0: as many as the machine has processors. 1 unless set; the picture is the same on any number.
  void SetThreads(int threads) { threads_ = threads; }
  // The picture is to be so many times 2 smaller, up to the levels of the file: that many levels
  // are not put together again, and their values not kept.
  void Reduce(int levels);
  // What to read; without it, all. Returns whether that was held to what the file was made with.
  // Not for a lossless coder.
  bool HoldBudget(std::int32_t bits);
  // Whatever the file was made with.
  void SetBudget(std::int64_t bits) { budget_ = bits; }

  // All passes, and the values put in the middle of what they leave open. Returns the closing
  // report.
  PassReport ReadPasses(const PassListener& onPass);
  // After the passes: bits that the run asked for are missing, and the file's length does not say
  // that it is complete.
  [[nodiscard]] bool Truncated() const { return truncated_; }
  // Whether the run ended by its budget, and how many bits of the stream it asked for.
  [[nodiscard]] bool BudgetSpent() const { return budgetSpent_; }
  [[nodiscard]] std::int64_t StreamBitsRead() const { return streamBitsRead_; }

  // The picture, at its true size.
  Image Invert();

 private:
  template <template <class> class Decoder, class Symbols, class Order>
  PassReport ReadWith(Order& order, const std::type_identity_t<Order>& keptOrder,
                      const PassListener& onPass);
  // What is kept of the coded grid.
  [[nodiscard]] BandGrid KeptGrid() const;

  const Coder& coder_;
  FileInfo info_;
  ByteView stream_;
  std::int64_t budget_;
  int threads_ = 1;
  int reduce_ = 0;
  Grid<float> coefficients_;
  std::int64_t streamBitsRead_ = 0;
  bool truncated_ = false;
  bool budgetSpent_ = false;
};

}  // namespace marovia
