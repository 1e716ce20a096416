#include "chart/line_chart.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <string_view>

namespace marovia {
namespace {

constexpr double kWidth = 760;
constexpr double kHeight = 500;
constexpr double kLeft = 72;
constexpr double kRight = kWidth - 24;
constexpr double kTop = 48;
constexpr double kBottom = kHeight - 64;
constexpr double kMark = 4.2;
constexpr double kLegendLine = 24;
constexpr int kXTicks = 8;
constexpr int kYTicks = 7;
constexpr std::size_t kMarksOfACurve = 8;

// Of about the same weight on white and on black, and apart for eyes that do not tell red from
// green.
constexpr std::array<std::string_view, kChartColours> kColours = {
    "#2b83ba", "#d7611c", "#1b9e77", "#a968b4", "#b8860b", "#7b7b7b", "#d6336c"};
constexpr std::array<std::string_view, kChartDashes> kDashes = {"", "9 5", "2 4", "12 4 2 4"};

constexpr std::string_view kStyle =
    "<style>\n"
    "text { font-family: 'DejaVu Sans', Verdana, Helvetica, sans-serif; font-size: 14px;\n"
    "  fill: #757c84 }\n"
    ".title { font-size: 16px; font-weight: bold }\n"
    ".middle { text-anchor: middle }\n"
    ".end { text-anchor: end }\n"
    ".grid { stroke: #8a9199; stroke-opacity: 0.28; stroke-width: 1 }\n"
    ".axis { stroke: #757c84; stroke-width: 1.4; fill: none }\n"
    ".curve { fill: none; stroke-width: 2.2; stroke-linejoin: round; stroke-linecap: round }\n"
    "</style>\n";

double NiceStep(double rough) {
  const double power = std::pow(10.0, std::floor(std::log10(rough)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= rough * 0.999) return factor * power;
  }
  return 10 * power;
}

std::string Px(double value) {
  return FixedText(value, 1);
}

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&') {
      escaped += "&amp;";
    } else if (c == '<') {
      escaped += "&lt;";
    } else {
      escaped += static_cast<unsigned char>(c) < ' ' ? '?' : c;
    }
  }
  return escaped;
}

std::string Text(double x, double y, std::string_view kind, std::string_view text) {
  return "<text x=\"" + Px(x) + "\" y=\"" + Px(y) + "\" class=\"" + std::string(kind) + "\">" +
         Escaped(text) + "</text>\n";
}

std::string Line(ChartPoint from, ChartPoint to, std::string_view kind) {
  return "<line x1=\"" + Px(from.x) + "\" y1=\"" + Px(from.y) + "\" x2=\"" + Px(to.x) + "\" y2=\"" +
         Px(to.y) + "\" class=\"" + std::string(kind) + "\"/>\n";
}

std::string ColourOf(const Curve& curve) {
  return std::string(kColours.at(static_cast<std::size_t>(curve.colour % kChartColours)));
}

std::string PathOf(const std::vector<ChartPoint>& points, const Curve& curve) {
  std::string path;
  for (const ChartPoint& point : points)
    path += (path.empty() ? "M" : " L") + Px(point.x) + " " + Px(point.y);
  const std::string_view dash = kDashes.at(static_cast<std::size_t>(curve.dash % kChartDashes));
  return "<path d=\"" + path + R"(" class="curve" stroke=")" + ColourOf(curve) + "\"" +
         (dash.empty() ? "" : " stroke-dasharray=\"" + std::string(dash) + "\"") + "/>\n";
}

// Turned by an angle.
std::vector<ChartPoint> Cross(double angle) {
  constexpr double kArm = 1.3;
  constexpr double kHalfWidth = 0.42;
  std::vector<ChartPoint> corners;
  for (int arm = 0; arm < 4; ++arm) {
    const double c = std::cos(angle + arm * std::numbers::pi / 2);
    const double s = std::sin(angle + arm * std::numbers::pi / 2);
    for (const auto& [x, y] : {std::pair(kHalfWidth, kHalfWidth), std::pair(kArm, kHalfWidth),
                               std::pair(kArm, -kHalfWidth)})
      corners.push_back({c * x + s * y, s * x - c * y});
  }
  return corners;
}

// Disc, square, triangle, diamond, triangle upside down, upright and slanting cross.
std::string MarkAt(ChartPoint at, const Curve& curve) {
  const std::string colour = ColourOf(curve);
  const std::string paint = " fill=\"" + colour + "\"/>\n";
  const auto polygon = [&](const std::vector<ChartPoint>& corners) {
    std::string points;
    for (const ChartPoint& corner : corners)
      points += Px(at.x + corner.x * kMark) + "," + Px(at.y + corner.y * kMark) + " ";
    return "<polygon points=\"" + points + "\"" + paint;
  };
  switch (curve.colour % kChartColours) {
    case 1:
      return polygon({{-0.9, -0.9}, {0.9, -0.9}, {0.9, 0.9}, {-0.9, 0.9}});
    case 2:
      return polygon({{0, -1.25}, {1.15, 0.85}, {-1.15, 0.85}});
    case 3:
      return polygon({{0, -1.35}, {1.2, 0}, {0, 1.35}, {-1.2, 0}});
    case 4:
      return polygon({{0, 1.25}, {1.15, -0.85}, {-1.15, -0.85}});
    case 5:
      return polygon(Cross(0));
    case 6:
      return polygon(Cross(std::numbers::pi / 4));
    default:
      return "<circle cx=\"" + Px(at.x) + "\" cy=\"" + Px(at.y) + "\" r=\"" + Px(kMark) + "\"" +
             paint;
  }
}

