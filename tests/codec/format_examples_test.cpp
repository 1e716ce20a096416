// The listings of docs/file_format.md are made here anew and must stand in it word for word. A
// block that does not is printed.
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "marovia/codec.h"

#include "tests/support/literal_arithmetic.h"
#include "tests/support/literal_scan.h"
#include "tests/support/literal_transform.h"
#include "tests/support/test_images.h"

namespace marovia {
namespace {

constexpr std::size_t kHeaderBytes = 14;

void ExpectInDocument(const std::string& block) {
  std::ifstream file(MAROVIA_TEST_DATA "/../../docs/file_format.md");
  const std::string text(std::istreambuf_iterator<char>(file), {});
  EXPECT_NE(text.find(block), std::string::npos) << "missing:\n" << block;
}

// Three coefficients that the passes find one after another, and a mean of 400.
Grid<float> ExampleCoefficients() {
  Grid<float> coefficients(8, 8);
  literal::AddAverage(coefficients, 1, 400);
  coefficients(1, 1) += 8;
  coefficients(4, 1) = -6;
  coefficients(2, 5) = 2;
  return coefficients;
}

Image ExampleImage() {
  return literal::InvertTheTransformQuant(ExampleCoefficients(), WaveletKind::kInteger53, 1);
}

Bytes ExampleFile(FileKind kind) {
  CompressOptions options;
  options.kind = kind;
  options.wavelet = WaveletKind::kInteger53;
  options.levels = 1;
  options.rate = 4;
  return Compress(ExampleImage(), options).file;
}

std::string Hex(ByteView bytes) {
  std::ostringstream text;
  text << std::hex << std::uppercase;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i > 0) text << (i % 16 == 0 ? "\n" : " ");
    text << bytes[i] / 16 << bytes[i] % 16;
  }
  return text.str();
}

std::string Rows(const auto& grid) {
  std::ostringstream text;
  for (int r = 0; r < grid.Rows(); ++r) {
    for (int c = 0; c < grid.Cols(); ++c) {
      text.width(5);
      text << static_cast<int>(grid(r, c));
    }
    text << '\n';
  }
  return text.str();
}

enum class What { kNumber, kSign, kRefinement };
struct Decision {
  What what;
  int value;  // a number; 1 for negative; 1 for moving
};
using Pass = std::vector<Decision>;
using enum What;

// In the fixed order of visiting, in the adaptive one, which has the right band first,
// and in the ranked one.
const std::vector<Pass> kFixedPasses = {
    {{kNumber, 5}, {kSign, 0}, {kNumber, 61}},
    {{kNumber, 17}, {kSign, 1}, {kNumber, 48}, {kRefinement, 0}},
    {{kNumber, 36}, {kSign, 0}, {kNumber, 28}, {kRefinement, 0}, {kRefinement, 1}},
    {{kNumber, 63}, {kRefinement, 0}, {kRefinement, 0}, {kRefinement, 0}}};
const std::vector<Pass> kAdaptivePasses = {
    {{kNumber, 5}, {kSign, 0}, {kNumber, 61}},
    {{kNumber, 33}, {kSign, 1}, {kNumber, 32}, {kRefinement, 0}},
    {{kNumber, 21}, {kSign, 0}, {kNumber, 43}, {kRefinement, 0}, {kRefinement, 1}},
    {{kNumber, 63}, {kRefinement, 0}, {kRefinement, 0}, {kRefinement, 0}}};
const std::vector<Pass> kRankedPasses = {
    {{kNumber, 6}, {kSign, 0}, {kNumber, 60}},
    {{kNumber, 33}, {kSign, 1}, {kNumber, 32}, {kRefinement, 0}},
    {{kNumber, 31}, {kSign, 0}, {kNumber, 33}, {kRefinement, 0}, {kRefinement, 1}},
    {{kNumber, 63}, {kRefinement, 0}, {kRefinement, 0}, {kRefinement, 0}}};

// The bits of a pass, a blank after each number's digits and each decision.
std::string BitsOf(const Pass& pass) {
  std::string text;
  for (const Decision& decision : pass) {
    if (decision.what != kNumber) {
      text += std::to_string(decision.value) + " ";
      continue;
    }
    for (int number = decision.value; number > 1; number /= 2) {
      text += "0" + std::to_string(number % 2) + " ";
    }
    text += "1 ";
  }
  text.pop_back();
  return text + "\n";
}

Bytes BytesOf(const std::string& bits) {
  Bytes bytes;
  literal::BitWriter writer{&bytes};
  for (const char bit : bits) {
    if (bit == '0' || bit == '1') literal::TransmitBit(bit - '0', writer);
  }
  literal::WritePartialByte(writer);
  bytes.push_back(128);
  return bytes;
}

struct Symbol {
  int context;
  int character;
  std::string meaning;
};

