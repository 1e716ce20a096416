#include "window/session.h"

#include <QElapsedTimer>
#include <algorithm>
#include <cmath>
#include <utility>

#include "marovia/measures.h"

#include "codec/coders.h"

namespace marovia {
namespace {

// Above this many pixels a first master of few bits comes long before the whole one.
constexpr std::int64_t kManyPixels = 1 << 21;
constexpr double kQuickRate = 1;
constexpr int kUntold = 150;  // ms

double Milliseconds(const QElapsedTimer& timer) {
  return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

Pyramid LayerOf(Layer layer, int gain, const SharedImage& source, const Image& picture) {
  if (layer == Layer::kNone || !source) return {};
  return Pyramid(std::make_shared<const Image>(layer == Layer::kDifference
                                                   ? DifferenceImage(*source, picture, gain)
                                                   : MagnitudeImage(*source, picture, gain)));
}

}  // namespace

// A curve as it is drawn. Used by the other thread alone.
struct Session::Line {
  FileKind kind;
  SharedExplorer explorer;
  bool coded = false;
  std::set<std::int64_t> drawn = {};
};

std::optional<double> KindCurve::PsnrAt(std::int64_t bytes) const {
  const auto above = psnrOfBytes.lower_bound(bytes);
  if (above == psnrOfBytes.end() || !above->second) return std::nullopt;
  if (above->first == bytes || above == psnrOfBytes.begin())
    return above->first == bytes ? std::optional<double>(*above->second) : std::nullopt;
  const auto below = std::prev(above);
  if (!below->second) return std::nullopt;
  const auto logarithm = [](std::int64_t length) { return std::log(static_cast<double>(length)); };
  const double part = (logarithm(bytes) - logarithm(below->first)) /
                      (logarithm(above->first) - logarithm(below->first));
  return std::lerp(double{*below->second}, double{*above->second}, part);
}

// On the window's thread, unless something else was opened meanwhile.
void Session::Deliver(int epoch, Told news) {
  const auto told = [this, epoch, news = std::move(news)] {
    if (epoch == epoch_) news();
  };
  QMetaObject::invokeMethod(this, told, Qt::QueuedConnection);
}

// Only of what takes its time is it told how far it has come.
Worker::Work Session::Guarded(Worker::Work work) {
  return [this, epoch = epoch_, work = std::move(work)](const Watch& watch) {
    QElapsedTimer untold;
    untold.start();
    bool done = true;
    try {
      done = work([&](double part) {
        if (untold.hasExpired(kUntold)) {
          Deliver(epoch, [this, part] { onProgress(std::min(part, 0.99)); });
          untold.start();
        }
        return watch(part);
      });
    } catch (const std::exception& error) {
      Deliver(epoch, [this, what = QString::fromUtf8(error.what())] { onFailure(what); });
    }
    Deliver(epoch, [this] { onProgress(1); });
    return done;
  };
}

void Session::Open(const std::function<Subject()>& read) {
  asked_ = 0;
  Start(read);
}

void Session::Start(const std::function<Subject()>& read) {
  ++epoch_;
  worker_.Drop();
  const auto work = [this, read, epoch = epoch_](const Watch& watch) {
    return Prepare(read(), epoch, watch);
  };
  worker_.Wish(Worker::kOpen, Guarded(work));
}

void Session::Recode(const Recipe& recipe) {
  if (!subject_.source) return;
  const bool sameMaster = explorer_ && subject_.file.empty() && recipe.SameMaster(subject_.recipe);
  subject_.recipe = recipe;
  subject_.file.clear();
  sameMaster ? SetRegion() : Start([subject = subject_] { return subject; });
}

// In a copy of the explorer: what is at work still has the one before.
void Session::SetRegion() {
  ++epoch_;
  worker_.Drop();
  const auto work = [this, before = explorer_, epoch = epoch_, master = master_,
                     recipe = subject_.recipe](const Watch&) {
    const auto explorer = std::make_shared<Explorer>(*before);
    explorer->SetRegion(recipe.region, recipe.share);
    Deliver(epoch, [=, this] { TakeMaster(master, explorer); });
    return true;
  };
  worker_.Wish(Worker::kOpen, Guarded(work));
}

bool Session::Prepare(const Subject& subject, int epoch, const Watch& watch) {
  QElapsedTimer timer;
  timer.start();
  auto explorer = subject.file.empty() ? std::make_shared<Explorer>(subject.source, subject.recipe)
                                       : std::make_shared<Explorer>(
                                             subject.file, subject.recipe.kind, subject.source);
  const Pyramid source = explorer->Source() ? Pyramid(explorer->Source()) : Pyramid();
  Deliver(epoch, [=, this, kept = explorer->Source()] { TakeSource(subject, kept, source); });
  const bool quick = subject.file.empty() && std::ssize(subject.source->Samples()) > kManyPixels;
  if (subject.file.empty() && !explorer->Code(quick ? kQuickRate : kWholeRate, watch)) return false;
  const Master master{explorer->Scale(), explorer->Info(), Milliseconds(timer), !quick};
  Deliver(epoch, [=, this] { TakeMaster(master, explorer); });
  return true;
}

// A source of another size than the file's is none.
void Session::TakeSource(const Subject& subject, const SharedImage& kept, const Pyramid& source) {
  subject_ = subject;
  subject_.source = kept;
  source_ = source;
  explorer_ = nullptr;
  curves_.clear();
  onSource();
}

void Session::TakeMaster(const Master& master, const SharedExplorer& explorer) {
  master_ = master;
  explorer_ = explorer;
  shown_ = -1;
  onMaster();
  master.whole ? DrawCurves() : CodeWhole();
}

void Session::CodeWhole() {
  const auto work = [this, explorer = explorer_, epoch = epoch_](const Watch& watch) {
    QElapsedTimer timer;
    timer.start();
    if (!explorer->Code(kWholeRate, watch)) return false;
    const Master master{explorer->Scale(), explorer->Info(), Milliseconds(timer), true};
    Deliver(epoch, [=, this] { TakeMaster(master, explorer); });
    return true;
  };
  worker_.Wish(Worker::kWhole, Guarded(work));
}

void Session::LookAt(std::int64_t bytes) {
  asked_ = master_.scale.Held(bytes);
  if (!explorer_) return;
  const auto work = [this, explorer = explorer_, epoch = epoch_, asked = asked_, layer = layer_,
                     gain = gain_](const Watch& watch) {
    QElapsedTimer timer;
    timer.start();
    auto look = explorer->LookAt(asked, explorer->Scale().pixels > kManyPixels ? watch : Watch());
    if (!look) return false;
    Sight sight{*look, Pyramid(look->picture),
                LayerOf(layer, gain, explorer->Source(), *look->picture), Milliseconds(timer)};
    Deliver(epoch, [this, asked, sight] {
      sight_ = sight;
      shown_ = asked;
      onPicture();
    });
    if (!watch(1)) return true;
    explorer->Measure(*look);
    Deliver(epoch, [this, look = *look] {
      sight_.look = look;
      onMeasures();
    });
    return true;
  };
  worker_.Wish(Worker::kLook, Guarded(work));
}

void Session::SetLayer(Layer layer, int gain) {
  layer_ = layer;
  gain_ = gain;
  LookAt(asked_);
}

void Session::Find(double psnr) {
  if (!subject_.source) return;
  const auto work = [this, explorer = explorer_, epoch = epoch_, psnr](const Watch& watch) {
    const auto bytes = explorer->BytesForPsnr(psnr, watch);
    if (bytes) Deliver(epoch, [this, found = *bytes] { onFound(found); });
    return bytes.has_value();
  };
  worker_.Wish(Worker::kLook, Guarded(work));
}

void Session::Compare(const std::set<FileKind>& kinds) {
  compared_ = kinds;
  if (explorer_) DrawCurves();
}

void Session::DrawCurves() {
  if (!subject_.source) return;
  curves_ = {{master_.info.kind, {}}};
  std::vector<std::shared_ptr<Line>> lines = {
      std::make_shared<Line>(Line{master_.info.kind, explorer_, true})};
  for (const FileKind kind : compared_) {
    if (kind == master_.info.kind) continue;
    Recipe recipe{.kind = kind};
    if (!CoderOf(kind).lossless) recipe.wavelet = subject_.recipe.wavelet;
    lines.push_back(
        std::make_shared<Line>(Line{kind, std::make_shared<Explorer>(subject_.source, recipe)}));
    curves_.push_back({kind, {}});
  }
  const auto work = [this, lines, epoch = epoch_](const Watch& watch) {
    return std::ranges::all_of(lines,
                               [&](const auto& line) { return DrawLine(*line, epoch, watch); });
  };
  worker_.Wish(Worker::kCurve, Guarded(work));
}

bool Session::DrawLine(Line& line, int epoch, const Watch& watch) {
  if (!line.coded && !line.explorer->Code(kWholeRate, watch)) return false;
  line.coded = true;
  for (const std::int64_t stop : line.explorer->Stops()) {
    if (line.drawn.contains(stop)) continue;
    const auto point = line.explorer->PointAt(stop, watch);
    if (!point) return false;
    line.drawn.insert(stop);
    Deliver(epoch, [this, kind = line.kind, point = *point] { TakePoint(kind, point); });
  }
  return true;
}

void Session::TakePoint(FileKind kind, const CurvePoint& point) {
  const auto curve = std::ranges::find(curves_, kind, &KindCurve::kind);
  if (curve == curves_.end()) return;
  curve->psnrOfBytes[point.bytes] = point.psnr;
  onCurve();
}

}  // namespace marovia
