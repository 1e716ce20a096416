#include "context/field.h"

#include <algorithm>
#include <bit>
#include <new>
#ifdef __linux__
#include <sys/mman.h>
#endif

#include "context/counters.h"

namespace marovia {
namespace {

constexpr int kBorderRows = 2;
constexpr std::ptrdiff_t kBorderCols = 32;  // on either side; neighbouring rows share one

std::size_t BytesOf(const BandField& band) {
  return static_cast<std::size_t>((band.rows + 2 * kBorderRows + 1) * band.pitch);
}

std::size_t MarksOf(const BandField& band) {
  return static_cast<std::size_t>((band.GroupRows() + 2) * band.markPitch);
}

std::size_t WordsOf(const BandField& band) {
  return static_cast<std::size_t>(band.GroupRows()) * static_cast<std::size_t>(band.blocks) *
         kGroupRows;
}

// How far a found cell raises its neighbours along the edges of its band, across them, and so on.
struct Amounts {
  std::uint8_t along, across, diagonal, twoAlong, twoAcross;
};

Amounts AmountsOf(BandKind kind) {
  const bool oriented = kind == BandKind::kRight || kind == BandKind::kLower;
  return oriented ? Amounts{12, 4, 2, 3, 1} : Amounts{5, 5, 3, 1, 1};
}

void SetRaises(BandField& band) {
  Amounts a = AmountsOf(band.kind);
  if (band.kind == BandKind::kRight) {  // its edges are vertical
    std::swap(a.along, a.across);
    std::swap(a.twoAlong, a.twoAcross);
  }
  band.nextCol = a.along;
  band.twoCols = a.twoAlong;
  band.nextRow = {a.diagonal, a.across, a.diagonal};
  band.twoRows = a.twoAcross;
}

BandField MakeBand(const ContextBand& shape, std::size_t firstWord) {
  BandField band{shape};
  band.blocks = (band.cols + kBlock - 1) / kBlock;
  band.pitch = std::ptrdiff_t{kBlock} * band.blocks + kBorderCols;
  band.markPitch = band.blocks + 2;
  band.firstWord = firstWord;
  const int used = band.cols - kBlock * (band.blocks - 1);
  band.beyondLast = used == kBlock ? 0 : ~std::uint64_t{0} << used;
  band.findPlace = Counters::FindPlace(band.kind == BandKind::kDiagonal, band.level);
  SetRaises(band);
  return band;
}

// The parts of a memory, one after another, each at a multiple of 64; of a null one only the size.
class Layout {
 public:
  explicit Layout(std::byte* memory) : memory_(memory) {}

  // `count` values, and where the one numbered `first` lies.
  template <class T>
  T* Take(std::size_t count, std::ptrdiff_t first = 0) {
    const std::size_t at = used_ + static_cast<std::size_t>(first) * sizeof(T);
    used_ += (count * sizeof(T) + 63) / 64 * 64;
    return memory_ == nullptr ? nullptr : reinterpret_cast<T*>(memory_ + at);
  }
  [[nodiscard]] std::size_t Used() const { return used_; }

 private:
  std::byte* memory_;
  std::size_t used_ = 0;
};

// Asks for large pages, which are handed out some hundred times as fast as small ones. Where little
// is asked for they cost more than they save.
void UseLargePages([[maybe_unused]] std::byte* memory, [[maybe_unused]] std::size_t size) {
#ifdef MADV_HUGEPAGE
  constexpr std::size_t kLargePage = std::size_t{1} << 21;
  constexpr std::size_t kWorthwhile = 2 * kLargePage;
  if (size < kWorthwhile) return;
  const std::size_t before = (0 - reinterpret_cast<std::uintptr_t>(memory)) % kLargePage;
  madvise(memory + before, (size - before) / kLargePage * kLargePage, MADV_HUGEPAGE);
#endif
}

}  // namespace

ZeroedMemory::ZeroedMemory(std::size_t size)
    : bytes_(std::calloc(size, 1)) {  // NOLINT(*-no-malloc): no container begins as zeros unwritten
  if (bytes_ == nullptr) throw std::bad_alloc();
  UseLargePages(Data(), size);
}

ContextField::ContextField(const ContextHeader& header, int planes) {
  for (const ContextBand& shape : ContextBands(header)) {
    bands_.push_back(MakeBand(shape, words_));
    words_ += WordsOf(bands_.back());
  }
  memory_ = ZeroedMemory(LayOut(nullptr, planes));
  LayOut(memory_.Data(), planes);
  Connect(header.levels);
  for (const BandField& band : bands_) CloseBeyond(band);
}

std::size_t ContextField::LayOut(std::byte* memory, int planes) {
  Layout layout(memory);
  for (BandField& band : bands_) {
    const std::ptrdiff_t first = kBorderRows * band.pitch + kBorderCols;
    band.score = layout.Take<std::uint8_t>(BytesOf(band), first);
    band.known = layout.Take<std::uint8_t>(BytesOf(band), first);
    band.sign = layout.Take<std::int8_t>(BytesOf(band), first);
    band.marks = layout.Take<std::uint8_t>(MarksOf(band), band.markPitch + 1);
  }
  found = layout.Take<std::uint64_t>(words_);
  old = layout.Take<std::uint64_t>(words_);
  closed = layout.Take<std::uint64_t>(words_);
  negative = layout.Take<std::uint64_t>(words_);
  planes_ = layout.Take<std::uint64_t>(words_ * static_cast<std::size_t>(planes));
  return layout.Used();
}

// The low band raises the coarsest level; within a level the diagonal band is worth most.
void ContextField::Connect(int levels) {
  if (levels == 0) return;
  BandField& low = bands_.front();
  low.same = {{{&bands_[1], 4}, {&bands_[2], 4}, {&bands_[3], 4}}};
  for (std::size_t i = 1; i < bands_.size(); i += 3) {
    BandField& right = bands_[i];
    BandField& lower = bands_[i + 1];
    BandField& diagonal = bands_[i + 2];
    right.same = {{{&lower, 2}, {&diagonal, 4}}};
    lower.same = {{{&right, 2}, {&diagonal, 4}}};
    diagonal.same = {{{&right, 6}, {&lower, 6}}};
    if (i + 3 >= bands_.size()) continue;
    for (std::size_t kind = 0; kind < 3; ++kind) bands_[i + kind].finer = &bands_[i + 3 + kind];
  }
}

void ContextField::CloseBeyond(const BandField& band) const {
  for (int r = 0; r < kGroupRows * band.GroupRows(); ++r) {
    for (int block = 0; block < band.blocks; ++block) {
      closed[band.Word(r, block)] = r < band.rows ? band.Beyond(block) : ~std::uint64_t{0};
    }
  }
}

std::int64_t ContextField::FoundCount() const {
  std::int64_t count = 0;
  for (const std::uint64_t word : std::span(found, words_)) count += std::popcount(word);
  return count;
}

}  // namespace marovia
