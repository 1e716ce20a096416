// What the command line tells the compress command.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <optional>
#include <string>

#include "marovia/codec.h"

#include "cli/file_arguments.h"
#include "cli/options.h"
#include "cli/values.h"

namespace marovia::cli {

struct CompressArguments {
  CommonOptions common;
  FileArguments files;
  std::optional<Method> method;
  std::optional<Coding> coding;
  std::optional<WaveletKind> wavelet;
  bool bestWavelet = false;
  std::optional<int> levels;
  std::optional<double> rate;
  std::optional<std::int64_t> bytes;
  std::optional<double> psnr;
  std::optional<double> ratio;
  std::optional<Region> region;
  std::optional<float> share;
  bool lossless = false;
  bool pad = true;
  bool convert = false;
  bool verify = false;
};

// --method to --pad, and --rate to --share.
void AddCodingOptions(CLI::App& command, CompressArguments& arguments);
void AddSizeOptions(CLI::App& command, CompressArguments& arguments);

// The choices, with those that no option made taken from the extension of OUT. One that an option
// contradicts is left to OutputName, which refuses it.
CompressArguments WithKindOf(const std::string& output, CompressArguments arguments);

// Error kInvalidArgument where the choices do not go together. A ratio waits for the image.
CompressOptions OptionsOf(const CompressArguments& arguments);

}  // namespace marovia::cli
