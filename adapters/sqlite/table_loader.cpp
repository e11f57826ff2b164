#include "adapters/sqlite/table_loader.h"

#include <fmt/format.h>

#include <algorithm>

namespace tremvik {
namespace {

constexpr std::size_t kKept = 10;
constexpr std::size_t kLongest = 300;  // bytes of a problem's words, which may quote a file

// Cut between characters.
std::string Shortened(std::string text) {
  if (text.size() <= kLongest) return text;
  std::size_t end = kLongest;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
    --end;
  return text.substr(0, end) + "…";
}

}  // namespace

void Problems::Note(std::string_view words) { Keep(fmt::format("{}: {}.", where_, words)); }

void Problems::Note(int line, std::string_view words) {
  Keep(fmt::format("{}:{}: {}.", where_, line, words));
}

void Problems::Keep(std::string problem) {
  if (++count_ <= kKept) kept_.push_back(Shortened(std::move(problem)));
}

void Problems::MoveInto(std::vector<std::string>& all) {
  all.insert(all.end(), std::make_move_iterator(kept_.begin()), std::make_move_iterator(kept_.end()));
  if (count_ > kKept) all.push_back(fmt::format("{}: e mais {} problema(s).", where_, count_ - kKept));
}

void TableLoader::Load(std::string_view csv) {
  try {
    text::CsvReader reader(csv);
    ReadRows(reader);
  } catch (const text::CsvError& error) {
    problems_.Note(error.line, error.words);
  }
  if (lines_.empty() && problems_.empty()) problems_.Note(1, "a tabela não tem nenhuma linha");
  if (problems_.empty()) CheckRows();
}

// Which column of the file each column of the table is; empty after a problem.
std::vector<std::size_t> TableLoader::ReadHeader(text::CsvReader& reader) {
  std::vector<std::string> names;
  reader.Next(names);
  std::vector<std::size_t> places;
  for (const ReferenceColumn& column : table_.columns) {
    const auto found = std::ranges::find(names, column.name);
    if (found == names.end()) {
      problems_.Note(
          1, fmt::format("falta a coluna '{}' (primeira linha: nomes, separados por vírgula)", column.name));
    } else if (std::find(found + 1, names.end(), column.name) != names.end()) {
      problems_.Note(1, fmt::format("a coluna '{}' aparece mais de uma vez", column.name));
    }
    places.push_back(static_cast<std::size_t>(found - names.begin()));
  }
  for (const std::string& name : names) {
    if (std::ranges::count(table_.columns, name, &ReferenceColumn::name) == 0)
      problems_.Note(1, fmt::format("a coluna '{}' não é desta tabela", name));
  }
  if (!problems_.empty()) places.clear();
  return places;
}

void TableLoader::ReadRows(text::CsvReader& reader) {
  const auto places = ReadHeader(reader);
  if (places.empty()) return;
  std::string parameters("?");
  for (std::size_t i = 1; i < places.size(); ++i)
    parameters += ", ?";
  sqlite::Statement insert =
      database_.Prepare(fmt::format("INSERT INTO {} VALUES ({})", Quoted(table_.name), parameters));
  for (std::vector<std::string> fields; reader.Next(fields);) {
    if (fields.size() != places.size()) {
      problems_.Note(reader.line(),
                     fmt::format("a linha tem {} campo(s), devia ter {}", fields.size(), places.size()));
      continue;
    }
    for (std::size_t i = 0; i < places.size(); ++i)
      insert.Bind(static_cast<int>(i) + 1, std::string_view{fields[places[i]]});
    insert.Run();
    lines_.push_back(reader.line());
  }
}

void TableLoader::CheckRows() {
  for (const InvalidRow& row : InvalidRows(database_, table_, true)) {
    problems_.Note(lines_.at(static_cast<std::size_t>(row.rowid - 1)),
                   fmt::format("{}: {}", row.key, row.words));
  }
}

}  // namespace tremvik
