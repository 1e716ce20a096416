// Runs the codec, the image readers and the tool again and again, each time with the next
// allocation failing, alone or with all that follow. Every run must end with std::bad_alloc, or
// where it can do without that memory with the usual result; the tool with status 1 and one line.
// No memory may be lost, and the run after it must give what it always gives.
//
//   allocation_failures STEP IMAGE...
//
// reads these images; of the tool, which allocates far more often, only every STEP-th fails.
// Prints one line a group of runs; exit status 1 after the first that goes wrong.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <new>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "marovia/codec.h"
#include "marovia/image.h"

#include "tests/campaigns/failing_new.h"
#include "tests/campaigns/tool_run.h"
#include "tests/support/test_images.h"

namespace marovia {
namespace {

using test::MemoryShortage;
using test::Outcome;
using test::ReadAll;
using test::Shortage;
using test::ToolRun;

// A run of which the allocation number `nth` fails; none where that is 0.
using Run = std::function<Outcome(std::int64_t nth, Shortage shortage)>;

constexpr FileKind kKinds[] = {FileKind::kAwb, FileKind::kAwa, FileKind::kAwd, FileKind::kAwf,
                               FileKind::kAwg};

Outcome CallWithout(std::int64_t nth, Shortage shortage, const std::function<Bytes()>& call) {
  Outcome outcome;
  const MemoryShortage memory(nth, shortage);
  try {
    outcome.result = call();
  } catch (const std::bad_alloc&) {
  }
  outcome.struck = memory.Struck();
  return outcome;
}

Run OfLibrary(const std::function<Bytes()>& call) {
  return [call, usual = call()](std::int64_t nth, Shortage shortage) {
    const std::int64_t before = test::BlocksInUse();
    Outcome outcome = CallWithout(nth, shortage, call);
    if (test::BlocksInUse() != before + (outcome.result ? 1 : 0))
      throw std::runtime_error("loses memory");
    if (call() != usual) throw std::runtime_error("gives another result afterwards");
    return outcome;
  };
}

// False once the run has fewer allocations than that.
bool FailsWell(const Run& run, const Bytes& usual, std::int64_t nth, Shortage shortage) {
  const Outcome outcome = run(nth, shortage);
  if (outcome.result && *outcome.result != usual) throw std::runtime_error("gives another result");
  if (!outcome.result && !outcome.struck) throw std::runtime_error("runs out of memory by itself");
  return outcome.struck;
}

struct NamedRun {
  std::string name;
  Run run;
};

// The number of failures that the run went through.
std::int64_t FailEverywhere(const NamedRun& named, int step) {
  std::int64_t count = 0;
  const Bytes usual = named.run(0, Shortage::kOnce).result.value();
  for (const Shortage shortage : {Shortage::kOnce, Shortage::kToStay}) {
    std::int64_t nth = 1;
    try {
      for (; FailsWell(named.run, usual, nth, shortage); nth += step) ++count;
    } catch (const std::exception& error) {
      throw std::runtime_error(named.name + ", allocation " + std::to_string(nth) +
                               (shortage == Shortage::kOnce ? " failing: " : " and on failing: ") +
                               error.what());
    }
  }
  return count;
}

void FailGroup(const char* group, const std::vector<NamedRun>& runs, int step) {
  std::int64_t count = 0;
  for (const NamedRun& one : runs) count += FailEverywhere(one, step);
  std::printf("%s: %zu runs, %lld failures\n", group, runs.size(), static_cast<long long>(count));
}

Bytes BytesOf(const Image& image) {
  return {image.Samples().begin(), image.Samples().end()};
}

std::vector<NamedRun> CodecRuns() {
  const Image image = test::NamedImage("blobs", 43, 54);
  std::vector<NamedRun> runs;
  for (const FileKind kind : kKinds) {
    const std::string name(Extension(kind));
    CompressOptions options{.kind = kind, .rate = 2};
    if (kind == FileKind::kAwg) options.wavelet = WaveletKind::kInteger53;
    CompressOptions inRegion = options;
    inRegion.region = Region{5, 9, 20, 40};
    CompressOptions bytes = options;
    bytes.bytes = 500;
    const Bytes file = Compress(image, options).file;
    const auto size = static_cast<std::int64_t>(file.size());
    runs.push_back({"compress " + name, OfLibrary([=] { return Compress(image, options).file; })});
    runs.push_back({"region " + name, OfLibrary([=] { return Compress(image, inRegion).file; })});
    runs.push_back({"bytes " + name, OfLibrary([=] { return Compress(image, bytes).file; })});
    runs.push_back(
        {"decompress " + name, OfLibrary([=] { return BytesOf(Decompress(file, kind).image); })});
    runs.push_back({"rate " + name, OfLibrary([=] {
                      return Truncate(file, kind, {.rate = 0.5, .bytes = {}}).file;
                    })});
    runs.push_back({"shorten " + name, OfLibrary([=] {
                      return Truncate(file, kind, {.rate = {}, .bytes = size / 2}).file;
                    })});
  }
  return runs;
}

std::vector<NamedRun> ReaderRuns(std::span<char*> paths) {
  std::vector<NamedRun> runs;
  for (const char* path : paths) {
    const Bytes file = ReadAll(path);
    runs.push_back({path, OfLibrary([=] {
                      const Image image = ReadImage(file).image;
                      Bytes written = WritePgm(image);
                      const Bytes bmp = WriteBmp(image);
                      written.insert(written.end(), bmp.begin(), bmp.end());
                      return written;
                    })});
  }
  return runs;
}

std::vector<NamedRun> ToolRuns() {
  const Bytes image = WritePgm(test::NamedImage("blobs", 40, 56));
  std::ofstream("in.pgm", std::ios::binary)
      .write(reinterpret_cast<const char*>(image.data()), static_cast<long>(image.size()));
  std::vector<NamedRun> runs;
  for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
           {"compress", "in.pgm", ToolRun::kOutput, "--json", "--verify"},
           {"decompress", "in.awf", "-", "--rate", "0.3"},
           {"measure", "in.pgm", "in.pgm"},
           {"info", "in.awf", "--json"},
           {"truncate", "in.awf", ToolRun::kOutput, "--rate", "0.25"}}) {
    runs.push_back({"marovia " + words.front(), ToolRun(words)});
    if (words.front() == "compress") std::filesystem::copy_file(ToolRun::kOutput, "in.awf");
  }
  return runs;
}

int RunAll(int step, std::span<char*> images) {
  // Images are read before the folder changes.
  const std::vector<NamedRun> readers = ReaderRuns(images);
  std::string folder = (std::filesystem::temp_directory_path() / "marovia-XXXXXX").string();
  std::filesystem::current_path(::mkdtemp(folder.data()));
  int status = 0;
  try {
    FailGroup("codec", CodecRuns(), 1);
    FailGroup("readers", readers, 1);
    FailGroup("tool", ToolRuns(), step);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    status = 1;
  }
  std::filesystem::remove_all(folder);
  return status;
}

}  // namespace
}  // namespace marovia

int main(int argc, char** argv) {
  const std::span words(argv, static_cast<std::size_t>(argc));
  const int step = argc > 1 ? std::atoi(words[1]) : 0;
  if (step < 1) {
    std::fputs("usage: allocation_failures STEP IMAGE...\n", stderr);
    return 2;
  }
  return marovia::RunAll(step, words.subspan(2));
}
