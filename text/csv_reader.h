#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tremvik::text {

/// A CSV text that is not well formed: what is wrong (Portuguese) and on which line of the text.
struct CsvError {
  int line;
  std::string words;
};

/// Reads records of a CSV text as RFC 4180 has them, strictly: comma, double quotes, lines ended by LF or CR
/// LF, UTF-8. Quoted fields may hold commas, doubled quotes and line ends.
class CsvReader {
 public:
  /// `text` must outlive the reader. A UTF-8 mark at its beginning is skipped. Raises CsvError when it is not
  /// UTF-8 or holds a NUL character.
  explicit CsvReader(std::string_view text);

  /// Reads the next record into `fields`; false at the end. Raises CsvError.
  bool Next(std::vector<std::string>& fields);
  /// The line of the text, from 1, on which the last record began.
  [[nodiscard]] int line() const { return record_line_; }

 private:
  void ReadQuoted(std::string& field);
  void ReadPlain(std::string& field);
  [[nodiscard]] bool AtEnd() const { return at_ >= text_.size(); }
  [[nodiscard]] bool AtLineEnd() const;

  std::string_view text_;
  std::size_t at_ = 0;
  int line_ = 1;
  int record_line_ = 0;
};

}  // namespace tremvik::text
