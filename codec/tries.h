// Runs of which a search may drop what they make.
#pragma once

#include <functional>

#include "marovia/codec.h"

namespace marovia {

// What hears the reports of such a run: nobody, but CompressOptions::onTry may end it.
template <class Report>
std::function<void(const Report&)> TryListener(const CompressOptions& options) {
  if (!options.onTry) return {};
  return [onTry = options.onTry](const Report&) { onTry(); };
}

}  // namespace marovia
