// Images made by formula, the same on every machine.
#pragma once

#include <random>
#include <string_view>

#include "marovia/image.h"

namespace marovia::test {

// gradient, checker, lcgnoise, rings, halves, black, flat or blobs: the images of the recorded
// results. Every division of their formulas truncates.
Image NamedImage(std::string_view name, int rows, int cols);

// A flat page, slopes, checks with hard edges, noise, and mixtures of them with a few dots.
Image RandomImage(std::mt19937& random, int rows, int cols);

// 0 to below - 1; not a distribution of the standard library, which differ between machines.
int RandomBelow(std::mt19937& random, int below);

}  // namespace marovia::test
