#include "image/bmp_rle.h"

#include <algorithm>
#include <string>
#include <utility>

#include "marovia/error.h"

namespace marovia {
namespace {

class RunDecoder {
 public:
  RunDecoder(const BmpHeader& header, ByteView code)
      : header_(header), code_(code), indices_(header.shape.rows, header.shape.cols) {}

  Image Decode() {
    while (!ended_) DecodePair();
    return std::move(indices_);
  }

 private:
  void DecodePair() {
    if (code_.empty() && RowsAreFull()) {
      ended_ = true;
      return;
    }
    const ByteView pair = Take(2);
    if (pair[0] > 0) {
      Place(pair[0], [&](int) { return pair[1]; });
    } else {
      DecodeEscape(pair[1]);
    }
  }

  void DecodeEscape(int escape) {
    switch (escape) {
      case 0:
        return MoveTo(row_ + 1, 0);
      case 1:
        ended_ = true;
        return;
      case 2: {
        const ByteView step = Take(2);
        return MoveTo(row_ + step[1], col_ + step[0]);
      }
      default:
        DecodeLiterals(escape);
    }
  }

  void DecodeLiterals(int count) {
    const std::size_t perByte = Nibbles() ? 2 : 1;
    const ByteView bytes = Take((static_cast<std::size_t>(count) + perByte - 1) / perByte);
    Place(count, [&](int i) { return bytes[static_cast<std::size_t>(i) / perByte]; });
    code_ = code_.subspan(std::min(bytes.size() % 2, code_.size()));
  }

  // byteAt(i) is the byte that holds the i-th index of a run or of literals. What goes past the end
  // of the row is dropped: some programs code the padding of the row as well.
  void Place(int count, auto byteAt) {
    if (row_ == header_.shape.rows) FailOutside(row_, col_);
    const auto places =
        indices_.Row(header_.ImageRow(row_)).subspan(static_cast<std::size_t>(col_));
    const int placed = std::min(count, header_.shape.cols - col_);
    for (int i = 0; i < placed; ++i) {
      const int byte = byteAt(i);
      const int index = !Nibbles() ? byte : i % 2 == 0 ? byte >> 4 : byte & 15;
      places[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(index);
    }
    col_ += placed;
  }

  // To be behind the last column or row is no error as long as nothing is placed there.
  void MoveTo(int row, int col) {
    if (row > header_.shape.rows || col > header_.shape.cols) FailOutside(row, col);
    row_ = row;
    col_ = col;
  }

  ByteView Take(std::size_t count) {
    if (code_.size() < count) {
      Fail(Errc::kMalformed, "The run-length code of the BMP ends in row " + std::to_string(row_) +
                                 " of " + std::to_string(header_.shape.rows) + ".");
    }
    const ByteView taken = code_.first(count);
    code_ = code_.subspan(count);
    return taken;
  }

  [[nodiscard]] bool RowsAreFull() const {
    const Shape shape = header_.shape;
    return row_ == shape.rows || (row_ == shape.rows - 1 && col_ == shape.cols);
  }

  [[nodiscard]] bool Nibbles() const { return header_.compression == BmpCompression::kRle4; }

  [[noreturn]] static void FailOutside(int row, int col) {
    Fail(Errc::kMalformed, "The run-length code of the BMP goes to row " + std::to_string(row) +
                               ", column " + std::to_string(col) + ", outside the image.");
  }

  const BmpHeader& header_;
  ByteView code_;
  Image indices_;
  int row_ = 0;  // in the order of the file; 0 to rows, both included
  int col_ = 0;  // 0 to cols, both included
  bool ended_ = false;
};

}  // namespace

Image DecodeBmpRuns(const BmpHeader& header, ByteView code) {
  return RunDecoder(header, code).Decode();
}

}  // namespace marovia
