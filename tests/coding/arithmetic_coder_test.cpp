// The arithmetic coder against the one that moves its interval bit by bit.
#include "coding/arithmetic_coder.h"

#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "tests/support/literal_arithmetic.h"
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

// Characters of which one is up to 60 times as frequent as the others, a different one each 500
// symbols: counts grow apart, draw level again and are halved.
template <class Setup>
std::vector<Symbol> RandomSymbols(std::mt19937& random, int count) {
  std::vector<Symbol> symbols;
  int context = 1;
  const int skew = 1 << RandomBelow(random, 7);
  for (int i = 0; i < count; ++i) {
    if (RandomBelow(random, 3) == 0) context = 1 + RandomBelow(random, kContexts<Setup>);
    const int characters = context <= 3 ? 3 : 2;
    const bool usual = RandomBelow(random, skew) != 0;
    symbols.push_back({context, usual ? i / 500 % characters : RandomBelow(random, characters)});
  }
  return symbols;
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

// The other coder, and what chooses its contexts.
struct PlainCoder : literal::ArithmeticCoder {
  // A pair's two contexts are numbered from 4 on, and from 6 on.
  void Choose(int of) {
    context = of <= 3 ? of : 2 * of - 4 + last[static_cast<std::size_t>(of - 4)];
  }
  void Keep(const Symbol& symbol) {
    if (symbol.context > 3) last[static_cast<std::size_t>(symbol.context - 4)] = symbol.character;
  }

  std::array<int, 2> last{};
};

template <class Setup>
PlainCoder MakePlainCoder() {
  PlainCoder coder;
  if (Setup::kHasEnd) {
    coder.InitializeArithmeticCoding();
  } else {
    coder.InitializeArithmeticCodingTwo();
  }
  return coder;
}

void Encode(PlainCoder& coder, Symbol symbol, literal::BitWriter& writer) {
  coder.Choose(symbol.context);
  symbol.context <= 3 ? coder.Encode(symbol.character, writer)
                      : coder.EncodeTwo(symbol.character, writer);
  coder.Keep(symbol);
}

// Encodes with both coders, which agree on every count of bits on the way, and returns the bytes.
template <class Setup>
Bytes EncodeAlike(const std::vector<Symbol>& symbols) {
  Bytes expected;
  literal::BitWriter writer{&expected};
  PlainCoder plain = MakePlainCoder<Setup>();
  Bytes bytes;
  ArithmeticEncoder<Setup> encoder(bytes);
  Contexts<Setup> contexts;
  for (const Symbol& symbol : symbols) {
    Encode(plain, symbol, writer);
    contexts.With(symbol.context, [&](auto& context) {
      encoder.Encode(context, static_cast<unsigned>(symbol.character));
    });
    EXPECT_EQ(encoder.BitsSent(), writer.sent);
    EXPECT_EQ(encoder.BitsToFollow(), plain.bitsToFollow);
    EXPECT_EQ(encoder.BitsSpent(), writer.sent + plain.bitsToFollow);
    if (testing::Test::HasFailure()) return {};
  }
  if constexpr (Setup::kHasEnd) {
    const auto& context = contexts.ternary[static_cast<std::size_t>(plain.context - 1)];
    encoder.EncodePart(context.PartOfEnd());
  }
  plain.DoneEncoding(writer);
  EXPECT_EQ(encoder.BitsSpent() + 2, writer.sent);
  literal::WritePartialByte(writer);
  encoder.DoneEncoding();
  EXPECT_EQ(bytes, expected);
  return bytes;
}

template <class Setup>
void DecodeAlike(const Bytes& bytes, const std::vector<Symbol>& symbols) {
  literal::BitReader reader{bytes};
  PlainCoder plain = MakePlainCoder<Setup>();
  plain.BeginDecoding(reader);
  ArithmeticDecoder<Setup> decoder(bytes);
  Contexts<Setup> contexts;
  EXPECT_EQ(decoder.BitsRead(), Setup::kBits);
  for (const Symbol& symbol : symbols) {
    plain.Choose(symbol.context);
    const int expected =
        symbol.context <= 3 ? plain.DecodeSymbol(reader) : plain.DecodeSymbolTwo(reader);
    plain.Keep(symbol);
    const unsigned character =
        contexts.With(symbol.context, [&](auto& context) { return decoder.Decode(context); });
    ASSERT_EQ(expected, symbol.character);
    ASSERT_EQ(character, static_cast<unsigned>(symbol.character));
    ASSERT_EQ(decoder.BitsRead(), reader.read);
    ASSERT_FALSE(decoder.Exhausted());
  }
}

TYPED_TEST(ArithmeticCoder, SendsAndReadsTheBitsOfThePlainOneAfterEverySymbol) {
  std::mt19937 random(5);
  for (int round = 0; round < 150 && !this->HasFailure(); ++round) {
    SCOPED_TRACE(round);
    const auto symbols = RandomSymbols<TypeParam>(random, RandomBelow(random, 3000));
    DecodeAlike<TypeParam>(EncodeAlike<TypeParam>(symbols), symbols);
  }
}

// Each context is driven past its ceiling twice with every pattern of equal and unequal counts that
// the halving can meet.
TYPED_TEST(ArithmeticCoder, HalvesTheCountsWhereThePlainOneDoes) {
  for (int context = 1; context <= kContexts<TypeParam>; ++context) {
    const int characters = context <= 3 ? 3 : 2;
    for (int period = 1; period < 8; ++period) {
      SCOPED_TRACE(testing::Message() << "context " << context << ", period " << period);
      std::vector<Symbol> symbols;
      for (int i = 0; i < 1100; ++i) symbols.push_back({context, i / period % characters});
      DecodeAlike<TypeParam>(EncodeAlike<TypeParam>(symbols), symbols);
    }
  }
}

// At each symbol the character is taken that leaves the most bits to follow, until they fill many
// bytes; then the run is ended by a carry, without one, or by the end of the stream.
TYPED_TEST(ArithmeticCoder, DecidesRunsOfBitsToFollowOfAnyLength) {
  Bytes unused;
  literal::BitWriter writer{&unused};
  PlainCoder plain = MakePlainCoder<TypeParam>();
  std::vector<Symbol> symbols;
  const auto after = [&](const Symbol& symbol) {
    PlainCoder tried = plain;
    Bytes bytes;
    literal::BitWriter to{&bytes};
    Encode(tried, symbol, to);
    return tried;
  };
  std::int32_t longest = 0;
  int endings = 0;
  for (int i = 0; i < 2000; ++i) {
    Symbol best{1 + i % kContexts<TypeParam>, 0};
    for (int character = 1; character < (best.context <= 3 ? 3 : 2); ++character) {
      const Symbol other{best.context, character};
      if (after(other).bitsToFollow > after(best).bitsToFollow) best = other;
    }
    symbols.push_back(best);
    Encode(plain, best, writer);
    longest = std::max(longest, plain.bitsToFollow);
    if (plain.bitsToFollow < 60 || ++endings > 40) continue;
    for (int last = 0; last < 3; ++last) {
      auto ended = symbols;
      for (int k = 0; k < 12; ++k) ended.push_back({1, last});
      DecodeAlike<TypeParam>(EncodeAlike<TypeParam>(ended), ended);
    }
  }
  EXPECT_GE(longest, 70);
}

TYPED_TEST(ArithmeticCoder, ScalesExactlyWithoutADivision) {
  constexpr std::uint32_t kWhole = 1U << TypeParam::kBits;
  for (std::uint32_t total = 2; total <= TypeParam::kMostTotal; ++total) {
    std::uint32_t wrong = 0;
    for (std::uint32_t count = 0; count <= total; ++count) {
      const std::uint32_t fraction = arithmetic::Fraction(count, total);
      for (std::uint32_t range = kWhole / 4 + 1; range <= kWhole; ++range) {
        for (const arithmetic::Range& held : {arithmetic::Range{range, 0}, {2 * range, 1}}) {
          wrong |= range * count - held.Times(fraction) * total < total ? 0 : 1;
        }
      }
    }
    ASSERT_EQ(wrong, 0U) << "of a total of " << total;
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

TYPED_TEST(ArithmeticCoder, IsExhaustedWhereAWholeCodeValueIsMissing) {
  const Bytes nothing;
  EXPECT_TRUE(ArithmeticDecoder<TypeParam>(nothing).Exhausted());
  const Bytes byte = {0x5A};
  ArithmeticDecoder<TypeParam> decoder(byte);
  TernaryContext<TypeParam> context;
  literal::BitReader reader{byte};
  PlainCoder plain = MakePlainCoder<TypeParam>();
  plain.BeginDecoding(reader);
  for (int i = 0; i < 40; ++i) {
    bool ended = false;
    try {
      plain.DecodeSymbol(reader);
    } catch (const literal::CodingEnds&) {
      ended = true;
    }
    const unsigned index = decoder.DecodeIndex(context);
    if (index != context.kEndIndex) Learn(context, index);
    ASSERT_EQ(decoder.Exhausted(), ended) << i;
    if (ended) return;
  }
  ADD_FAILURE() << "neither coder ended";
}

}  // namespace
}  // namespace marovia
