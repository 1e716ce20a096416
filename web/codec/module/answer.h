// What a call gives back, laid out for a host that sees memory and numbers only.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <memory>
#include <utility>

#include "marovia/image.h"

namespace marovia::web {

// What a number says that is not there.
inline double OrNone(const auto& value) {
  return value ? static_cast<double>(*value) : std::numeric_limits<double>::quiet_NaN();
}

// At the answer's address: the address of the bytes and their number, then what each call lists
// beside itself; all doubles.
class Answer {
 public:
  static constexpr std::size_t kMostNumbers = 16;

  Answer(Bytes bytes, std::initializer_list<double> numbers) : bytes_(std::move(bytes)) {
    Tell(bytes_, numbers);
  }
  Answer(std::shared_ptr<const Image> image, std::initializer_list<double> numbers)
      : image_(std::move(image)) {
    Tell(image_->Samples(), numbers);
  }

 private:
  void Tell(ByteView data, std::initializer_list<double> numbers) {
    values_[0] = static_cast<double>(reinterpret_cast<std::uintptr_t>(data.data()));
    values_[1] = static_cast<double>(data.size());
    std::ranges::copy(numbers, values_.begin() + 2);
  }

  std::array<double, kMostNumbers> values_{};
  Bytes bytes_;
  std::shared_ptr<const Image> image_;
};

// The host's from then on; it gives it back by `forget`.
template <class Data>
const Answer* Give(Data data, std::initializer_list<double> numbers) {
  if constexpr (std::is_same_v<Data, Image>)
    return new Answer(std::make_shared<const Image>(std::move(data)), numbers);
  else
    return new Answer(std::move(data), numbers);
}

}  // namespace marovia::web