// The symbols of the passes: in contexts 1 to 3 by what they say, or in chained ones.
std::vector<Symbol> SymbolsOf(const std::vector<Pass>& passes, bool chained) {
  std::vector<Symbol> symbols;
  int contexts[] = {1, chained ? 4 : 2, chained ? 6 : 3};
  const auto add = [&](What what, int character, const std::string& meaning) {
    int& context = contexts[static_cast<int>(what)];
    symbols.push_back({context, character, meaning});
    if (chained) context = (what == kNumber ? 1 : what == kSign ? 4 : 6) + character;
  };
  for (const Pass& pass : passes) {
    for (const Decision& decision : pass) {
      if (decision.what == kSign) add(kSign, decision.value, decision.value == 1 ? "-" : "+");
      if (decision.what == kRefinement) {
        add(kRefinement, 1 - decision.value, decision.value == 1 ? "moves" : "stays");
      }
      if (decision.what != kNumber) continue;
      for (int number = decision.value; number > 1; number /= 2) {
        add(kNumber, number % 2, "digit " + std::to_string(number % 2));
      }
      add(kNumber, 2, "end: " + std::to_string(decision.value));
    }
  }
  return symbols;
}

// Decodes the symbols from a file, one row each: what the decoder holds before it.
std::string TableOf(ByteView file, const std::vector<Symbol>& symbols, bool chained) {
  literal::BitReader reader{file.subspan(kHeaderBytes)};
  literal::ArithmeticCoder coder;
  chained ? coder.InitializeArithmeticCodingTwo() : coder.InitializeArithmeticCoding();
  coder.BeginDecoding(reader);
  std::ostringstream text;
  for (std::size_t i = 0; i < symbols.size(); ++i) {
    const Symbol& symbol = symbols[i];
    const auto k = static_cast<std::size_t>(symbol.context);
    const int last = k >= 4 ? 2 : chained ? 3 : 4;
    text << "| " << i + 1 << " | " << coder.low << " | " << coder.high << " | " << coder.value
         << " | " << k << " | ";
    for (int s = 0; s <= last; ++s) {
      text << (s > 0 ? " " : "") << coder.cum_freq[static_cast<std::size_t>(s)][k];
    }
    coder.context = symbol.context;
    const int character = k >= 4 ? coder.DecodeSymbolTwo(reader) : coder.DecodeSymbol(reader);
    EXPECT_EQ(character, symbol.character) << "symbol " << i + 1;
    text << " | " << character << " | " << symbol.meaning << " |\n";
  }
  return text.str();
}

TEST(FileFormat, ListsTheImageAndItsCoefficients) {
  const Image image = ExampleImage();
  Grid<float> coefficients = literal::TransformTheImage(image, WaveletKind::kInteger53, 1);
  EXPECT_TRUE(coefficients == ExampleCoefficients());
  ExpectInDocument(Rows(image));
  ExpectInDocument(Rows(coefficients));
}

TEST(FileFormat, ListsTheFilesOfAllKinds) {
  for (const FileKind kind : {FileKind::kAwb, FileKind::kAwa, FileKind::kAwd, FileKind::kAwf,
                              FileKind::kAwg, FileKind::kAwc}) {
    ExpectInDocument(Hex(ExampleFile(kind)) + "\n");
    EXPECT_TRUE(Decompress(ExampleFile(kind), kind).image == ExampleImage());
  }
}

TEST(FileFormat, ListsAContextFile) {
  const Image image = test::NamedImage("gradient", 8, 8);
  CompressOptions options{.kind = FileKind::kAwh, .wavelet = WaveletKind::kInteger53, .levels = 1};
  options.lossless = true;
  ExpectInDocument(Rows(image));
  ExpectInDocument(Hex(Compress(image, options).file) + "\n");
}

TEST(FileFormat, ListsTheBitsOfEachPass) {
  for (const auto& [kind, passes] :
       {std::pair{FileKind::kAwb, kFixedPasses}, std::pair{FileKind::kAwd, kAdaptivePasses},
        std::pair{FileKind::kAwc, kRankedPasses}}) {
    std::string bits;
    for (const Pass& pass : passes) bits += BitsOf(pass);
    ExpectInDocument(bits);
    const Bytes file = ExampleFile(kind);
    EXPECT_EQ(Bytes(file.begin() + kHeaderBytes, file.end()), BytesOf(bits));
  }
}

TEST(FileFormat, ListsTheSymbolsOfTheArithmeticStreams) {
  ExpectInDocument(TableOf(ExampleFile(FileKind::kAwa), SymbolsOf(kFixedPasses, false), false));
  ExpectInDocument(TableOf(ExampleFile(FileKind::kAwf), SymbolsOf(kAdaptivePasses, true), true));
}

TEST(FileFormat, ListsTheAdaptiveOrderAfterAPass) {
  Grid<float> quantized(16, 16);
  quantized(5, 1) = 8;
  quantized(2, 11) = -8;
  literal::ScanOrder order = literal::CreateScanOrder(2, 16, 16);
  literal::CreateNewScanOrder(order, quantized, 2, 8);
  literal::Position p;
  for (int step = 0; step < 64; ++step) p = order.Next(p);
  std::ostringstream text;
  for (int step = 0; step < 16; ++step, p = order.Next(p)) {
    text << '(' << p.row << ", " << p.col << ')' << (step % 4 == 3 ? "\n" : ", ");
  }
  ExpectInDocument(text.str());
}

TEST(FileFormat, ListsAMarkedHeader) {
  Image image(300, 517, 100);
  CompressOptions options{FileKind::kAwg, WaveletKind::kInteger53, 4};
  const Bytes file = Compress(image, options).file;
  ExpectInDocument(Hex(ByteView(file).first(5)));
}

}  // namespace
}  // namespace marovia
