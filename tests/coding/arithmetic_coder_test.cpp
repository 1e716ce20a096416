// The arithmetic coder against the one that moves its interval bit by bit.
#include "coding/arithmetic_coder.h"

#include "tests/support/plain_symbols.h"

namespace marovia {
namespace {

using test::RandomBelow;

template <class Setup>
class ArithmeticCoder : public testing::Test {};
using Setups = testing::Types<FirstSetup, SecondSetup>;
TYPED_TEST_SUITE(ArithmeticCoder, Setups);

constexpr int kContexts = 3;
constexpr int kCharacters = 3;

struct Symbol {
  int context;  // from 0
  int character;
};

template <class Setup>
plain::Arithmetic PlainCoder(const plain::Bits& bits) {
  return {Setup::kHasEnd ? plain::Coding::kWdr : plain::Coding::kAswdr, bits};
}

// Both coders agree on every count of bits on the way, on the bytes, and on what these say.
template <class Setup>
void CodeAlike(const std::vector<Symbol>& symbols) {
  using Contexts = std::array<TernaryContext<Setup>, kContexts>;
  plain::Arithmetic expected = PlainCoder<Setup>({});
  Bytes bytes;
  ArithmeticEncoder<Setup> encoder(bytes);
  Contexts contexts;
  for (const auto& [context, character] : symbols) {
    expected.Code(context + 1, character);
    encoder.Encode(contexts[static_cast<std::size_t>(context)], static_cast<unsigned>(character));
    ASSERT_EQ(encoder.BitsSent(), expected.bits.count);
    ASSERT_EQ(encoder.BitsToFollow(), expected.bitsToFollow);
  }
  if constexpr (Setup::kHasEnd) {
    encoder.EncodePart(contexts[static_cast<std::size_t>(symbols.back().context)].PartOfEnd());
  }
  expected.Done();
  encoder.DoneEncoding();
  ASSERT_EQ(bytes, expected.bits.written);
  ArithmeticDecoder<Setup> decoder(bytes);
  contexts = Contexts();
  for (const auto& [context, character] : symbols) {
    ASSERT_EQ(decoder.Decode(contexts[static_cast<std::size_t>(context)]),
              static_cast<unsigned>(character));
  }
}

// One character is up to 60 times as frequent as the others, a different one every now and then:
// counts grow apart, draw level again and are halved in many patterns.
TYPED_TEST(ArithmeticCoder, AgreesWithThePlainOneAfterEverySymbol) {
  std::mt19937 random(5);
  for (int round = 0; round < 100 && !this->HasFailure(); ++round) {
    SCOPED_TRACE(round);
    std::vector<Symbol> symbols;
    const int skew = 1 << RandomBelow(random, 7);
    const int period = 1 + RandomBelow(random, round % 2 == 0 ? 8 : 800);
    for (int i = 1 + RandomBelow(random, 3000); i > 0; --i) {
      const bool usual = RandomBelow(random, skew) != 0;
      symbols.push_back({RandomBelow(random, kContexts),
                         usual ? i / period % kCharacters : RandomBelow(random, kCharacters)});
    }
    CodeAlike<TypeParam>(symbols);
  }
}

// At each symbol the character is taken that leaves the most bits to follow, until they fill many
// bytes; then the run is ended by a carry, without one, or by the end of the stream.
TYPED_TEST(ArithmeticCoder, DecidesRunsOfBitsToFollowOfAnyLength) {
  plain::Arithmetic coder = PlainCoder<TypeParam>({});
  std::vector<Symbol> symbols;
  for (int endings = 0; endings < 40;) {
    ASSERT_LT(symbols.size(), 3000U);
    const int context = static_cast<int>(symbols.size()) % kContexts;
    symbols.push_back({context, 0});
    plain::Arithmetic best = coder;
    best.Code(context + 1, 0);
    for (int character = 1; character < kCharacters; ++character) {
      plain::Arithmetic tried = coder;
      tried.Code(context + 1, character);
      if (tried.bitsToFollow <= best.bitsToFollow) continue;
      best = tried;
      symbols.back().character = character;
    }
    coder = best;
    if (coder.bitsToFollow < 60) continue;
    ++endings;
    for (int last = 0; last < kCharacters; ++last) {
      auto ended = symbols;
      ended.insert(ended.end(), 12, {0, last});
      CodeAlike<TypeParam>(ended);
    }
  }
}

}  // namespace
}  // namespace marovia
