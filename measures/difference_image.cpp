#include <algorithm>
#include <cmath>

#include "marovia/error.h"
#include "marovia/measures.h"

namespace marovia {

Image DifferenceImage(const Image& source, const Image& reconstruction, double gain) {
  constexpr double kNoDifference = 128;
  if (!source.SameShape(reconstruction)) Fail(Errc::kIndex, "The images differ in shape.");
  Image picture(source.Rows(), source.Cols());
  std::ranges::transform(
      source.Samples(), reconstruction.Samples(), picture.Samples().begin(), [&](int from, int to) {
        return static_cast<std::uint8_t>(
            std::clamp(std::round(kNoDifference + gain * (to - from)), 0.0, 255.0));
      });
  return picture;
}

}  // namespace marovia
