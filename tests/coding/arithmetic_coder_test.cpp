// The arithmetic coder against the one that moves its interval bit by bit.
#include "coding/arithmetic_coder.h"

#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "tests/support/plain_symbols.h"
#include "tests/support/test_images.h"

namespace marovia {
namespace {

using test::RandomBelow;

template <class Setup>
class ArithmeticCoder : public testing::Test {};
using Setups = testing::Types<FirstSetup, SecondSetup>;
TYPED_TEST_SUITE(ArithmeticCoder, Setups);

// Contexts 1 to 3 have three characters; 4 and 5, in the second set-up alone, are pairs of contexts
// of two characters.
template <class Setup>
constexpr int kContexts = Setup::kHasEnd ? 3 : 5;

struct Symbol {
  int context;
  int character;
};

int CharactersOf(int context) {
  return context <= 3 ? 3 : 2;
}

template <class Setup>
struct Contexts {
  // Calls act(context) on the context of a number from 1.
  auto With(int number, auto act) {
    return number <= 3 ? act(ternary[static_cast<std::size_t>(number - 1)])
                       : act(pairs[static_cast<std::size_t>(number - 4)]);
  }

  std::array<TernaryContext<Setup>, 3> ternary;
  std::array<BinaryContexts, 2> pairs;
};

// The other coder, and what chooses the context of a pair: numbered from 4 on, and from 6 on.
template <class Setup>
struct PlainCoder {
  explicit PlainCoder(const plain::Bits& bits)
      : coder(Setup::kHasEnd ? plain::Coding::kWdr : plain::Coding::kAswdr, bits) {}

  int Code(const Symbol& symbol) {
    if (symbol.context <= 3) return coder.Code(symbol.context, symbol.character);
    int& before = last[static_cast<std::size_t>(symbol.context - 4)];
    return before = coder.Code(2 * symbol.context - 4 + before, symbol.character);
  }

  plain::Arithmetic coder;
  std::array<int, 2> last{};
};

// Both coders agree on every count of bits on the way, on the bytes, and on what these say.
template <class Setup>
void CodeAlike(const std::vector<Symbol>& symbols) {
  PlainCoder<Setup> plain({});
  Bytes bytes;
  ArithmeticEncoder<Setup> encoder(bytes);
  Contexts<Setup> contexts;
  for (const Symbol& symbol : symbols) {
    plain.Code(symbol);
    contexts.With(symbol.context, [&](auto& context) {
      encoder.Encode(context, static_cast<unsigned>(symbol.character));
    });
    ASSERT_EQ(encoder.BitsSent(), plain.coder.bits.count);
    ASSERT_EQ(encoder.BitsToFollow(), plain.coder.bitsToFollow);
  }
  if constexpr (Setup::kHasEnd) {
    const int last = symbols.empty() ? 1 : symbols.back().context;
    encoder.EncodePart(contexts.ternary[static_cast<std::size_t>(last - 1)].PartOfEnd());
  }
  plain.coder.Done();
  encoder.DoneEncoding();
  ASSERT_EQ(bytes, plain.coder.bits.written);

  PlainCoder<Setup> plainReader({0, bytes});
  ArithmeticDecoder<Setup> decoder(bytes);
  Contexts<Setup> read;
  for (const Symbol& symbol : symbols) {
    ASSERT_EQ(plainReader.Code({symbol.context, 0}), symbol.character);
    const auto decode = [&](auto& context) { return decoder.Decode(context); };
    ASSERT_EQ(read.With(symbol.context, decode), static_cast<unsigned>(symbol.character));
    ASSERT_EQ(decoder.BitsRead(), plainReader.coder.bits.count);
  }
}

// One character is up to 60 times as frequent as the others, a different one each 500 symbols:
// counts grow apart, draw level again and are halved.
TYPED_TEST(ArithmeticCoder, AgreesWithThePlainOneAfterEverySymbol) {
  std::mt19937 random(5);
  for (int round = 0; round < 60 && !this->HasFailure(); ++round) {
    SCOPED_TRACE(round);
    std::vector<Symbol> symbols;
    const int skew = 1 << RandomBelow(random, 7);
    for (int i = RandomBelow(random, 3000); i > 0; --i) {
      const int context = 1 + RandomBelow(random, kContexts<TypeParam>);
      const int usual = i / 500 % CharactersOf(context);
      symbols.push_back({context, RandomBelow(random, skew) != 0
                                      ? usual
                                      : RandomBelow(random, CharactersOf(context))});
    }
    CodeAlike<TypeParam>(symbols);
  }
}

// Each context is driven past its ceiling twice, with many patterns of equal and unequal counts.
TYPED_TEST(ArithmeticCoder, HalvesTheCountsWhereThePlainOneDoes) {
  for (int context = 1; context <= kContexts<TypeParam>; ++context) {
    for (int period = 1; period < 8; ++period) {
      std::vector<Symbol> symbols;
      for (int i = 0; i < 1100; ++i)
        symbols.push_back({context, i / period % CharactersOf(context)});
      CodeAlike<TypeParam>(symbols);
    }
  }
}

// At each symbol the character is taken that leaves the most bits to follow, until they fill many
// bytes; then the run is ended by a carry, without one, or by the end of the stream.
TYPED_TEST(ArithmeticCoder, DecidesRunsOfBitsToFollowOfAnyLength) {
  PlainCoder<TypeParam> plain({});
  std::vector<Symbol> symbols;
  for (int endings = 0; endings < 40;) {
    const int context = 1 + static_cast<int>(symbols.size()) % kContexts<TypeParam>;
    Symbol best{context, 0};
    auto after = plain;
    after.Code(best);
    for (int character = 1; character < CharactersOf(context); ++character) {
      auto tried = plain;
      tried.Code({context, character});
      if (tried.coder.bitsToFollow <= after.coder.bitsToFollow) continue;
      after = tried;
      best.character = character;
    }
    symbols.push_back(best);
    plain = after;
    ASSERT_LT(symbols.size(), 3000U);
    if (plain.coder.bitsToFollow < 60) continue;
    ++endings;
    for (int last = 0; last < 3; ++last) {
      auto ended = symbols;
      ended.insert(ended.end(), 12, {1, last});
      CodeAlike<TypeParam>(ended);
    }
  }
}

template <int Bits>
int PlainWidening(std::uint32_t low, std::uint32_t high) {
  constexpr std::uint32_t kQuarter = 1U << (Bits - 2);
  for (int count = 0;; ++count) {
    std::uint32_t less = 0;
    if (low >= 2 * kQuarter) {
      less = 2 * kQuarter;
    } else if (high >= 2 * kQuarter && low >= kQuarter && high < 3 * kQuarter) {
      less = kQuarter;
    } else if (high >= 2 * kQuarter) {
      return count;
    }
    low = 2 * (low - less);
    high = 2 * (high - less) + 1;
  }
}

TYPED_TEST(ArithmeticCoder, WidensEveryIntervalAsFarAsTheStepsOfOneBitDo) {
  constexpr int kBits = TypeParam::kBits;
  for (std::uint32_t low = 0; low < 1U << kBits; ++low) {
    for (std::uint32_t high = low; high < 1U << kBits; ++high) {
      const auto [most, less] = arithmetic::WideningOf<kBits>(low, high - low + 1);
      ASSERT_EQ(most - static_cast<int>(less), PlainWidening<kBits>(low, high))
          << low << " to " << high;
    }
  }
}

}  // namespace
}  // namespace marovia
