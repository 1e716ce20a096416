// The readers and writers over libraries; which of them there are, the build decides.
#pragma once

#include "pictures/picture.h"

namespace marovia {

// Error kInvalidArgument where the file has no such page.
void CheckPage(int page, std::int64_t pages);

Picture ReadPng(ByteView file, const PictureOptions& options);
Picture ReadTiff(ByteView file, const PictureOptions& options);
Picture ReadJpeg(ByteView file, const PictureOptions& options);

// 8-bit grey; a TIFF in strips that are coded by LZW, which every reader knows.
Bytes WritePng(const Image& image);
Bytes WriteTiff(const Image& image);

}  // namespace marovia
