#include "marovia/image.h"

#include "marovia/error.h"

#include "image/bmp_reader.h"
#include "image/pnm_reader.h"
#include "image/raster.h"

namespace marovia {

LoadedImage ReadImage(ByteView file, std::int64_t maxPixels) {
  if (file.empty()) Fail(Errc::kMalformed, "The file is empty.");
  if (file[0] == 'P') return ReadPnm(file, maxPixels);
  if (file[0] == 'B' && file.size() > 1 && file[1] == 'M') return ReadBmp(file, maxPixels);
  Fail(Errc::kMalformed, "The file is neither a PGM nor a BMP: it begins with neither P nor BM.");
}

Bytes WritePgm(const Image& image) {
  return PgmFile(image.Cols(), image.Rows(), image);
}

}  // namespace marovia
