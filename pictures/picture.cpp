#include "pictures/picture.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <utility>

#include "marovia/error.h"

#include "image/formats.h"
#include "pictures/formats.h"

namespace marovia {
namespace {

struct Reader {
  std::string_view signature;
  Picture (*read)(ByteView, const PictureOptions&);
  std::string_view name;
  std::array<std::string_view, 2> extensions;
};

constexpr std::size_t kLibraryReaders = 0
#ifdef MAROVIA_PNG
                                        + 1
#endif
#ifdef MAROVIA_TIFF
                                        + 1
#endif
#ifdef MAROVIA_JPEG
                                        + 1
#endif
    ;

constexpr std::array<Reader, kLibraryReaders> kReaders = {
#ifdef MAROVIA_PNG
    Reader{kPng, &ReadPng, "PNG", {"png", ""}},
#endif
#ifdef MAROVIA_TIFF
    Reader{kTiff, &ReadTiff, "TIFF", {"tif", "tiff"}},
#endif
#ifdef MAROVIA_JPEG
    Reader{kJpeg, &ReadJpeg, "JPEG", {"jpg", "jpeg"}},
#endif
};

constexpr std::array kWriters = {
    PictureWriter{"pgm", "", &WritePgm},
    PictureWriter{"bmp", "", &WriteBmp},
#ifdef MAROVIA_PNG
    PictureWriter{"png", "", &WritePng},
#endif
#ifdef MAROVIA_TIFF
    PictureWriter{"tiff", "tif", &WriteTiff},
#endif
};

// Of the formats that need no library.
constexpr std::array<std::string_view, 5> kOwnNames = {"PBM", "PGM", "PPM", "PAM", "BMP"};
constexpr std::array<std::string_view, 7> kOwnExtensions = {"pgm", "ppm", "pbm", "pnm",
                                                            "pam", "bmp", "dib"};

}  // namespace

void CheckPage(int page, std::int64_t pages) {
  if (page >= 1 && page <= pages) return;
  Fail(Errc::kInvalidArgument, "There is no page " + std::to_string(page) + "; the file has " +
                                   std::to_string(pages) + ".");
}

Picture ReadPicture(ByteView file, const PictureOptions& options) {
  const std::string_view signature = SignatureOf(file).name;
  if (signature != kTiff) CheckPage(options.page, 1);
  for (const Reader& reader : kReaders)
    if (reader.signature == signature) return reader.read(file, options);
  if (!IsReadHere(file)) RefuseFormat(file, ReadFormatNames("and"));
  LoadedImage loaded = ReadImage(file, options.maxPixels);
  return {std::move(loaded.image), std::move(loaded.alteration), {}};
}

bool IsPicture(ByteView start) {
  const Signature signature = SignatureOf(start);
  return signature.isRead ||
         std::ranges::find(kReaders, signature.name, &Reader::signature) != kReaders.end();
}

std::string ReadFormatNames(std::string_view beforeLast) {
  std::vector<std::string_view> names(kOwnNames.begin(), kOwnNames.end());
  for (const Reader& reader : kReaders) names.push_back(reader.name);
  std::string text(names.front());
  for (std::size_t i = 1; i + 1 < names.size(); ++i) text += ", " + std::string(names[i]);
  return text + " " + std::string(beforeLast) + " " + std::string(names.back());
}

std::vector<std::string_view> ReadExtensions() {
  std::vector<std::string_view> extensions(kOwnExtensions.begin(), kOwnExtensions.end());
  for (const Reader& reader : kReaders)
    std::ranges::copy_if(reader.extensions, std::back_inserter(extensions),
                         [](std::string_view extension) { return !extension.empty(); });
  return extensions;
}

std::span<const PictureWriter> PictureWriters() {
  return kWriters;
}

}  // namespace marovia
