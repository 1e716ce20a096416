#include "codec/report_text.h"

#include "base/number_text.h"

namespace marovia {

std::string PassReportText(const PassReport& report, int rows, int cols, bool decoded) {
  const double bitRate = report.bits / (static_cast<double>(cols) * rows);
  std::string text = "Pass " + NumberText(report.pass) +
                     ".  Threshold = " + NumberText(report.threshold) + ".\r\n";
  text += decoded ? "Number of significant values decoded:  "
                  : "Number of significant values encoded:  ";
  text += NumberText(report.significant) + "\r\n";
  text += "Bit rate:  " + NumberText(bitRate) + "\r\n";
  return text;
}

}  // namespace marovia
