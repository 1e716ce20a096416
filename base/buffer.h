// An array whose values are whatever memory held, for those that are all written before they are
// read.
#pragma once

#include <cstddef>
#include <memory>
#include <span>

namespace marovia {

template <class T>
class Buffer {
 public:
  Buffer() = default;
  explicit Buffer(std::size_t size)
      : size_(size), values_(std::make_unique_for_overwrite<T[]>(size)) {}

  [[nodiscard]] std::size_t Size() const { return size_; }
  T* Data() { return values_.get(); }
  [[nodiscard]] const T* Data() const { return values_.get(); }
  T& operator[](std::size_t i) { return values_[i]; }
  const T& operator[](std::size_t i) const { return values_[i]; }
  [[nodiscard]] std::span<const T> Values() const { return {values_.get(), size_}; }

 private:
  std::size_t size_ = 0;
  std::unique_ptr<T[]> values_;
};

}  // namespace marovia
