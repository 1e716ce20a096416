#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// The second wants the declarations of the first, and that those of stdio.
#include <jerror.h>
#include <jpeglib.h>

#include "image/raster.h"
#include "pictures/formats.h"
#include "pictures/grey_rows.h"
#include "pictures/guarded_calls.h"
#include "pictures/orientation.h"

namespace marovia {
namespace {

// A picture that comes in more layers takes longer than any camera or program has it; each is a
// walk over the whole of it.
constexpr int kMostScans = 500;
// What the library may take: the coefficients of a progressive picture and its own tables.
constexpr long kBytesPerPixel = 16;
constexpr long kTableBytes = 64L << 20;

using Message = std::array<char, JMSG_LENGTH_MAX>;

struct JpegTalk {
  jpeg_error_mgr manager{};
  jpeg_progress_mgr progress{};
  GuardedCalls calls;
  Message warning{};  // the first
  bool damaged = false;
};

JpegTalk& TalkOf(j_common_ptr jpeg) {
  return *static_cast<JpegTalk*>(jpeg->client_data);
}

[[noreturn]] void FailJpeg(j_common_ptr jpeg) {
  Message text{};
  jpeg->err->format_message(jpeg, text.data());
  TalkOf(jpeg).calls.JumpBack("JPEG", text.data());
}

// Below 0 the level is that of a warning. Data that are corrupt have made-up pixels in their place,
// unless there are just more than needed.
void WarnJpeg(j_common_ptr jpeg, int level) {
  if (level >= 0) return;
  JpegTalk& talk = TalkOf(jpeg);
  Message text{};
  jpeg->err->format_message(jpeg, text.data());
  const bool damages = jpeg->err->msg_code != JWRN_EXTRANEOUS_DATA &&
                       std::string_view(text.data()).starts_with("Corrupt JPEG data");
  if (talk.warning[0] == 0 || (damages && !talk.damaged)) talk.warning = text;
  talk.damaged = talk.damaged || damages;
}

void CountScans(j_common_ptr jpeg) {
  if (reinterpret_cast<j_decompress_ptr>(jpeg)->input_scan_number > kMostScans)
    TalkOf(jpeg).calls.JumpBack("JPEG", "The picture comes in more than 500 scans");
}

// The library's own memory, given back whatever happens.
struct JpegStruct : jpeg_decompress_struct {
  explicit JpegStruct(JpegTalk& talk) : jpeg_decompress_struct{} {
    err = jpeg_std_error(&talk.manager);
    client_data = &talk;
    talk.manager.error_exit = &FailJpeg;
    talk.manager.emit_message = &WarnJpeg;
    talk.progress.progress_monitor = &CountScans;
  }
  JpegStruct(const JpegStruct&) = delete;
  JpegStruct& operator=(const JpegStruct&) = delete;
  ~JpegStruct() { jpeg_destroy_decompress(this); }
};

class JpegReader {
 public:
  JpegReader(ByteView file, std::int64_t maxPixels);
  Picture Read();

 private:
  void Start();
  void TakeRow(std::span<std::uint16_t> samples);
  [[nodiscard]] int Orientation() const;
  void CheckDamage() const;

  JpegTalk talk_;
  JpegStruct jpeg_{talk_};
  Shape shape_;
  Bytes row_;
};

JpegReader::JpegReader(ByteView file, std::int64_t maxPixels) {
  talk_.calls.Run([&] {
    jpeg_create_decompress(&jpeg_);
    jpeg_.progress = &talk_.progress;
    jpeg_mem_src(&jpeg_, file.data(), file.size());
    constexpr unsigned kLongestMarker = 0xFFFF;
    jpeg_save_markers(&jpeg_, JPEG_APP0 + 1, kLongestMarker);
    jpeg_read_header(&jpeg_, TRUE);
  });
  shape_ = CheckedShape(jpeg_.image_height, jpeg_.image_width, maxPixels);
  jpeg_.mem->max_memory_to_use = kTableBytes + kBytesPerPixel * shape_.Pixels();
}

// Colour is decoded as what other programs show, rather than as the luma that the file holds: where
// that lies outside what can be shown, the two differ.
void JpegReader::Start() {
  if (jpeg_.num_components == 1) {
    jpeg_.out_color_space = JCS_GRAYSCALE;
  } else if (jpeg_.num_components == 4) {
    jpeg_.out_color_space = JCS_CMYK;
  } else {
    jpeg_.out_color_space = JCS_RGB;
  }
  talk_.calls.Run([this] { jpeg_start_decompress(&jpeg_); });
  row_.resize(std::size_t{jpeg_.output_width} * static_cast<std::size_t>(jpeg_.output_components));
}

// Inks are stored as what they leave of the light, so that a product of two is a component.
void MixInks(ByteView inks, std::span<std::uint16_t> colours) {
  for (std::size_t pixel = 0; pixel < inks.size() / 4; ++pixel) {
    const ByteView ink = inks.subspan(4 * pixel, 4);
    for (std::size_t i = 0; i < 3; ++i)
      colours[3 * pixel + i] = static_cast<std::uint16_t>((ink[i] * ink[3] + 127) / 255);
  }
}

void JpegReader::TakeRow(std::span<std::uint16_t> samples) {
  JSAMPROW row = row_.data();
  talk_.calls.Run([&] { jpeg_read_scanlines(&jpeg_, &row, 1); });
  CheckDamage();
  if (jpeg_.output_components == 4) {
    MixInks(row_, samples);
  } else {
    WidenSamples(row_, 8, samples);
  }
}

void JpegReader::CheckDamage() const {
  if (!talk_.damaged) return;
  Fail(Errc::kMalformed, std::string("The JPEG library says: ") + talk_.warning.data() + ".");
}

int JpegReader::Orientation() const {
  constexpr std::array<JOCTET, 6> kExif = {'E', 'x', 'i', 'f', 0, 0};
  for (auto* marker = jpeg_.marker_list; marker != nullptr; marker = marker->next) {
    const ByteView data(marker->data, marker->data_length);
    if (data.size() > kExif.size() && std::ranges::equal(data.first(kExif.size()), kExif))
      return OrientationIn(data.subspan(kExif.size()));
  }
  return 1;
}

Picture JpegReader::Read() {
  const int orientation = Orientation();
  Start();
  SampleMeaning meaning;
  meaning.colour = jpeg_.num_components > 1;
  meaning.channels = meaning.colour ? 3 : 1;
  GreyRows rows(meaning);
  Image image(shape_.rows, shape_.cols, Unfilled{});
  std::vector<std::uint16_t> samples(static_cast<std::size_t>(shape_.cols) * meaning.channels);
  for (int r = 0; r < shape_.rows; ++r) {
    TakeRow(samples);
    rows.Convert(samples, image.Row(r));
  }
  talk_.calls.Run([this] { jpeg_finish_decompress(&jpeg_); });
  Picture picture{Upright(std::move(image), orientation), rows.AlterationSoFar(), {}};
  if (talk_.warning[0] != 0)
    picture.notices.push_back(std::string("the JPEG library says: ") + talk_.warning.data());
  return picture;
}

}  // namespace

Picture ReadJpeg(ByteView file, const PictureOptions& options) {
  return JpegReader(file, options.maxPixels).Read();
}

}  // namespace marovia
