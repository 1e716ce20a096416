// The loops over coefficients, compiled for any processor and for one with wide vectors.
#pragma once

#include <span>

#include "context/context_codec.h"
#include "context/counters.h"
#include "context/field.h"
#include "context/lanes.h"
#include "context/passes.h"
#include "context/range_coder.h"

namespace marovia {

struct ContextKernels {
  // Takes the plane up: before its first pass.
  void (*begin)(ContextField& field, int plane);
  void (*write)(ContextField& field, int plane, Pass pass, Counters& counters, RangeWriter& coder);
  void (*read)(ContextField& field, int plane, Pass pass, Counters& counters, RangeReader& coder);

  // Cuts a band's row of coefficients into bit planes; returns their magnitudes or'ed. With
  // single-precision samples a coefficient is sixteen times the sample, truncated.
  std::uint32_t (*cutWhole)(ContextField& field, const BandField& band, int r,
                            std::span<const std::int32_t> row);
  std::uint32_t (*cutSingle)(ContextField& field, const BandField& band, int r,
                             std::span<const float> row);
  // The other way round, from what has been read.
  void (*joinWhole)(const ContextField& field, const BandField& band, int r,
                    const Reconstruction& how, std::span<std::int32_t> row);
  void (*joinSingle)(const ContextField& field, const BandField& band, int r,
                     const Reconstruction& how, std::span<float> row);
};

const ContextKernels& PlainKernels();
// Null where this processor, or this build, has none.
const ContextKernels* WideKernels();
const ContextKernels& BestKernels();

// EncodeContext and DecodeContext with one of them.
Bytes EncodeContextWith(const ContextKernels& kernels, const Image& image,
                        const ContextOptions& options);
ContextPicture DecodeContextWith(const ContextKernels& kernels, ByteView file,
                                 const ContextDecodeOptions& options);

}  // namespace marovia
