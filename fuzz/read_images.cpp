#include "marovia/error.h"

#include "fuzz/targets.h"
#include "image/form_pgm.h"

namespace marovia::fuzz {
namespace {

constexpr std::int64_t kMostPixels = 1024;

void CheckWriters(const Image& image) {
  Promise(image.Size() <= static_cast<std::size_t>(kMostPixels), "The limit holds.");
  Promise(ReadImage(WritePgm(image)).image == image, "A PGM written comes back.");
  Promise(ReadImage(WriteBmp(image)).image == image, "A BMP written comes back.");
  if (image.Rows() != image.Cols()) return;
  Promise(ReadFormPgm(WriteFormPgm(image)) == image, "A square PGM of the form comes back.");
}

}  // namespace

void ReadImages(ByteView input) {
  try {
    CheckWriters(ReadImage(input, kMostPixels).image);
  } catch (const Error&) {
    // Refused; the form may still read it.
  }
  try {
    CheckWriters(ReadFormPgm(input, kMostPixels));
  } catch (const Error&) {
    return;
  }
}

}  // namespace marovia::fuzz
