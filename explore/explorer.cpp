#include "explore/explorer.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "codec/coders.h"
#include "codec/psnr_search.h"
#include "explore/similarity.h"

namespace marovia {
namespace {

constexpr std::int64_t kAnyPixels = std::numeric_limits<std::int64_t>::max();
// Of the pictures that are kept, so that going back and forth does not decode them again.
constexpr std::size_t kKeptPixels = std::size_t{1} << 25;

// Thrown out of a run whose watch ended it.
struct Ended {};

// Tells a watch how far a run has come that spends so many bits.
PassListener Watching(const Watch& watch, double bits) {
  if (!watch) return {};
  return [&watch, bits](const PassReport& report) {
    if (!watch(std::min(1.0, report.bits / bits))) throw Ended{};
  };
}

// What the run gives, unless it was ended.
template <class Run>
auto UnlessEnded(Run run) -> std::optional<decltype(run())> {
  try {
    return run();
  } catch (const Ended&) {
    return std::nullopt;
  }
}

std::int64_t Pixels(const FileInfo& info) {
  return std::int64_t{info.rows} * info.cols;
}

}  // namespace

Explorer::Explorer(SharedImage source, const Recipe& recipe)
    : source_(std::move(source)), recipe_(recipe), kind_(recipe.kind) {}

Explorer::Explorer(Bytes file, FileKind kind, SharedImage source)
    : source_(std::move(source)), recipe_{.kind = kind}, master_(std::move(file)), kind_(kind) {
  const DecompressResult whole = Decompress(master_, kind, {.maxPixels = kAnyPixels});
  TakeMaster(whole.passes);
  if (source_ && !source_->SameShape(whole.image)) source_ = nullptr;
}

bool Explorer::Code(double rate, const Watch& watch) {
  CompressOptions options{.kind = recipe_.kind, .wavelet = recipe_.wavelet};
  options.levels = recipe_.levels;
  options.rate = rate;
  options.onPass = Watching(watch, rate * static_cast<double>(source_->Size()));
  auto coded = UnlessEnded([&] { return Compress(*source_, options); });
  if (!coded) return false;
  master_ = std::move(coded->file);
  TakeMaster(coded->passes);
  return true;
}

void Explorer::SetRegion(const std::optional<Region>& region, float share) {
  recipe_.region = region;
  recipe_.share = share;
  kept_.clear();
}

// What is kept stays true: a longer master begins as the one before.
void Explorer::TakeMaster(const std::vector<PassReport>& passes) {
  info_ = Inspect(master_, kind_, kAnyPixels);
  scale_ = {Pixels(info_), std::min<std::int64_t>(std::ssize(master_), UsefulBytes(info_))};
  stops_ = {scale_.most};
  for (const PassReport& pass : passes) stops_.push_back(scale_.Held((pass.bits + 7) / 8));
  std::ranges::sort(stops_);
  stops_.erase(std::unique(stops_.begin(), stops_.end()), stops_.end());
}

TruncateResult Explorer::FileOf(std::int64_t bytes) {
  bytes = scale_.Held(bytes);
  if (recipe_.region) return CodedWithRegion(bytes);
  if (bytes == scale_.most) return {master_, kind_, true};
  return Truncate(master_, kind_, {.rate = {}, .bytes = bytes, .maxPixels = kAnyPixels});
}

// A lossless kind leaves nothing to give to a region; cut, it is a lossy one.
TruncateResult Explorer::CodedWithRegion(std::int64_t bytes) const {
  const bool lossless = CoderOf(kind_).lossless;
  TruncateResult result;
  result.kind = lossless ? FileKind::kAwf : kind_;
  CompressOptions options{.kind = result.kind, .wavelet = info_.wavelet, .levels = info_.levels};
  options.bytes = bytes;
  options.region = recipe_.region;
  options.share = recipe_.share;
  result.file = Compress(*source_, options).file;
  return result;
}

std::optional<Look> Explorer::LookAt(std::int64_t bytes, const Watch& watch) {
  const auto kept = std::ranges::find(kept_, bytes, &Kept::asked);
  if (kept != kept_.end()) return kept->look;
  return UnlessEnded([&] {
    Look look{.file = FileOf(bytes), .picture = {}};
    const auto& [file, kind, whole] = look.file;
    DecompressOptions options{.maxPixels = kAnyPixels};
    options.onPass = Watching(watch, 8 * static_cast<double>(file.size()));
    look.picture = std::make_shared<const Image>(Decompress(file, kind, options).image);
    Keep(bytes, look);
    return look;
  });
}

void Explorer::Measure(Look& look) const {
  if (!source_) return;
  look.measures = marovia::Measure(*source_, *look.picture);
  look.similarity = Similarity(*source_, *look.picture);
  if (recipe_.region) look.inRegion = marovia::Measure(*source_, *look.picture, recipe_.region);
}

void Explorer::Keep(std::int64_t asked, const Look& look) {
  kept_.push_front({asked, look});
  while (kept_.size() > 1 && kept_.size() * look.picture->Size() > kKeptPixels) kept_.pop_back();
}

std::optional<CurvePoint> Explorer::PointAt(std::int64_t bytes, const Watch& watch) {
  const auto look = LookAt(bytes, watch);
  if (!look) return std::nullopt;
  return CurvePoint{std::ssize(look->file.file), marovia::Measure(*source_, *look->picture).psnr};
}

std::optional<std::int64_t> Explorer::BytesForPsnr(double psnr, const Watch& watch) {
  const auto psnrOf = [&](std::int64_t bytes) {
    const auto look = LookAt(bytes, watch);
    if (!look) throw Ended{};
    return PsnrOfPicture(*source_, *look->picture);
  };
  return UnlessEnded([&] {
    return LeastBytesForPsnr(psnr, scale_.Least(), scale_.most, psnrOf).value_or(scale_.most);
  });
}

}  // namespace marovia
