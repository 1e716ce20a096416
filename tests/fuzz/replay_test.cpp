// The fuzzers' targets without a fuzzer: on inputs that once failed, and on damaged good ones.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <string>

#include "fuzz/seeds.h"
#include "fuzz/targets.h"
#include "tests/support/test_images.h"

namespace marovia::fuzz {
namespace {

using test::RandomBelow;

Target TargetOf(const std::string& name) {
  for (const NamedTarget& target : Targets()) {
    if (target.name == name) return target.run;
  }
  throw std::invalid_argument("there is no target " + name);
}

// The folder of a finding is named after its target.
TEST(Fuzzing, WhatOnceFailedDoesNoMore) {
  const std::string folder = std::string(MAROVIA_TEST_DATA) + "/findings";
  int count = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    SCOPED_TRACE(entry.path().string());
    std::ifstream file(entry.path(), std::ios::binary);
    const Bytes input{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NO_THROW(TargetOf(entry.path().parent_path().filename().string())(input));
    ++count;
  }
  EXPECT_GT(count, 0);
}

// Some bits flipped, a piece moved over another, or the end cut off; headers are hit most.
void Mutate(Bytes& input, std::mt19937& random) {
  for (int i = RandomBelow(random, 4); i >= 0 && !input.empty(); --i) {
    const int size = static_cast<int>(input.size());
    const int at = RandomBelow(random, RandomBelow(random, 2) == 0 ? std::min(size, 24) : size);
    auto& byte = input[static_cast<std::size_t>(at)];
    switch (RandomBelow(random, 8)) {
      case 0:
        input.resize(static_cast<std::size_t>(RandomBelow(random, size)));
        break;
      case 1:
        byte = static_cast<std::uint8_t>(RandomBelow(random, 256));
        break;
      case 2:
        std::copy(input.end() - RandomBelow(random, size - at + 1), input.end(),
                  input.begin() + at);
        break;
      default:
        byte ^= static_cast<std::uint8_t>(1 << RandomBelow(random, 8));
    }
  }
}

TEST(Fuzzing, DamagedInputsBreakNoPromise) {
  constexpr std::uint32_t kMutations = 12;
  for (const Seed& seed : MakeSeeds(MAROVIA_TEST_DATA)) {
    const Target target = TargetOf(seed.target);
    for (std::uint32_t i = 0; i <= kMutations; ++i) {
      SCOPED_TRACE(seed.target + "/" + seed.name + ", mutation " + std::to_string(i));
      std::mt19937 random(i);
      Bytes input = seed.input;
      if (i > 0) Mutate(input, random);
      EXPECT_NO_THROW(target(input));
      if (testing::Test::HasFailure()) return;
    }
  }
}

}  // namespace
}  // namespace marovia::fuzz
