// What the views of pictures need: where a picture stands on the screen, and the lines over it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "marovia/image.h"

#include "app/control_kinds.h"
#include "image/sampling.h"

namespace marovia {

// In the middle at the largest whole factor that fits, so that nothing is blurred and every screen
// pixel belongs to one coordinate, 1 to 256. What is left of them or above is coordinate 0, which
// no pixel of the picture shows, but by which a region reaches the first row and column of the
// image.
struct PicturePlace {
  // In a room whose units are `ratio` pixels wide, with a rim kept free: the focus frame, and what
  // of an outline at the edge lies outside. Less than a factor of 1 is cut off.
  static PicturePlace In(int width, int height, double ratio);
  // The side of a room for the factor nearest to the ratio, and of the smallest, for a factor of 1.
  static int GoodRoom(double ratio);
  static int LeastRoom(double ratio);

  // Of a pixel of the screen; outside the picture, the nearest from 0 to 256.
  [[nodiscard]] PicturePoint CoordinateAt(double x, double y) const;

  int left = 0;
  int top = 0;
  int factor = 1;
};

// A rectangle to fill, in the picture's coordinates.
struct PictureMark {
  int row = 0;
  int col = 0;
  int rows = 0;
  int cols = 0;
  std::uint32_t argb = 0;  // opacity, red, green and blue, the highest byte first
};

// In the order in which they are painted: bright lines of one coordinate over dark ones of three
// are seen on any ground.
std::vector<PictureMark> MarksOver(const PictureBox& picture);

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
  [[nodiscard]] const std::shared_ptr<const T>& Shared() const { return value_; }

 private:
  std::shared_ptr<const T> value_;
};

// Columns by rows: "512 x 384".
std::string SizeText(const Image& image);

}  // namespace marovia
