// What the studio works on: an image or a file, the length that is looked at, the curves. All work
// is done by another thread; what comes of it arrives here, on the window's.
#pragma once

#include <QObject>
#include <QString>
#include <map>
#include <set>

#include "explore/difference.h"
#include "window/worker.h"

namespace marovia {

// An image to be coded by a recipe, or a compressed file, beside its source if there is one.
struct Subject {
  QString name;
  SharedImage source;
  Recipe recipe;
  Bytes file = {};         // empty where the source is to be coded
  std::int64_t bytes = 0;  // to look at first, if not 0
  QString note = {};       // what of its file the image does not hold
};

// What lies over the picture, computed from all its pixels.
enum class Layer { kNone, kDifference, kMagnitude };

struct Sight {
  Look look;
  Pyramid picture;
  Pyramid layer;
  double milliseconds = 0;  // that it took
};

struct KindCurve {
  FileKind kind;
  std::map<std::int64_t, std::optional<float>> psnrOfBytes;

  // Between the points; none outside them.
  [[nodiscard]] std::optional<double> PsnrAt(std::int64_t bytes) const;
};

class Session : public QObject {
 public:
  using Told = std::function<void()>;

  // Something came: a source to be shown; a master, and with it the lengths to choose from; a
  // picture; its measures; a point of a curve.
  Told onSource, onMaster, onPicture, onMeasures, onCurve;
  std::function<void(std::int64_t bytes)> onFound;
  std::function<void(const QString& what)> onFailure;
  // From 0 to 1; 1 at its end.
  std::function<void(double part)> onProgress;

  // In place of all before. Reads on the other thread; an Error is told.
  void Open(const std::function<Subject()>& read);
  // The same source, coded otherwise.
  void Recode(const Recipe& recipe);
  void LookAt(std::int64_t bytes);
  void SetLayer(Layer layer, int gain);
  // Tells the bytes of the first picture that good.
  void Find(double psnr);
  // Curves of other kinds beside its own.
  void Compare(const std::set<FileKind>& kinds);

  // Of what came last.
  [[nodiscard]] const Subject& TheSubject() const { return subject_; }
  [[nodiscard]] const Pyramid& Source() const { return source_; }
  [[nodiscard]] const RateScale& Scale() const { return master_.scale; }
  [[nodiscard]] const FileInfo& Info() const { return master_.info; }
  [[nodiscard]] const Sight& TheSight() const { return sight_; }
  [[nodiscard]] const std::vector<KindCurve>& Curves() const { return curves_; }
  [[nodiscard]] double CodingMilliseconds() const { return master_.milliseconds; }
  [[nodiscard]] std::int64_t Asked() const { return asked_; }
  // Whether the picture is that of the bytes asked for.
  [[nodiscard]] bool IsUpToDate() const { return shown_ == asked_; }

 private:
  struct Line;
  struct Master {
    RateScale scale;
    FileInfo info;
    double milliseconds = 0;  // that it took to make
    bool whole = true;        // no longer one is to follow
  };
  using SharedExplorer = std::shared_ptr<Explorer>;

  [[nodiscard]] Worker::Work Guarded(Worker::Work work);
  void Deliver(int epoch, Told news);
  void Start(const std::function<Subject()>& read);
  bool Prepare(const Subject& subject, int epoch, const Watch& watch);
  void TakeSource(const Subject& subject, const SharedImage& kept, const Pyramid& source);
  void TakeMaster(const Master& master, const SharedExplorer& explorer);
  void SetRegion();
  void CodeWhole();
  void DrawCurves();
  bool DrawLine(Line& line, int epoch, const Watch& watch);
  void TakePoint(FileKind kind, const CurvePoint& point);

  int epoch_ = 0;  // of what was opened or coded; what comes of an earlier one is dropped
  Subject subject_;
  Pyramid source_;
  SharedExplorer explorer_;  // none before there is a master
  Master master_;
  std::int64_t asked_ = 0;
  std::int64_t shown_ = -1;
  Layer layer_ = Layer::kNone;
  int gain_ = 1;
  Sight sight_;
  std::set<FileKind> compared_;
  std::vector<KindCurve> curves_;
  Worker worker_;  // ends first
};

}  // namespace marovia
