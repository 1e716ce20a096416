#include "marovia/image.h"

#include <string>

#include "marovia/error.h"

#include "image/bmp_reader.h"
#include "image/pnm_reader.h"
#include "image/raster.h"
#include "image/signatures.h"

namespace marovia {
namespace {

constexpr const char* kWhatIsRead = "PGM, PPM and BMP are read";

}  // namespace

LoadedImage ReadImage(ByteView file, std::int64_t maxPixels) {
  if (file.empty()) Fail(Errc::kMalformed, "The file is empty.");
  const Signature signature = SignatureOf(file);
  if (signature.IsKnown() && !signature.isRead)
    Fail(Errc::kUnsupported,
         "The file is " + std::string(signature.name) + "; " + kWhatIsRead + ".");
  if (file[0] == 'P') return ReadPnm(file, maxPixels);
  if (file[0] == 'B' && file.size() > 1 && file[1] == 'M') return ReadBmp(file, maxPixels);
  Fail(Errc::kMalformed,
       std::string("The file is no image that is known here; ") + kWhatIsRead + ".");
}

Bytes WritePgm(const Image& image) {
  return PgmFile(image.Cols(), image.Rows(), image);
}

}  // namespace marovia
