#pragma once

namespace marovia {

inline constexpr const char* kVersion = "0.1.0";

}  // namespace marovia
