#include "tests/cli/tool_process.h"

namespace marovia::test {
namespace {

class ManyFiles : public ToolTest {
 protected:
  void SetUp() override {
    std::mt19937 random(7);
    for (int i = 0; i < 9; ++i)
      folder_.Write("in" + std::to_string(i) + ".pgm",
                    PgmText(RandomImage(random, 20 + 7 * i, 61)));
  }

  [[nodiscard]] ToolResult Compress(const std::string& words) const {
    return Run("compress --output-dir out " + words);
  }
};

TEST_F(ManyFiles, BecomeTheSameBytesOneByOneAndInParallel) {
  for (const std::string jobs : {"1", "3"}) {
    const ToolResult packed = Compress("-f -j " + jobs + " in?.pgm");
    EXPECT_EQ(packed.status, 0);
    EXPECT_EQ(packed.err, "marovia: 9 of 9 files done\n");
    for (const std::string& name : folder_.Names("out")) {
      Done("compress -f " + name.substr(0, 3) + ".pgm one.awh");
      EXPECT_EQ(folder_.Read("out/" + name), folder_.Read("one.awh"));
    }
  }
}

TEST_F(ManyFiles, GoOnAfterOneThatFailsAndTellWhichDid) {
  folder_.Write("bad.pgm", "junk");
  const ToolResult result = Compress("in0.pgm bad.pgm gone.pgm in1.pgm -j 2 --json");
  EXPECT_EQ(result.status, 1);  // of failures that differ
  EXPECT_EQ(folder_.Names("out"), (Words{"in0.awh", "in1.awh"}));
  EXPECT_EQ(LinesIn(result.err), 3) << result.err;
  EXPECT_TRUE(
      result.err.ends_with("2 of 4 files done, 1 could not be read or written (exit status "
                           "4), 1 no file that is read here (exit status 5)\n"))
      << result.err;

  Json statuses;
  std::istringstream lines(result.out);
  for (std::string line; std::getline(lines, line);) {
    const Json json = Json::parse(line);
    statuses[json["input"]] = json["exitStatus"];
    EXPECT_EQ(json.contains("error"), json["exitStatus"] != 0) << line;
    EXPECT_EQ(json.contains("bytes"), json["exitStatus"] == 0) << line;
  }
  EXPECT_EQ(statuses, (Json{{"in0.pgm", 0}, {"bad.pgm", 5}, {"gone.pgm", 4}, {"in1.pgm", 0}}));

  EXPECT_EQ(Compress("in0.pgm bad.pgm -f").status, 5);
  EXPECT_EQ(Compress("in0.pgm bad.pgm").status, 1);
  Done("compress in0.pgm cut.awf");
  folder_.Write("cut.awf", folder_.Read("cut.awf").substr(0, 40));
  EXPECT_EQ(Run("decompress --output-dir back out/in1.awh cut.awf").status, 3);
  EXPECT_EQ(folder_.Names("back").size(), 2U);
}

TEST_F(ManyFiles, AreRefusedBeforeAnythingRunsWhereTwoWouldHaveOneOutput) {
  fs::create_directory(folder_.Path("sub"));
  folder_.Write("sub/in1.pgm", folder_.Read("in1.pgm"));
  const ToolResult result = Compress("in0.pgm in1.pgm sub/in1.pgm --shard 1/9");
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.err.find("both in1.pgm and sub/in1.pgm would be written to out/in1.awh"),
            std::string::npos)
      << result.err;
  EXPECT_FALSE(fs::exists(folder_.Path("out")));
}

TEST_F(ManyFiles, ThatAreDoneAreSkipped) {
  ASSERT_EQ(Compress("in0.pgm in4.pgm").status, 0);
  folder_.Write("out/in4.awh", "kept");
  EXPECT_EQ(Compress("in?.pgm --skip-existing").err, "marovia: 7 of 9 files done, 2 skipped\n");
  EXPECT_EQ(folder_.Read("out/in4.awh"), "kept");
  EXPECT_EQ(folder_.Names("out").size(), 9U);
  Done("compress gone.pgm out/in4 --skip-existing");
}

// Whatever the order in which a machine lists them.
TEST_F(ManyFiles, AreSharedByTheirNames) {
  Words inputs = folder_.Names();
  Words all;
  for (const std::string share : {"1", "2", "3"}) {
    for (const std::string& out : {share + "a", share + "b"}) {
      std::string list;
      for (const std::string& name : inputs) list += name + '\0';
      Done("compress --files0-from - --output-dir " + out + " --shard " + share + "/3", list);
      std::ranges::reverse(inputs);
    }
    const Words names = folder_.Names(share + "a");
    EXPECT_EQ(names, folder_.Names(share + "b"));
    EXPECT_FALSE(names.empty());
    all.insert(all.end(), names.begin(), names.end());
  }
  std::ranges::sort(all);
  EXPECT_TRUE(std::ranges::adjacent_find(all) == all.end() && all.size() == 9);
}

TEST_F(ManyFiles, EndInGoodOrderWhereNobodyReadsTheResults) {
  const ToolResult result =
      Run("compress in0.pgm in1.pgm --output-dir out --json", "", "/dev/full");
  EXPECT_EQ(result.status, 4);
  EXPECT_EQ(LinesIn(result.err), 1) << result.err;
  EXPECT_NE(result.err.find("standard output"), std::string::npos) << result.err;
  EXPECT_EQ(folder_.Names("out"), Words{"in0.awh"});
}

}  // namespace
}  // namespace marovia::test
