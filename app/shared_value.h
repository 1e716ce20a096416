#pragma once

#include <memory>
#include <utility>

namespace marovia {

// A value that is replaced whole and never changed in place, so that a copy costs nothing. The form
// keeps its images so: an action that fails can be taken back by copies made before it.
template <class T>
class SharedValue {
 public:
  SharedValue() : value_(std::make_shared<const T>()) {}
  // NOLINTNEXTLINE(google-explicit-constructor, hicpp-explicit-conversions): assigned like a T
  SharedValue(T value) : value_(std::make_shared<const T>(std::move(value))) {}

  const T& operator*() const { return *value_; }
  const T* operator->() const { return value_.get(); }

 private:
  std::shared_ptr<const T> value_;
};

}  // namespace marovia
