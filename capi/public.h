// The C interface as the shared library shows it: the header itself is free of attributes.
#pragma once

#pragma GCC visibility push(default)
#include "marovia/marovia.h"
#pragma GCC visibility pop
