// A two-dimensional array of values, rows one after another.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <span>
#include <utility>
#include <vector>

#include "marovia/export.h"

namespace marovia {

// Asks for values that are whatever memory held, to be written before they are read.
struct Unfilled {};

// Memory for a large array, of large pages where the system has them: what is asked for in all
// corners of it then costs far fewer misses, and its pages far less to come by.
MAROVIA_API void* AllocateBuffer(std::size_t bytes);
MAROVIA_API void FreeBuffer(void* memory, std::size_t bytes) noexcept;

// Leaves a value as it is where a vector is not told what to fill it with.
// NOLINTBEGIN(readability-identifier-naming): the names are those that a vector looks for.
template <class T>
struct UnfilledAllocator : std::allocator<T> {
  template <class U>
  struct rebind {
    using other = UnfilledAllocator<U>;
  };
  T* allocate(std::size_t count) { return static_cast<T*>(AllocateBuffer(count * sizeof(T))); }
  void deallocate(T* values, std::size_t count) { FreeBuffer(values, count * sizeof(T)); }
  void construct(T* value) { ::new (value) T; }
  void construct(T* value, const T& fill) { std::construct_at(value, fill); }
};
// NOLINTEND(readability-identifier-naming)

// An array whose values are all written before they are read.
template <class T>
using Buffer = std::vector<T, UnfilledAllocator<T>>;

// Rows() x Cols() values; (r, c) is row r from the top, column c from the left, both from 0. The
// samples lie row by row without gaps. Positions are not checked, sizes are never negative.
template <class T>
class Grid {
 public:
  Grid() = default;
  Grid(int rows, int cols, T fill = T{})
      : rows_(rows),
        cols_(cols),
        samples_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols), fill) {}
  Grid(int rows, int cols, Unfilled)
      : rows_(rows),
        cols_(cols),
        samples_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols)) {}

  [[nodiscard]] int Rows() const { return rows_; }
  [[nodiscard]] int Cols() const { return cols_; }
  [[nodiscard]] std::size_t Size() const { return samples_.size(); }
  [[nodiscard]] bool Empty() const { return samples_.empty(); }

  T& operator()(int r, int c) { return samples_[Index(r, c)]; }
  const T& operator()(int r, int c) const { return samples_[Index(r, c)]; }

  std::span<T> Row(int r) { return std::span(samples_).subspan(Index(r, 0), Width()); }
  [[nodiscard]] std::span<const T> Row(int r) const {
    return std::span(samples_).subspan(Index(r, 0), Width());
  }
  std::span<T> Samples() { return samples_; }
  [[nodiscard]] std::span<const T> Samples() const { return samples_; }

  [[nodiscard]] bool SameShape(const auto& other) const {
    return rows_ == other.Rows() && cols_ == other.Cols();
  }

  friend bool operator==(const Grid&, const Grid&) = default;

 private:
  [[nodiscard]] std::size_t Width() const { return static_cast<std::size_t>(cols_); }
  [[nodiscard]] std::size_t Index(int r, int c) const {
    return static_cast<std::size_t>(r) * Width() + static_cast<std::size_t>(c);
  }

  int rows_ = 0;
  int cols_ = 0;
  Buffer<T> samples_;
};

}  // namespace marovia
