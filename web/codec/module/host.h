// What the module asks of the page, or whatever it runs in.
#pragma once

#include <cstddef>

extern "C" {

// Says what went wrong, by the number of a status and a sentence, and leaves the module for good:
// nothing unwinds, so that what was at work stays as it was, and its instance must not be used
// again.
[[noreturn]] [[clang::import_module("host"), clang::import_name("fail")]] void HostFail(
    int status, const char* message, std::size_t length);

// Told how much of a run is done, from 0 to 1.
[[clang::import_module("host"), clang::import_name("progress")]] void HostProgress(double part);
}
