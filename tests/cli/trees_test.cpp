// Folders of folders, and what of them is done again.
#include "tests/cli/tool_process.h"

namespace marovia::test {
namespace {

// Files of one name in several folders, with names that a shell or a terminal minds.
class Trees : public ToolTest {
 protected:
  void SetUp() override {
    for (const char* folder : {"a b", "c/d", "new\nline", "\xff\xfe"}) {
      fs::create_directories(folder_.Path("in") + "/" + folder);
      folder_.Write(std::string("in/") + folder + "/x y.pgm",
                    PgmText(NamedImage("blobs", 24 + static_cast<int>(files_.size()), 33)));
      files_.push_back(std::string(folder) + "/x y");
    }
    folder_.Write("in/c/x y", folder_.Read("in/c/d/x y.pgm"));  // by content
    files_.emplace_back("c/x y");
    folder_.Write("in/notes.txt", "nothing to see");
    std::ranges::sort(files_);
  }

  // Without their extensions.
  [[nodiscard]] Words FilesBelow(const std::string& folder) const {
    Words files;
    for (const auto& entry : fs::recursive_directory_iterator(folder_.Path(folder)))
      if (entry.is_regular_file())
        files.push_back(fs::relative(entry.path(), folder_.Path(folder)).replace_extension());
    std::ranges::sort(files);
    return files;
  }

  Words files_;
};

TEST_F(Trees, GoThereAndBackWithTheirFolders) {
  Done("compress -r in --output-dir packed --mirror in/ --lossless -j auto");
  EXPECT_EQ(FilesBelow("packed"), files_);
  Done("truncate -r packed --output-dir packed/small --mirror packed --rate 1");
  EXPECT_EQ(FilesBelow("packed/small"), files_);
  Done("thumbnail -r packed/small --output-dir icons --mirror packed/small");
  EXPECT_EQ(FilesBelow("icons"), files_);
  fs::remove_all(folder_.Path("packed/small"));
  Done("decompress -r packed --output-dir back --mirror packed --format png");
  EXPECT_EQ(FilesBelow("back"), files_);

  const std::string measures = Done("measure -r in --against back --mirror in -q");
  EXPECT_EQ(LinesIn(measures), 4 * std::ssize(files_)) << measures;
  std::istringstream lines(measures);
  for (std::string line; std::getline(lines, line);)
    EXPECT_TRUE(!line.starts_with("PSNR") || line.ends_with("identical")) << line;
  EXPECT_EQ(LinesIn(Done("info -r packed --json")), std::ssize(files_));
}

TEST_F(Trees, AreRefusedBeforeAnythingRunsWhereAFileHasNoPlaceOfItsOwn) {
  const std::pair<std::string, std::string> cases[] = {
      {"compress -r in --output-dir out", ", and 3 more likewise; nothing was done"},
      {"compress -r in --output-dir out --mirror in/c", "not lie below in/c"},
      {"decompress -r in --output-dir out", "no file that is read here"}};
  for (const auto& [words, said] : cases) {
    const ToolResult result = Run(words);
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.err.find(said), std::string::npos) << result.err;
    EXPECT_FALSE(fs::exists(folder_.Path("out")));
  }
}

TEST_F(Trees, AreUpdatedWhereAnInputIsNewer) {
  const auto update = [&] {
    return Run("compress -r in --output-dir out --mirror in --update").err;
  };
  EXPECT_EQ(update(), "marovia: 5 of 5 files done\n");
  EXPECT_EQ(update(), "marovia: 0 of 5 files done, 5 skipped\n");
  const std::string output = folder_.Path("out/a b/x y.awh");
  fs::last_write_time(
      output, fs::last_write_time(folder_.Path("in/a b/x y.pgm")) - std::chrono::seconds(1));
  EXPECT_EQ(update(), "marovia: 1 of 5 files done, 4 skipped\n");
}

TEST_F(Trees, AreMeasuredAsFarAsEachHasItsLike) {
  fs::create_directory(folder_.Path("other"));
  for (const char* name :
       {"one.pgm", "two.pgm", "three.pgm", "other/one.bmp", "other/two.pgm", "other/two.png"})
    folder_.Write(name, "P2 1 1 255 7");
  const ToolResult result = Run("measure one.pgm two.pgm three.pgm --against other");
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.out.starts_with("one.pgm\nSup-norm error:  0\n")) << result.out;
  EXPECT_NE(result.err.find("two.pgm: both other/two.pgm and other/two.png"), std::string::npos);
  EXPECT_NE(result.err.find("three.pgm: there is no image other/three.*"), std::string::npos);
}

}  // namespace
}  // namespace marovia::test
