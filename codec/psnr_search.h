// How much of a file is good enough.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "marovia/image.h"

namespace marovia {

// The PSNR of a picture against its image; infinite where they are the same.
double PsnrOfPicture(const Image& image, const Image& picture);

// The least number of bytes between `least` and `most` at which a file is of `psnr` decibels or
// more, as far as more bytes mean more of them; none where `most` is not enough.
std::optional<std::int64_t> LeastBytesForPsnr(
    double psnr, std::int64_t least, std::int64_t most,
    const std::function<double(std::int64_t bytes)>& psnrOf);

// Error kInvalidArgument, which names the best that there is.
[[noreturn]] void FailOutOfReach(double psnr, double best);

}  // namespace marovia
