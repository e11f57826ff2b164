#pragma once

#include <string>
#include <string_view>

#include "report/format.h"

namespace tremvik::report {

/// One page for people that needs nothing but itself: the sums, the findings by rule and by file, each in its
/// line, and what the rules ask. It shows the first `kMostFindings` findings and as many files at most, and
/// says so where there are more.
class HtmlFormat final : public Format {
 public:
  static constexpr std::size_t kMostFindings = 2000;

  [[nodiscard]] std::string Begin(const Heading& heading) override;
  [[nodiscard]] std::string File(const FileReport& file) override;
  [[nodiscard]] std::string End(const Summary& summary) override;

 private:
  void AddFile(const FileReport& file);

  std::string head_;
  std::string rows_;      ///< of the table of files
  std::string sections_;  ///< the findings, file by file
  std::size_t files_ = 0;
  std::size_t findings_ = 0;  ///< shown
  std::size_t left_out_ = 0;  ///< findings that are not
};

}  // namespace tremvik::report
