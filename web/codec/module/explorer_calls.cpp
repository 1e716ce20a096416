// The explorer's calls for the host, as module.cpp has the library's.
#include <cstring>
#include <memory>

#include "explore/explorer.h"
#include "web/codec/module/answer.h"
#include "web/codec/module/arguments.h"
#include "web/codec/module/exports.h"
#include "web/codec/module/host.h"

namespace marovia::web {
namespace {

SharedImage Shared(const Samples& image) {
  return std::make_shared<const Image>(image.Copied());
}

bool TellHost(double part) {
  HostProgress(part);
  return true;
}

Bytes BytesOf(const std::vector<std::int64_t>& numbers) {
  const std::vector<double> values(numbers.begin(), numbers.end());
  Bytes bytes(values.size() * sizeof(double));
  std::memcpy(bytes.data(), values.data(), bytes.size());
  return bytes;
}

double PsnrOf(const std::optional<ErrorMeasures>& measures) {
  return measures ? OrNone(measures->psnr) : OrNone(std::optional<float>());
}

}  // namespace

MAROVIA_EXPORT(explorer_of_image)
Explorer* ExplorerOfImage(const Samples* source, const Choices* choices) {
  Recipe recipe{.kind = choices->Kind(), .wavelet = GivenWavelet(choices->wavelet)};
  recipe.levels = GivenInt(choices->levels);
  recipe.region = choices->region.Value();
  recipe.share = static_cast<float>(Given(choices->share).value_or(recipe.share));
  return new Explorer(Shared(*source), recipe);
}

MAROVIA_EXPORT(explorer_of_file) Explorer* ExplorerOfFile(const File* file) {
  const ByteView view = file->View();
  return new Explorer(Bytes(view.begin(), view.end()), file->kind, nullptr);
}

MAROVIA_EXPORT(explorer_code) void Code(Explorer* explorer, double rate) {
  explorer->Code(Given(rate).value_or(kWholeRate), TellHost);
}

// The lengths at which the curve has points, as doubles; rows, columns, wavelet, levels, kind, the
// fewest bytes and the most.
MAROVIA_EXPORT(explorer_master) const Answer* Master(const Explorer* explorer) {
  const FileInfo& info = explorer->Info();
  const RateScale& scale = explorer->Scale();
  return Give(BytesOf(explorer->Stops()),
              {1.0 * info.rows, 1.0 * info.cols, static_cast<double>(info.wavelet),
               1.0 * info.levels, static_cast<double>(info.kind),
               static_cast<double>(scale.Least()), static_cast<double>(scale.most)});
}

// Places on a logarithmic scale, from 0 to 1, and the lengths there.
MAROVIA_EXPORT(explorer_bytes_at) double BytesAt(const Explorer* explorer, double part) {
  return static_cast<double>(explorer->Scale().BytesAt(part));
}
MAROVIA_EXPORT(explorer_part_of) double PartOf(const Explorer* explorer, double bytes) {
  return explorer->Scale().PartOf(std::llround(bytes));
}

// The file; its kind.
MAROVIA_EXPORT(explorer_file) const Answer* FileOf(Explorer* explorer, double bytes) {
  TruncateResult cut = explorer->FileOf(std::llround(bytes));
  return Give(std::move(cut.file), {static_cast<double>(cut.kind)});
}

// The picture; bytes, rows, columns, sup-norm, root mean square, PSNR, similarity, PSNR in the
// region.
MAROVIA_EXPORT(explorer_look) const Answer* LookAt(Explorer* explorer, double bytes) {
  const Look look = explorer->LookAt(std::llround(bytes), TellHost).value();
  const ErrorMeasures none;
  const ErrorMeasures& measures = look.measures ? *look.measures : none;
  return Give(look.picture,
              {static_cast<double>(look.bytes), 1.0 * look.picture->Rows(),
               1.0 * look.picture->Cols(), measures.supNorm, measures.rootMeanSquare,
               PsnrOf(look.measures), OrNone(look.similarity), PsnrOf(look.inRegion)});
}

// Nothing; bytes, PSNR.
MAROVIA_EXPORT(explorer_point) const Answer* PointAt(Explorer* explorer, double bytes) {
  const CurvePoint point = explorer->PointAt(std::llround(bytes), {}).value();
  return Give(Bytes{}, {static_cast<double>(point.bytes), OrNone(point.psnr)});
}

MAROVIA_EXPORT(explorer_bytes_for_psnr) double BytesForPsnr(Explorer* explorer, double psnr) {
  return static_cast<double>(explorer->BytesForPsnr(psnr, TellHost).value());
}

}  // namespace marovia::web
