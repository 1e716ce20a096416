#include "base/parallel.h"

#include <algorithm>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

namespace marovia {
namespace {

[[maybe_unused]] constexpr int kMostThreads = 64;
// A thread starts in some 20 microseconds; so many pixels take five times that in any step.
[[maybe_unused]] constexpr std::size_t kLeastPixels = std::size_t{1} << 17;

}  // namespace

Share::Range Share::Of(std::size_t size, std::size_t unit) const {
  const std::size_t units = (size + unit - 1) / unit;
  const auto begin = [&](int i) {
    return std::min(size,
                    units * static_cast<std::size_t>(i) / static_cast<std::size_t>(count) * unit);
  };
  return {begin(index), begin(index + 1)};
}

#ifdef __STDCPP_THREADS__

int UsefulThreads(int threads, std::size_t pixels) {
  if (threads == 0) threads = static_cast<int>(std::thread::hardware_concurrency());
  const auto worth = static_cast<int>(std::min<std::size_t>(pixels / kLeastPixels, kMostThreads));
  return std::max(1, std::min(threads, worth));
}

void RunShares(int count, const std::function<void(Share)>& work) {
  if (count == 1) return work({0, 1});
  std::vector<std::exception_ptr> thrown(static_cast<std::size_t>(count));
  const auto run = [&](int i) noexcept {
    try {
      work({i, count});
    } catch (...) {
      thrown[static_cast<std::size_t>(i)] = std::current_exception();
    }
  };
  {
    std::vector<std::jthread> others;
    others.reserve(thrown.size());
    for (int i = 1; i < count; ++i) {
      try {
        others.emplace_back(run, i);
      } catch (const std::system_error&) {
        run(i);
      }
    }
    run(0);
  }
  for (const std::exception_ptr& first : thrown) {
    if (first) std::rethrow_exception(first);
  }
}

#else

int UsefulThreads(int /*threads*/, std::size_t /*pixels*/) {
  return 1;
}

void RunShares(int count, const std::function<void(Share)>& work) {
  for (int i = 0; i < count; ++i) work({i, count});
}

#endif

}  // namespace marovia
