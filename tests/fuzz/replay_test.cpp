// The fuzzers' targets without a fuzzer, on inputs that once failed.
#include "fuzz/targets.h"
#include "tests/support/testing.h"

namespace marovia::fuzz {
namespace {

// The folder of a finding is named after its target.
TEST(Fuzzing, WhatOnceFailedDoesNoMore) {
  int count = 0;
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(MAROVIA_TEST_DATA "/findings")) {
    if (!entry.is_regular_file()) continue;
    SCOPED_TRACE(entry.path().string());
    std::ifstream file(entry.path(), std::ios::binary);
    const Bytes input{std::istreambuf_iterator<char>(file), {}};
    const auto name = entry.path().parent_path().filename().string();
    const auto target = std::ranges::find(Targets(), name, &Target::name);
    ASSERT_NE(target, Targets().end());
    EXPECT_NO_THROW(target->run(input));
    ++count;
  }
  EXPECT_GT(count, 0);
}

}  // namespace
}  // namespace marovia::fuzz
