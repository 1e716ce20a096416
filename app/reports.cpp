#include "app/frm_main.h"
#include "base/number_text.h"
#include "codec/coders.h"
#include "codec/report_text.h"

namespace marovia {

void frmMain::SendMessage(std::string_view text) {
  Report.text = text;
  Report.selStart = 0;
  Report.selLength = 0;
  desktop_.Repaint(Report);
}

void frmMain::Note(std::string_view text) {
  SendMessage(text);
  note_ = text;
}

void frmMain::DropNote() {
  if (!note_.empty() && Report.text == note_) SendMessage("");
  note_.clear();
}

void frmMain::AppendToReport(std::string_view text) {
  Report.text += text;
  Report.selStart = 0;
  Report.selLength = Report.text.size();
  desktop_.Repaint(Report);
}

void frmMain::ReportData(std::int16_t pass, float threshold, std::int32_t significantCount,
                         std::int32_t bitCount) {
  const PassReport report{pass, threshold, significantCount, bitCount};
  AppendToReport(PassReportText(report, state.NumRows, state.NumCols, false));
}

void frmMain::ReportDataRec(std::int16_t pass, float threshold, std::int32_t significantCount,
                            std::int32_t bitCount) {
  const PassReport report{pass, threshold, significantCount, bitCount};
  AppendToReport(PassReportText(report, state.decodedRows, state.decodedCols, true));
}

void frmMain::ReportCompressedFile(const std::string& fileName, const Coder& coder) {
  const char* lead = coder.method == ScanMethod::kAswdr ? "\r\n" : "";
  Report.text += lead + ("Compressed file: " + fileName + "\r\n");
  Report.text += "To decompress this file, press the GO button.";
  Report.selStart = Report.text.size();
  Report.selLength = 0;
  desktop_.Repaint(Report);
}

void frmMain::ReportROICoordinates() {
  const Region region = GetROICoordinates();
  const auto corner = [](int row, int col) {
    return "corner: (" + TrimmedNumberText(row) + ", " + TrimmedNumberText(col) + ")";
  };
  SendMessage("Upper left " + corner(region.row1, region.col1) + "\r\nLower right " +
              corner(region.row2, region.col2));
}

}  // namespace marovia
