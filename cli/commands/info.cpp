#include <array>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/number_text.h"
#include "cli/arguments.h"
#include "cli/coder_names.h"
#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/file_kinds.h"
#include "cli/values.h"
#include "files/input_file.h"

namespace marovia::cli {
namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  marovia info photo.awh\n"
    "  marovia info --json photo.awh\n"
    "\n"
    "Reads the header of a compressed file without decoding it. FILE may be - for\n"
    "standard input; --format then says what it holds.\n";

constexpr std::size_t kNameWidth = 17;

struct InfoArguments {
  CommonOptions common;
  std::string file;
  Formats formats;
};

using Lines = std::vector<std::pair<std::string_view, std::string>>;

std::string BudgetText(const FileInfo& info) {
  if (info.kind == FileKind::kAwh) return "none: any start of the file is one";
  if (!info.budget) return "none, lossless";
  const double rate = *info.budget / (static_cast<double>(info.rows) * info.cols);
  return std::to_string(*info.budget) + " bits, " + TrimmedNumberText(static_cast<float>(rate)) +
         " bits per pixel";
}

std::string FillText(const FileInfo& info) {
  if (!info.budget) return "has none";
  return info.fillsBudget ? "yes" : "no: cut short, or nothing was left to code";
}

Lines LinesOf(const FileInfo& info) {
  const std::string coded = info.codedRows == info.rows && info.codedCols == info.cols
                                ? ""
                                : ", coded as " + SizeText(info.codedRows, info.codedCols);
  return {{"kind", Extension(info.kind).data()},
          {"method", MethodOf(info.kind)},
          {"coding", CodingOf(info.kind) + (IsLossless(info.kind) ? ", lossless" : "")},
          {"wavelet", std::string(NameOf(info.wavelet))},
          {"levels", std::to_string(info.levels)},
          {"size", SizeText(info.rows, info.cols) + coded},
          {"mean", TrimmedNumberText(info.mean)},
          {"first threshold", TrimmedNumberText(std::ldexp(1.0, info.exponent))},
          {"budget", BudgetText(info)},
          {"bits present", std::to_string(info.bitsPresent)},
          {"fills budget", FillText(info)}};
}

std::string TextOf(const FileInfo& info) {
  std::string text;
  for (const auto& [name, value] : LinesOf(info)) {
    text += std::string(name) + ":" + std::string(kNameWidth - name.size(), ' ') + value + "\n";
  }
  return text;
}

ExitStatus RunInfo(const InfoArguments& arguments, Console& console) {
  console.SetInput(arguments.file);
  InputFile file(arguments.file, arguments.common.maxPixels);
  const Bytes start = file.Read(kMostHeaderBytes);
  const FileKind kind = KindOfInput(start, arguments.file, arguments.formats.kind);
  CheckIsOfKind(start, kind, arguments.common.maxPixels);
  const std::int64_t bytes = std::ssize(start) + file.CountRest();
  const FileInfo info = InspectStart(start, bytes, kind, arguments.common.maxPixels);
  if (!arguments.common.json) {
    console.Print(TextOf(info));
    return ExitStatus::kDone;
  }
  Json json = {{"file", arguments.file}, {"bytes", bytes}};
  json.update(JsonOf(info));
  console.Print(json);
  return ExitStatus::kDone;
}

}  // namespace

void AddInfo(CLI::App& tool, Action& action) {
  auto arguments = std::make_shared<InfoArguments>();
  CLI::App& command = AddCommand(tool, "info", "Tell what a compressed file holds");
  AddFile(command, "FILE", arguments->file, "The compressed file");
  AddFormatOption(command, arguments->formats, false);
  AddCommonOptions(command, arguments->common);
  command.footer(kExamples);
  SetAction<InfoArguments>(command, action, arguments, &RunInfo);
}

}  // namespace marovia::cli
