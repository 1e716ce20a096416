// The whole of the library for C++. The header of its C interface is marovia/marovia.h.
#pragma once

// IWYU pragma: begin_exports
#include "marovia/codec.h"
#include "marovia/error.h"
#include "marovia/grid.h"
#include "marovia/image.h"
#include "marovia/measures.h"
#include "marovia/types.h"
#include "marovia/version.h"
// IWYU pragma: end_exports
