#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/cli/tool_process.h"
#include "tests/support/test_images.h"

namespace marovia::test {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;
using Json = nlohmann::json;

constexpr int kImages = 9;

class ManyFiles : public ::testing::Test {
 protected:
  void SetUp() override {
    std::mt19937 random(7);
    for (int i = 0; i < kImages; ++i) {
      inputs_.push_back("in" + std::to_string(i) + ".pgm");
      folder_.Write(inputs_.back(), PgmText(RandomImage(random, 20 + 7 * i, 61)));
    }
  }

  [[nodiscard]] ToolResult Run(Words words, const Words& inputs,
                               const std::string& input = "") const {
    words.insert(words.begin() + 1, inputs.begin(), inputs.end());
    return folder_.Run(words, input);
  }

  [[nodiscard]] std::set<std::string> NamesIn(const std::string& folder) const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder_.Path(folder)))
      names.insert(entry.path().filename());
    return names;
  }

  // Zero bytes between the names.
  [[nodiscard]] std::string List() const {
    std::string list;
    for (const std::string& name : inputs_) list += name + '\0';
    return list;
  }

  ScratchFolder folder_;
  Words inputs_;
};

TEST_F(ManyFiles, BecomeTheSameBytesOneByOneAndInParallel) {
  for (const char* jobs : {"1", "3"}) {
    const std::string out = std::string("out") + jobs;
    const ToolResult packed = Run({"compress", "--output-dir", out, "-j", jobs}, inputs_);
    EXPECT_EQ(packed.status, 0);
    EXPECT_EQ(packed.err, "marovia: 9 of 9 files done\n");
    for (int i = 0; i < kImages; ++i) {
      const std::string name = "in" + std::to_string(i);
      ASSERT_EQ(folder_.Run({"compress", name + ".pgm", "one.awf", "-f"}).status, 0);
      EXPECT_EQ(folder_.Read(out + "/" + name + ".awf"), folder_.Read("one.awf")) << name;
    }
  }
}

TEST_F(ManyFiles, GoOnAfterOneThatFailsAndTellWhichDid) {
  folder_.Write("bad.pgm", "junk");
  const Words inputs = {"in0.pgm", "bad.pgm", "gone.pgm", "in1.pgm"};
  const ToolResult result = Run({"compress", "--output-dir", "out", "-j", "2", "--json"}, inputs);
  EXPECT_EQ(result.status, 1);  // of failures that differ
  EXPECT_EQ(NamesIn("out"), (std::set<std::string>{"in0.awf", "in1.awf"}));
  EXPECT_EQ(std::ranges::count(result.err, '\n'), 3) << result.err;
  EXPECT_TRUE(
      result.err.ends_with("2 of 4 files done, 1 could not be read or written (exit status "
                           "4), 1 no file that is read here (exit status 5)\n"))
      << result.err;

  const std::map<std::string, int> expected = {
      {"in0.pgm", 0}, {"bad.pgm", 5}, {"gone.pgm", 4}, {"in1.pgm", 0}};
  std::istringstream lines(result.out);
  std::string line;
  std::size_t count = 0;
  for (; std::getline(lines, line); ++count) {
    const Json json = Json::parse(line);
    const auto one = expected.find(json["input"].get<std::string>());
    ASSERT_NE(one, expected.end()) << line;
    EXPECT_EQ(json["exitStatus"], one->second) << line;
    EXPECT_EQ(json.contains("error"), one->second != 0) << line;
    EXPECT_EQ(json.contains("bytes"), one->second == 0) << line;
  }
  EXPECT_EQ(count, expected.size());

  EXPECT_EQ(Run({"compress", "--output-dir", "out", "-f"}, {"in0.pgm", "bad.pgm"}).status, 5);
  EXPECT_EQ(Run({"compress", "--output-dir", "out"}, {"in0.pgm", "bad.pgm"}).status, 1);
  folder_.Write("cut.awf", folder_.Read("out/in0.awf").substr(0, 40));
  const Words packed = {"out/in1.awf", "cut.awf"};
  EXPECT_EQ(Run({"decompress", "--output-dir", "back"}, packed).status, 3);
  EXPECT_EQ(NamesIn("back").size(), 2U);
}

TEST_F(ManyFiles, AreRefusedBeforeAnythingRunsWhereTwoWouldHaveOneOutput) {
  fs::create_directory(folder_.Path("sub"));
  folder_.Write("sub/in1.pgm", folder_.Read("in1.pgm"));
  const auto before = folder_.Names();
  const ToolResult result = Run({"compress", "--output-dir", "out", "--shard", "1/9"},
                                {"in0.pgm", "in1.pgm", "sub/in1.pgm"});
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.err.find("both in1.pgm and sub/in1.pgm would be written to out/in1.awf"),
            std::string::npos)
      << result.err;
  EXPECT_EQ(folder_.Names(), before);
}

TEST_F(ManyFiles, ThatAreDoneAreSkipped) {
  const Words words = {"compress", "--output-dir", "out", "--skip-existing"};
  ASSERT_EQ(Run(words, {inputs_[0], inputs_[4]}).status, 0);
  folder_.Write("out/in4.awf", "kept");
  const ToolResult rest = Run(words, inputs_);
  EXPECT_EQ(rest.status, 0);
  EXPECT_EQ(rest.err, "marovia: 7 of 9 files done, 2 skipped\n");
  EXPECT_EQ(folder_.Read("out/in4.awf"), "kept");
  EXPECT_EQ(NamesIn("out").size(), 9U);
  EXPECT_EQ(folder_.Run({"compress", "gone.pgm", "out/in4", "--skip-existing"}).status, 0);
}

// Whatever the order in which a machine lists them.
TEST_F(ManyFiles, AreSharedByTheirNames) {
  for (const bool backwards : {false, true}) {
    for (int share = 1; share <= 3; ++share) {
      const std::string shard = std::to_string(share) + "/3";
      const std::string out = std::to_string(share) + (backwards ? "b" : "a");
      const ToolResult result = folder_.Run(
          {"compress", "--files0-from", "-", "--output-dir", out, "--shard", shard}, List());
      EXPECT_EQ(result.status, 0) << result.err;
      std::ranges::reverse(inputs_);
    }
  }
  std::set<std::string> all;
  for (const std::string share : {"1", "2", "3"}) {
    const auto names = NamesIn(share + "a");
    EXPECT_EQ(names, NamesIn(share + "b"));
    EXPECT_FALSE(names.empty());
    for (const std::string& name : names) EXPECT_TRUE(all.insert(name).second) << name;
  }
  EXPECT_EQ(all.size(), 9U);
}

TEST_F(ManyFiles, EndInGoodOrderWhereNobodyReadsTheResults) {
  const Words words = {"compress", "in0.pgm", "in1.pgm", "--output-dir", "out", "--json"};
  const ToolResult result = folder_.RunInto("/dev/full", words);
  EXPECT_EQ(result.status, 4);
  EXPECT_EQ(std::ranges::count(result.err, '\n'), 1) << result.err;
  EXPECT_NE(result.err.find("standard output"), std::string::npos) << result.err;
  EXPECT_EQ(NamesIn("out"), std::set<std::string>{"in0.awf"});
}

}  // namespace
}  // namespace marovia::test
