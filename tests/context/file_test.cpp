// What a context-coded file may not be, and what is told of one while it is coded.
#include "context/context_codec.h"
#include "tests/support/testing.h"

namespace marovia {
namespace {

std::optional<Errc> ErrorOf(auto action) {
  try {
    action();
  } catch (const Error& error) {
    return error.Code();
  }
  return {};
}

TEST(ContextFile, HeadersThatNoWriterMakesAreRefused) {
  const Bytes good = EncodeContext(test::NamedImage("blobs", 64, 40));
  struct Change {
    std::size_t at;
    int value;
    std::optional<Errc> error;
  };
  constexpr Errc kBad = Errc::kMalformed;
  const Change changes[] = {{0, 'A', kBad},   {3, 0, kBad},  {4, 2, kBad},  {5, 0, kBad},
                            {5, 4, kBad},     {6, 4, kBad},  {6, 3, {}},    {7, 27, kBad},
                            {7, 26, {}},      {8, 0, kBad},  {10, 7, kBad}, {15, 4, kBad},
                            {15, 0xFB, kBad}, {15, 0xFC, {}}};
  for (const Change& change : changes) {
    Bytes file = good;
    file[change.at] = static_cast<std::uint8_t>(change.value);
    EXPECT_EQ(ErrorOf([&] { DecodeContext(file); }), change.error)
        << "byte " << change.at << " = " << change.value;
  }
  EXPECT_EQ(ErrorOf([&] { DecodeContext(ByteView(good).first(15)); }), kBad);
  EXPECT_EQ(ErrorOf([&] { DecodeContext(good, {.maxPixels = 64 * 40 - 1}); }), Errc::kLimit);
}

TEST(ContextFile, ChoicesThatMakeNoSenseAreRefused) {
  const Image image = test::NamedImage("blobs", 20, 30);
  const ContextOptions refused[] = {{.levels = -1},
                                    {.bytes = 15},
                                    {.bytes = -1},
                                    {.region = Region{0, 0, 20, 5}},
                                    {.region = Region{0, 0, 5, 5}, .share = 1.5F}};
  for (const ContextOptions& options : refused) {
    EXPECT_EQ(ErrorOf([&] { EncodeContext(image, options); }), Errc::kInvalidArgument);
  }
  EXPECT_EQ(ErrorOf([] { EncodeContext(Image()); }), Errc::kInvalidArgument);
  EXPECT_EQ(ErrorOf([] { EncodeContext(Image(65536, 1)); }), Errc::kLimit);
  EXPECT_EQ(ErrorOf([] { EncodeContext(Image(8193, 8192)); }), Errc::kLimit);
}

TEST(ContextFile, BothDirectionsReportTheSamePlanes) {
  std::vector<PlaneReport> written;
  std::vector<PlaneReport> read;
  const Bytes file = EncodeContext(test::NamedImage("blobs", 64, 40),
                                   {.onPlane = [&](auto& report) { written.push_back(report); }});
  const auto picture =
      DecodeContext(file, {.onPlane = [&](auto& report) { read.push_back(report); }});
  ASSERT_EQ(written.size(), static_cast<std::size_t>(picture.header.planes));
  ASSERT_EQ(read.size(), written.size());
  for (std::size_t i = 0; i < read.size(); ++i) {
    EXPECT_EQ(read[i].plane, picture.header.planes - 1 - static_cast<int>(i));
    EXPECT_EQ(read[i].found, written[i].found);
    EXPECT_LE(written[i].bytes, read[i].bytes);  // a reader is ahead by what its code holds
    EXPECT_LE(read[i].bytes, static_cast<std::int64_t>(file.size()));
  }
}

}  // namespace
}  // namespace marovia
