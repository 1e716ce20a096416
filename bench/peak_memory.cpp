#include <array>
#include <functional>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "marovia/codec.h"
#include "marovia/error.h"

#include "bench/figures.h"
#include "bench/source_image.h"
#include "bench/table_text.h"

namespace marovia::bench {
namespace {

using Work = std::function<Bytes()>;

struct Outcome {
  Bytes bytes;
  double peak;  // the most bytes of memory that the process ever held
};

[[noreturn]] void RunInChild(const Work& work, int out) {
  try {
    const Bytes bytes = work();
    for (std::size_t at = 0; at < bytes.size();) {
      const ssize_t written = write(out, bytes.data() + at, bytes.size() - at);
      if (written < 0) _exit(1);
      at += static_cast<std::size_t>(written);
    }
    _exit(0);
  } catch (...) {
    _exit(1);
  }
}

Bytes ReadAll(int in) {
  Bytes bytes;
  std::array<std::uint8_t, 65536> part{};
  for (ssize_t count = 0; (count = read(in, part.data(), part.size())) > 0;) {
    bytes.insert(bytes.end(), part.begin(), part.begin() + count);
  }
  return bytes;
}

// Runs the work in a process of its own. What this process holds counts there too.
Outcome RunApart(const Work& work) {
  constexpr double kUnit = 1024;  // of ru_maxrss
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) Fail(Errc::kIo, "A pipe cannot be made.");
  const pid_t child = fork();
  if (child < 0) Fail(Errc::kIo, "A process cannot be made.");
  if (child == 0) RunInChild(work, ends[1]);
  close(ends[1]);
  Outcome outcome{ReadAll(ends[0]), 0};
  close(ends[0]);
  int status = 0;
  rusage usage{};
  if (wait4(child, &status, 0, &usage) != child || status != 0) {
    Fail(Errc::kIo, "A run whose memory was to be measured failed.");
  }
  outcome.peak = kUnit * static_cast<double>(usage.ru_maxrss);
  return outcome;
}

std::string Tenths(double value) {
  const std::string text = std::to_string(value);
  return text.substr(0, text.find('.') + 2);
}

}  // namespace

std::string MemoryTable(const std::string& imageFile, int side) {
  const Source tile = ReadSource(imageFile);
  const double pixels = static_cast<double>(side) * side;
  const double withImage = RunApart([&] {
                             const Source source = Repeated(tile, side);
                             return Bytes{source.image(side - 1, side - 1)};
                           }).peak;
  std::string text = MarkdownHead({"codec", "compress (goal 24)", "decompress (goal 20)"});
  for (const FileKind kind : {FileKind::kAwb, FileKind::kAwf, FileKind::kAwg, FileKind::kAwh}) {
    CompressOptions options{.kind = kind};
    if (kind == FileKind::kAwg) options.wavelet = WaveletKind::kInteger53;
    const Outcome packed =
        RunApart([&] { return Compress(Repeated(tile, side).image, options).file; });
    const double withFile = RunApart([] { return Bytes{}; }).peak;
    const Outcome back =
        RunApart([&] { return Bytes{Decompress(packed.bytes, kind).image(0, 0)}; });
    text += MarkdownRow({std::string(Extension(kind)), Tenths((packed.peak - withImage) / pixels),
                         Tenths((back.peak - withFile) / pixels)});
  }
  return text;
}

}  // namespace marovia::bench
