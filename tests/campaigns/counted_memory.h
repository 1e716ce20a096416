// The memory that a program holds, counted where it is allocated.
#pragma once

#include <cstdint>

namespace marovia::test {

// The bytes held now, and the most held since the count was begun anew.
std::int64_t HeldBytes();
std::int64_t MostHeldBytes();
void CountAnew();

}  // namespace marovia::test
