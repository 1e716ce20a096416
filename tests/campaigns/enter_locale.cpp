// Loaded before a program, puts it into the locale of its environment, in C and in C++, as the
// toolkit of a window does on its own.
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <locale>

namespace {

[[gnu::constructor]] void EnterLocale() {
  try {
    if (std::setlocale(LC_ALL, "") != nullptr) {
      std::locale::global(std::locale(""));
      return;
    }
  } catch (const std::exception&) {
  }
  std::fputs("the locale of the environment cannot be had\n", stderr);
  std::_Exit(99);
}

}  // namespace
