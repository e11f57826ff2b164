// A report as a text that people or programs read, written piece by piece.
#pragma once

#include <string>

#include "report/file_report.h"

namespace tremvik::report {

/// One form of report. The pieces, one after the other, are the whole text, UTF-8. A form that needs all
/// files before it can begin gives everything from `End`.
class Format {
 public:
  Format() = default;
  virtual ~Format() = default;
  Format(const Format&) = delete;
  Format& operator=(const Format&) = delete;

  [[nodiscard]] virtual std::string Begin(const Heading& heading) = 0;
  [[nodiscard]] virtual std::string File(const FileReport& file) = 0;
  [[nodiscard]] virtual std::string End(const Summary& summary) = 0;
};

}  // namespace tremvik::report
