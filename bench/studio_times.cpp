// Prints how long the studio takes, on a display, from a move of its slider to the picture painted,
// from opening a JPEG to its picture, and the longest that its event loop ever stood still. In
// milliseconds, medians of some moves.
//
//   studio_times    the sizes 512 x 512, 2048 x 2048 and 8000 x 6000
#include <QtWidgets>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "codec/coders.h"
#include "window/make.h"
#include "window/picture_files.h"
#include "window/studio.h"

namespace {

constexpr int kMoves = 11;
constexpr int kPatience = 30000;

double Milliseconds(const QElapsedTimer& timer) {
  return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

double Median(std::vector<double> times) {
  std::ranges::sort(times);
  return times[times.size() / 2];
}

// The longest time between two turns of the event loop.
class Heartbeat : public QTimer {
 public:
  Heartbeat() {
    since_.start();
    callOnTimeout(this, [this] {
      longest_ = std::max(longest_, Milliseconds(since_));
      since_.start();
    });
    start(0);
  }
  [[nodiscard]] double Longest() const { return longest_; }

 private:
  QElapsedTimer since_;
  double longest_ = 0;
};

// The sample image again and again.
marovia::Image Tiled(int rows, int cols) {
  QFile file(MAROVIA_ROOT "/Images/camera.pgm");
  if (!file.open(QIODevice::ReadOnly)) return {};
  const QByteArray bytes = file.readAll();
  const marovia::Image tile =
      marovia::ReadImage({reinterpret_cast<const std::uint8_t*>(bytes.data()),
                          static_cast<std::size_t>(bytes.size())})
          .image;
  marovia::Image image(rows, cols);
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < cols; ++c) image(r, c) = tile(r % tile.Rows(), c % tile.Cols());
  }
  return image;
}

class Stopwatch {
 public:
  explicit Stopwatch(QMainWindow& studio)
      : studio_(studio),
        stage_(studio.findChild<QWidget*>("Stage")),
        slider_(studio.findChild<QSlider*>("RateSlider")) {}

  // Until what is shown says something else than before, and is painted.
  double UntilPicture(const std::function<void()>& act) {
    const QString before = stage_->accessibleDescription();
    QElapsedTimer timer;
    timer.start();
    act();
    while (stage_->accessibleDescription() == before && !timer.hasExpired(kPatience))
      QCoreApplication::processEvents();
    stage_->repaint();
    return Milliseconds(timer);
  }

  void Settle() {
    auto* progress = studio_.findChild<QProgressBar*>();
    QElapsedTimer quiet;
    quiet.start();
    while (!quiet.hasExpired(1000)) {
      QCoreApplication::processEvents();
      if (progress->isVisible()) quiet.start();
    }
  }

  void Choose(marovia::FileKind kind) {
    auto* kinds = studio_.findChild<QComboBox*>("Kind");
    kinds->setCurrentIndex(static_cast<int>(kind));
    Q_EMIT kinds->activated(kinds->currentIndex());
    Settle();
  }

  // Around half a bit a pixel.
  double SliderMoves() {
    auto* rate = studio_.findChild<QDoubleSpinBox*>("Rate");
    UntilPicture([&] { rate->setValue(0.49); });
    std::vector<double> times;
    for (int i = 0; i < kMoves; ++i)
      times.push_back(UntilPicture([&] { slider_->setValue(slider_->value() + 1); }));
    return Median(times);
  }

 private:
  QMainWindow& studio_;
  QWidget* stage_;
  QSlider* slider_;
};

}  // namespace

int main(int argc, char** argv) {
  const QApplication app(argc, argv);
  const QTemporaryDir folder;
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
  QMainWindow& studio = *marovia::ShowStudio();
  Stopwatch watch(studio);
  std::setbuf(stdout, nullptr);
  const QString jpeg = folder.filePath("photo.jpg");
  marovia::ShownImage(Tiled(3000, 4000)).save(jpeg);
  const Heartbeat heart;
  std::printf("4000 x 3000 JPEG to picture: %.0f\n",
              watch.UntilPicture([&] { marovia::OpenInStudio(jpeg); }));
  watch.Settle();
  for (const auto& [rows, cols] : {std::pair{512, 512}, {2048, 2048}, {6000, 8000}}) {
    const QString file = folder.filePath(QString("%1.pgm").arg(rows));
    marovia::WriteBytes(file, marovia::WritePgm(Tiled(rows, cols)));
    watch.UntilPicture([&] { marovia::OpenInStudio(file); });
    watch.Settle();
    for (const marovia::FileKind kind :
         {marovia::FileKind::kAwb, marovia::FileKind::kAwf, marovia::FileKind::kAwh}) {
      watch.Choose(kind);
      const std::string name(marovia::Extension(kind));
      std::printf("%d x %d, %s: %.1f\n", cols, rows, name.c_str(), watch.SliderMoves());
    }
  }
  std::printf("longest block: %.0f\n", heart.Longest());
  return 0;
}
