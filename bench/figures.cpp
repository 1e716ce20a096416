#include "bench/figures.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <string_view>

#include "bench/table_text.h"

namespace marovia::bench {
namespace {

std::string Digits(double value) {
  std::array<char, 64> text{};
  const int decimals = value < 1 ? 3 : value < 10 ? 2 : 1;
  const int length = std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
  return {text.data(), static_cast<std::size_t>(length)};
}

double Time(const Medians& medians, const std::string& name) {
  const auto found = medians.find(name);
  return found == medians.end() ? std::nan("") : found->second;
}

class Goals {
 public:
  void AtLeast(const std::string& what, double measured, double goal) {
    Add(what, measured, "at least ", goal, measured >= goal);
  }
  void AtMost(const std::string& what, double measured, double goal) {
    Add(what, measured, "at most ", goal, measured <= goal);
  }
  [[nodiscard]] const std::string& Text() const { return text_; }

 private:
  void Add(const std::string& what, double measured, const char* sense, double goal, bool met) {
    if (std::isnan(measured)) return;
    text_ +=
        MarkdownRow({what, Digits(measured), sense + Digits(goal), met ? "met" : "**not met**"});
  }

  std::string text_ = MarkdownHead({"what", "ratio", "goal", ""});
};

// How many times as fast as the other one the first is.
struct Speed {
  std::string_view way;
  std::string_view ours;
  std::string_view peer;
  double goal;
};

constexpr std::array kSpeeds = {
    Speed{"compress", "awb/0.5", "openjpeg/0.5", 15},
    Speed{"decompress", "awb/0.5", "openjpeg/0.5", 2.5},
    Speed{"compress", "awf/0.5", "openjpeg/0.5", 8},
    Speed{"decompress", "awf/0.5", "openjpeg/0.5", 1.3},
    Speed{"compress", "awc/0.5", "openjpeg/0.5", 4},
    Speed{"decompress", "awc/0.5", "openjpeg/0.5", 1},
    Speed{"compress", "awh/0.5", "openjpeg/0.5", 4.5},
    Speed{"decompress", "awh/0.5", "openjpeg/0.5", 1},
    Speed{"compress", "awg", "charls", 1},
    Speed{"compress", "awg", "openjpeg/lossless", 2.5},
    Speed{"decompress", "awg", "charls", 1 / 1.4},
    Speed{"decompress", "awg", "openjpeg/lossless", 1.7},
    Speed{"compress", "awh", "openjpeg/lossless", 1.5},
    Speed{"decompress", "awh", "openjpeg/lossless", 1.3},
};

// By how much the time of a pixel may grow to 4096 x 4096.
const std::array<std::pair<std::string, double>, 4> kGrowths = {
    {{"awb/0.5", 1.5}, {"awf/0.5", 1.5}, {"awh/0.5", 1.2}, {"awh", 1.2}}};

void AddSpeeds(const Medians& medians, const std::string& image, Goals& goals) {
  for (const Speed& speed : kSpeeds) {
    const std::string way(speed.way);
    const std::string ours(speed.ours);
    const std::string peer(speed.peer);
    goals.AtLeast(image + ": " + way + " " + ours + ", times as fast as " + peer,
                  Time(medians, way + "/" + peer + "/" + image) /
                      Time(medians, way + "/" + ours + "/" + image),
                  speed.goal);
  }
}

void AddTenths(const Medians& medians, const std::string& image, Goals& goals) {
  for (const std::string kind : {"awb", "awf"}) {
    const double none = Time(medians, "none/" + kind + "/" + image);
    const double tenth = Time(medians, "tenth/" + kind + "/" + image);
    const double all = Time(medians, "decompress/" + kind + "/1/" + image);
    goals.AtMost(image + ": coding time of a tenth of " + kind + "/1, share of the whole",
                 (tenth - none) / (all - none), 0.1);
  }
}

}  // namespace

std::string GoalTable(const Medians& medians, const std::vector<std::string>& images,
                      const std::string& large) {
  Goals goals;
  for (const std::string& image : images) {
    AddSpeeds(medians, image, goals);
    AddTenths(medians, image, goals);
  }
  constexpr double kTiles = 64;
  for (const std::string way : {"compress", "decompress"}) {
    for (const auto& [ours, most] : kGrowths) {
      const std::string name = way + "/" + ours + "/";
      goals.AtMost(large + ": " + way + " " + ours + ", time per pixel over that of its tile",
                   Time(medians, name + large) / kTiles / Time(medians, name + images.front()),
                   most);
    }
  }
  return goals.Text();
}

std::string CodecTable(const Medians& medians) {
  constexpr std::string_view kCompress = "compress/";
  std::string text = MarkdownHead({"codec / rate / image", "compress ms", "decompress ms"});
  for (const auto& [name, seconds] : medians) {
    if (!name.starts_with(kCompress)) continue;
    text += MarkdownRow({name.substr(kCompress.size()), Digits(1e3 * seconds),
                         Digits(1e3 * Time(medians, "de" + name))});
  }
  return text;
}

std::string StageTable(const Medians& medians) {
  constexpr std::string_view kStage = "stage/";
  constexpr double kShort = 1e-6;
  std::string text = MarkdownHead({"stage", "time"});
  for (const auto& [name, seconds] : medians) {
    if (!name.starts_with(kStage)) continue;
    text +=
        MarkdownRow({name.substr(kStage.size()), seconds < kShort ? Digits(1e9 * seconds) + " ns"
                                                                  : Digits(1e3 * seconds) + " ms"});
  }
  return text;
}

}  // namespace marovia::bench
