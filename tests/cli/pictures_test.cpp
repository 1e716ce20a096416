// What curve, difference and thumbnail make.
#include "image/sampling.h"
#include "pictures/picture.h"
#include "tests/cli/tool_process.h"

namespace marovia::test {
namespace {

using Pictures = ToolTest;

Image ReadPng(const std::string& png) {
  EXPECT_TRUE(png.starts_with("\x89PNG"));
  return ReadPicture(BytesOf(png)).image;
}

TEST_F(Pictures, CurveHasTheNumbersThatSingleRunsGive) {
  folder_.Write("in.pgm", PgmText(NamedImage("blobs", 64, 80)));
  const Json json =
      Record("curve in.pgm a.svg a.tsv --coders awf,awb --wavelets 2+2,2,9/7 --rates 1,0.25");
  ASSERT_EQ(json["curves"].size(), 4U);
  for (const Json& one : json["curves"]) {
    ASSERT_EQ(one["points"].size(), 2U);
    const std::string file = "o." + one["kind"].get<std::string>();
    for (const Json& point : one["points"]) {
      Done("compress in.pgm -f " + file + " --wavelet " + one["wavelet"].get<std::string>() +
           " --rate " + point["bitsPerPixel"].dump());
      Done("decompress -f " + file + " o.pgm");
      const double psnr = Record("measure in.pgm o.pgm")["psnr"];
      EXPECT_NEAR(psnr, point["psnr"].get<double>(), 0.01) << one;
    }
  }
  const std::string table = folder_.Read("a.tsv");
  EXPECT_TRUE(table.starts_with("coder\twavelet\tbpp\tpsnr\nawf\t2+2,2\t0.25\t")) << table;
  EXPECT_EQ(LinesIn(table), 9);
  const std::string svg = folder_.Read("a.svg");
  EXPECT_TRUE(svg.starts_with("<svg ") && svg.ends_with("</svg>\n"));
  EXPECT_NE(svg.find(">awb  9/7</text>"), std::string::npos);
}

TEST_F(Pictures, DifferenceIsMidGreyWhereImagesAgree) {
  folder_.Write("a.pgm", "P2 3 1 255 100 100 100");
  folder_.Write("b.pgm", "P2 3 1 255 100 103 0");
  const Image picture = ImageIn(Done("difference a.pgm b.pgm - --gain 2.5"));
  EXPECT_EQ(picture(0, 0), 128);
  EXPECT_EQ(picture(0, 1), 136);
  EXPECT_EQ(picture(0, 2), 0);
}

TEST_F(Pictures, ThumbnailIsThePictureMadeSmaller) {
  for (const auto& [rows, cols] : {std::pair{300, 211}, {40, 1200}, {30, 20}}) {
    const Image image = NamedImage("blobs", rows, cols);
    folder_.Write("in.pgm", PgmText(image));
    Done("compress in.pgm o.awg -f");
    Done("compress in.pgm o.awf -f --rate 6");
    for (const std::string file : {"o.awf", "o.awg"}) {
      const Image small = ReadPng(Done("thumbnail " + file + " - --size 64"));
      const Image expected = ReducedToFit(image, 64);
      ASSERT_TRUE(small.SameShape(expected)) << small.Rows() << " x " << small.Cols();
      for (std::size_t i = 0; i < small.Size(); ++i)
        ASSERT_NEAR(small.Samples()[i], expected.Samples()[i], 6) << file << " of " << rows;
    }
  }
}

}  // namespace
}  // namespace marovia::test
