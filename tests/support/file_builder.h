// Makes files for tests: valid as they come, then spoiled field by field.
#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tremvik::test {

/// A field as the file's makers know it: UTF-8 name, 1-based column, width. Written down here a second time,
/// so that the program's own layouts are tested too.
struct Column {
  std::string name;
  int position = 0;
  int width = 0;
};

/// All record codes, and the columns of one of them, the separators included.
[[nodiscard]] std::span<const std::string_view> Codes();
[[nodiscard]] const std::vector<Column>& ColumnsOf(std::string_view code);

/// A file of one master record and the records asked for, all values valid for period 201203, the quantities
/// and sums right.
class FileBuilder {
 public:
  /// `kinds` are the records after the master record, in file order: "05 07*3 20 25".
  explicit FileBuilder(std::string_view kinds);

  /// Sets a field: "07.Data", or "07#2.Data" of the second record of that kind. A shorter value is filled up
  /// with zeros in front (texts with blanks behind); "Separadores" is taken as it is.
  FileBuilder& With(std::string_view field, std::string_view value);
  /// Several of them: "07.Data=20120229; 07#2.Valor=1". "cut=2" takes bytes from the end of the file.
  FileBuilder& Edit(std::string_view edits);

  /// One record's bytes, its line from 1, the separators included; NUL for what a cut takes of the last one.
  [[nodiscard]] std::string Record(int line) const;
  [[nodiscard]] int Lines() const { return static_cast<int>(records_.size()); }
  /// The line of the `ordinal`th record of a kind.
  [[nodiscard]] int Line(std::string_view code, int ordinal = 1) const;
  [[nodiscard]] std::string Bytes() const;

 private:
  void Append(std::string_view code);
  void Announce();
  void Set(std::size_t record, std::string_view field, std::string_view value);

  std::map<std::string, int> ordinals_;  // of the records under one parent, by kind
  std::vector<std::string> codes_;
  std::vector<std::string> records_;
  std::size_t cut_ = 0;
};

/// The pieces of `text` between separators, blanks around them removed, empty ones left out.
[[nodiscard]] std::vector<std::string_view> Split(std::string_view text, char separator);

}  // namespace tremvik::test
