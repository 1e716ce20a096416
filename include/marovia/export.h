// What every C++ header of the library begins with: the language it needs, and the mark of what the
// shared library offers.
#pragma once

#if __cplusplus < 202002L
#error "Marovia's C++ headers need C++20 (-std=c++20); marovia/marovia.h serves older C++, and C."
#endif

#define MAROVIA_API [[gnu::visibility("default")]]
