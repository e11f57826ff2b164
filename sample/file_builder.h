// Small files made to measure: the records asked for, valid as they come, then changed field by field.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "layout/kinds.h"

namespace tremvik::sample {

/// A file of the records asked for, all values valid for period 201203 with the default reference tables (of
/// one declaration's CFOP details, the first two), the quantities and sums right.
class FileBuilder {
 public:
  /// `kinds` are the records after the master record, in file order: "05 07*3 20 25". Where they name 01
  /// themselves, the file has its master records there alone. An unknown code raises std::logic_error.
  explicit FileBuilder(std::string_view kinds);

  /// Sets a field: "07.Data", or "07#2.Data" of the second record of that kind. A shorter value is filled up
  /// with zeros in front (texts with blanks behind), a longer one raises std::logic_error, as does an unknown
  /// field; "Separadores" is taken as it is. The value is Windows-1252; "\x0A" in it is a byte.
  FileBuilder& With(std::string_view field, std::string_view value);
  /// Several of them: "07.Data=20120229; 07#2.Valor=1". "cut=2" takes bytes from the end of the file.
  FileBuilder& Edit(std::string_view edits);

  /// One record's bytes, its line from 1, the separators included; NUL for what a cut takes of the last one.
  [[nodiscard]] std::string Record(int line) const;
  [[nodiscard]] int Lines() const { return static_cast<int>(records_.size()); }
  /// The line of the `ordinal`th record of a kind; std::logic_error where there is none.
  [[nodiscard]] int Line(std::string_view code, int ordinal = 1) const;
  [[nodiscard]] std::string Bytes() const;

 private:
  struct Built {
    const KindInfo* kind;
    std::string bytes;
  };

  void Append(std::string_view code);
  void Announce();
  void Set(Built& record, std::string_view field, std::string_view value);

  std::vector<Built> records_;
  ByKind<int> ordinals_{};  // of the records under one parent
  std::size_t cut_ = 0;
};

/// `text` with the byte in place of each "\x0A".
[[nodiscard]] std::string WithBytes(std::string_view text);

/// The pieces of `text` between separators, blanks before them removed, empty ones left out.
[[nodiscard]] std::vector<std::string_view> Split(std::string_view text, char separator);

}  // namespace tremvik::sample
