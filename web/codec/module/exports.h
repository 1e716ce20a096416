// The mark of a function that the host sees, under its own name.
#pragma once

#define MAROVIA_EXPORT(name) extern "C" [[clang::export_name(#name)]]
