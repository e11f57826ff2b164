// A fault shown in its place: the line, a column ruler, the characters that are wrong marked.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "examination/findings.h"
#include "text/style.h"

namespace tremvik::report {

/// Where a fault is and what stands there.
struct Place {
  int linha = 0;              ///< from 1
  std::string_view registro;  ///< UTF-8; empty when the code itself is unknown
  std::string_view campo;     ///< "Tamanho" where it is the line's length that is wrong
  int coluna = 0;   ///< of the field, from 1, or of the first character missing or too many; 0 for none
  int largura = 0;  ///< of the field, or how many characters are missing or too many
  std::string_view valor;  ///< UTF-8

  /// True when it is the line's length that is wrong.
  [[nodiscard]] bool MarksLength() const { return campo == "Tamanho"; }
};
[[nodiscard]] Place PlaceOf(const Finding& finding);

/// One line where it stands in its file. A default one stands for a line that the file does not have.
struct LineBytes {
  std::string_view bytes;   ///< from its first character on, its end and what follows included
  std::size_t content = 0;  ///< how many of them are the line's own
  bool exists = false;
};

/// Finds lines in a file's bytes; asked in rising order, it reads them once. A line ends at CR LF, a bare LF
/// or a bare CR.
class LineFinder {
 public:
  /// `bytes` must outlive this object.
  explicit LineFinder(std::string_view bytes) : bytes_(bytes) {}
  [[nodiscard]] LineBytes Find(int linha);

 private:
  std::string_view bytes_;
  std::size_t at_ = 0;
  int line_ = 1;  ///< the one that begins at `at_`
};

/// Columns from 1, both ends included.
struct Columns {
  std::int64_t first = 0;
  std::int64_t last = -1;
};

/// The columns of a place's field; none where it names no column.
[[nodiscard]] Columns FieldColumns(const Place& place);

/// What is wrong within the field, in rising order: where digits are asked, the characters that are none; in
/// a field without such, the whole field.
[[nodiscard]] std::vector<Columns> WrongColumns(const Place& place, const LineBytes& line);

/// "linha 96, registro 10, campo Valor, colunas 24 a 38, valor "0O0"".
[[nodiscard]] std::string PlaceInWords(const Place& place);

/// The ruler, the line and the marks under it, each ended by LF; a line that is wider than the look is cut
/// around the field. A line that is not there is said to be missing.
[[nodiscard]] std::string RenderLine(const Place& place, const LineBytes& line, const text::Look& look);

/// Of how many of a line's bytes `RenderLine` makes use at most.
[[nodiscard]] std::int64_t BytesToRender(const Place& place, const text::Look& look);

/// Sentences, each ended by LF, where `message` names another line or other columns than the true ones.
[[nodiscard]] std::string Notes(const Place& place, std::string_view message);

/// The columns that a message names after "Posição" ("Posição 1 ou 144" gives 1 and 144).
[[nodiscard]] std::vector<int> NamedColumns(std::string_view message);

}  // namespace tremvik::report
