// The wavelet transforms sample by sample, and what the coders do to the coefficients around them.
#pragma once

#include <cstdint>
#include <span>

#include "marovia/codec.h"
#include "marovia/grid.h"
#include "marovia/image.h"

namespace marovia::literal {

// The most levels that an image may have; 0 or negative for sides of 5 or less.
int LevelLimit(WaveletKind wavelet, int rows, int cols);

// One line in place: image or low samples to interleaved coefficients (low at even places, high at
// odd ones), and back.
void SymmWavTr2D(WaveletKind wavelet, std::span<float> x);
void InvSymmWavTr2D(WaveletKind wavelet, std::span<float> x);

// Interleaved order to band order (low samples first), and back; each other's inverse only on even
// lengths.
void Perm(std::span<float> x);
void INVPERM(std::span<float> x);

// All levels in place, without the scaling: rows then columns of each level's low corner, and the
// reverse.
void TransformLevels(Grid<float>& transform, WaveletKind wavelet, int levels);
void InvertLevels(Grid<float>& transform, WaveletKind wavelet, int levels);

// Mode 1 doubles, any other mode halves: each band of level l by 2^l, the low band by
// 2^(levels + 1).
void ScalingOfWT(Grid<float>& transform, int levels, int mode);

// The mean of the low band, a whole number for the integer wavelets, taken out of it; and put back.
float SubtractAverage(Grid<float>& transform, WaveletKind wavelet, int levels);
void AddAverage(Grid<float>& transform, int levels, float mean);

// Rounded, without its sign, at most 255. Error kOverflow beyond 16 bits.
std::uint8_t ToPixel(float value);

// The whole way from pixels to (scaled) coefficients, and back.
Grid<float> TransformTheImage(const Image& image, WaveletKind wavelet, int levels);
Image InvertTheTransformQuant(Grid<float> quantized, WaveletKind wavelet, int levels);

}  // namespace marovia::literal
