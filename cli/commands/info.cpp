#include <array>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <memory>
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
#include "cli/help.h"
#include "cli/many_files.h"
#include "cli/values.h"
#include "files/input_file.h"

namespace marovia::cli {
namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  marovia info photo.awh\n"
    "  marovia info --json photo.awh\n"
    "  marovia info -r .  of all files in a folder and in its folders\n"
    "\n"
    "Reads the header of a compressed file without decoding it. FILE may be - for\n"
    "standard input; --format then says what it holds. Of several files each comes under\n"
    "its name, or with --json as one line, and one that fails stops no other.\n";

constexpr std::size_t kNameWidth = 17;

struct InfoArguments {
  CommonOptions common;
  FileArguments files;
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

ExitStatus InfoOf(const InfoArguments& arguments, const std::string& name, bool isOfMany,
                  Console& console) {
  console.SetInput(name);
  InputFile file(name, arguments.common.maxPixels);
  const Bytes start = file.Read(kMostHeaderBytes);
  const FileKind kind = KindOfInput(start, name, arguments.formats.kind);
  CheckIsOfKind(start, kind, arguments.common.maxPixels);
  const std::int64_t bytes = std::ssize(start) + file.CountRest();
  const FileInfo info = InspectStart(start, bytes, kind, arguments.common.maxPixels);
  if (!arguments.common.json) {
    console.Print((isOfMany ? TitleOf(name) : "") + TextOf(info));
    return ExitStatus::kDone;
  }
  Json json = {{"file", name}, {"bytes", bytes}};
  json.update(JsonOf(info));
  console.Print(json);
  return ExitStatus::kDone;
}

ExitStatus RunInfo(const InfoArguments& arguments, Console& console) {
  const FileArguments& files = arguments.files;
  if (IsOneName(files)) return InfoOf(arguments, files.names[0], false, console);
  const FileWork work = [&](const FileTask& task, Console& voice) {
    return InfoOf(arguments, task.input, true, voice);
  };
  return RunManyFiles(files, arguments.common, {work, IsCompressedFile, {}}, console);
}

}  // namespace

void AddInfo(CLI::App& tool, Action& action) {
  auto arguments = std::make_shared<InfoArguments>();
  CLI::App& command = AddCommand(tool, "info", "Tell what a compressed file holds");
  AddName(command, arguments->files, "FILE", "The compressed file, or several");
  AddMoreNames(command, arguments->files);
  AddInputOptions(command, arguments->files, nullptr);
  AddFormatOption(command, arguments->formats, false);
  AddCommonOptions(command, arguments->common);
  command.formatter(std::make_shared<HelpFormatter>(std::vector<std::string>{"[OPTIONS] FILE..."}));
  command.footer(kExamples);
  SetAction<InfoArguments>(command, action, arguments, &RunInfo);
}

}  // namespace marovia::cli
