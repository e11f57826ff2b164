// Case tables: files, and what the import must answer to them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "component/tremvik.h"
#include "sample/file_builder.h"
#include "tests/support/memory_host.h"

namespace tremvik::test {

using sample::FileBuilder;
using sample::Split;

/// A field as the file's makers know it: UTF-8 name, 1-based column, width. Written down in cases/fields.txt
/// a second time, so that the program's own layouts are tested too.
struct Column {
  std::string record, name;
  int position = 0, width = 0;
};
/// All of them, and the one of that name.
[[nodiscard]] const std::vector<Column>& Columns();
[[nodiscard]] const Column& ColumnOf(std::string_view record, std::string_view name);

/// One instance on a host of its own.
struct Instance {
  MemoryHost host;
  Tremvik tremvik{host.host()};

  /// One import of a file with these bytes.
  void Import(std::string_view bytes);
  /// True when the last box was that of a success.
  [[nodiscard]] bool Succeeded() const;
};

/// The line of an accepted file.
inline constexpr int kAccepted = 0;

/// A file and its fault. `edits` are those of FileBuilder; one with "~" in front happens between the text
/// passes and the binary run. A fault is told on `line`, in two texts; a run-time error ("13 - ...") is one
/// text.
struct Case {
  std::string_view kinds, edits;
  int line = kAccepted;
  std::string_view first = {}, second = {};
};

/// Imports the case's file on a new instance and holds everything that the user and the host see to it.
/// Returns the place that was told, empty after a success.
Place Check(const Case& given);

/// A row of a table of cases/: its cells, and the file and line where it stands.
struct Row {
  std::string where;
  std::vector<std::string> cells;
};
/// The rows of a table. A row ends in "|", its cells are parted by " | " and filled up to `cells`; "\x0A" is
/// a byte; a cell that is a quotation mark alone says what the last one above it said; a row with {a b c}
/// stands for one with each of them; "#" begins a comment line.
[[nodiscard]] std::vector<Row> ReadTable(std::string_view name, std::size_t cells);

/// Checks every row of a table: "kinds | edits | outcome | first | second | place | reason |". `outcome` is
/// "ok", the line of the refusal, or "200112/200201:3": accepted in one period, refused at line 3 in the
/// other. `place` is where the fault really is, "2.Q07", where the texts may name another field.
void CheckTable(std::string_view name);

/// The boxes shown, to be compared.
using Boxes = std::vector<Box>;
/// The last lines of the log, as many as `count`.
[[nodiscard]] std::vector<std::string> Tail(const std::vector<std::string>& log, std::size_t count);

/// The message of a fault, as the user reads it.
[[nodiscard]] std::string Report(std::string_view first, std::string_view second, int line);

}  // namespace tremvik::test