struct Range {
  double least = std::numeric_limits<double>::infinity();
  double most = -std::numeric_limits<double>::infinity();
};

Range RangeOf(const LineChart& chart, double ChartPoint::*coordinate) {
  Range range;
  for (const Curve& curve : chart.curves) {
    for (const ChartPoint& point : curve.points) {
      range.least = std::min(range.least, point.*coordinate);
      range.most = std::max(range.most, point.*coordinate);
    }
  }
  return range.least <= range.most ? range : Range{0, 1};
}

class Drawing {
 public:
  explicit Drawing(const LineChart& chart) : chart_(chart) {
    const Range xs = RangeOf(chart, &ChartPoint::x);
    const Range ys = RangeOf(chart, &ChartPoint::y);
    x_ = NiceAxis(std::min(0.0, xs.least), xs.most, kXTicks);
    y_ = NiceAxis(ys.least, ys.most, kYTicks);
  }

  [[nodiscard]] std::string Svg() const {
    const std::string size = Px(kWidth) + " " + Px(kHeight);
    return R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 )" + size + "\" width=\"" +
           Px(kWidth) + "\" height=\"" + Px(kHeight) + "\" role=\"img\">\n<title>" +
           Escaped(chart_.title) + "</title>\n" + std::string(kStyle) + Grid() + Labels() +
           Curves() + Legend() + "</svg>\n";
  }

 private:
  [[nodiscard]] ChartPoint Placed(ChartPoint point) const {
    return {kLeft + (point.x - x_.from) / (x_.to - x_.from) * (kRight - kLeft),
            kBottom - (point.y - y_.from) / (y_.to - y_.from) * (kBottom - kTop)};
  }

  [[nodiscard]] std::string Grid() const {
    std::string svg;
    for (const double tick : x_.ticks) {
      const double x = Placed({tick, y_.from}).x;
      svg += Line({x, kTop}, {x, kBottom}, "grid") +
             Text(x, kBottom + 22, "middle", FixedText(tick, x_.digits));
    }
    for (const double tick : y_.ticks) {
      const double y = Placed({x_.from, tick}).y;
      svg += Line({kLeft, y}, {kRight, y}, "grid") +
             Text(kLeft - 10, y + 5, "end", FixedText(tick, y_.digits));
    }
    return svg + Line({kLeft, kTop}, {kLeft, kBottom}, "axis") +
           Line({kLeft, kBottom}, {kRight, kBottom}, "axis");
  }

  [[nodiscard]] std::string Labels() const {
    const double middle = (kTop + kBottom) / 2;
    return Text(kLeft, kTop - 20, "title", chart_.title) +
           Text((kLeft + kRight) / 2, kBottom + 48, "middle", chart_.xLabel) +
           "<g transform=\"translate(20 " + Px(middle) + ") rotate(-90)\">" +
           Text(0, 0, "middle", chart_.yLabel) + "</g>\n";
  }

  // Curves first, so that no mark lies under a line. Where points are many, only some are marked,
  // those of each curve elsewhere.
  [[nodiscard]] std::string Curves() const {
    std::string lines;
    std::string marks;
    for (std::size_t n = 0; n < chart_.curves.size(); ++n) {
      const Curve& curve = chart_.curves[n];
      std::vector<ChartPoint> places;
      for (const ChartPoint& point : curve.points) places.push_back(Placed(point));
      lines += PathOf(places, curve);
      const std::size_t step = std::max<std::size_t>(1, places.size() / kMarksOfACurve);
      for (std::size_t i = n % step; i < places.size(); i += step)
        marks += MarkAt(places[i], curve);
    }
    return lines + marks;
  }

  // In the corner that rising curves leave free, in the order in which they end.
  [[nodiscard]] std::string Legend() const {
    std::string svg;
    std::size_t longest = 0;
    for (const Curve& curve : chart_.curves) longest = std::max(longest, curve.label.size());
    const double x = kRight - 66 - 9.0 * static_cast<double>(longest);
    double y = kBottom - kLegendLine * (static_cast<double>(chart_.curves.size()) - 0.2);
    for (const Curve& curve : ByTheirEnds()) {
      svg += PathOf({{x, y}, {x + 40, y}}, curve) + MarkAt({x + 20, y}, curve) +
             Text(x + 52, y + 5, "label", curve.label);
      y += kLegendLine;
    }
    return svg;
  }

  [[nodiscard]] std::vector<Curve> ByTheirEnds() const {
    std::vector<Curve> curves = chart_.curves;
    const auto end = [&](const Curve& curve) {
      return curve.points.empty() ? y_.from : curve.points.back().y;
    };
    std::ranges::stable_sort(curves, std::ranges::greater(), end);
    return curves;
  }

  const LineChart& chart_;
  Axis x_;
  Axis y_;
};

}  // namespace

Axis NiceAxis(double least, double most, int count) {
  if (!(most > least)) most = least + 1;
  const double step = NiceStep((most - least) / count);
  const auto first = static_cast<long>(std::floor(least / step + 1e-9));
  const auto last = static_cast<long>(std::ceil(most / step - 1e-9));
  Axis axis;
  for (long n = first; n <= last; ++n) axis.ticks.push_back(static_cast<double>(n) * step);
  axis.from = axis.ticks.front();
  axis.to = axis.ticks.back();
  axis.digits = std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
  return axis;
}

std::string FixedText(double value, int digits) {
  std::array<char, 64> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                 std::chars_format::fixed, digits);
  return {text.data(), end.ptr};
}

std::string SvgOf(const LineChart& chart) {
  return Drawing(chart).Svg();
}

}  // namespace marovia
