#include "fuzz/targets.h"

#include <array>
#include <stdexcept>

namespace marovia::fuzz {

std::span<const NamedTarget> Targets() {
  static constexpr std::array<NamedTarget, 6> kTargets = {{{"decode", &Decode},
                                                           {"cut", &Cut},
                                                           {"read_images", &ReadImages},
                                                           {"round_trip", &RoundTrip},
                                                           {"decode_plainly", &DecodePlainly},
                                                           {"encode_plainly", &EncodePlainly}}};
  return kTargets;
}

void Promise(bool holds, const char* promise) {
  if (!holds) throw std::logic_error(promise);
}

}  // namespace marovia::fuzz
