#include "adapters/sqlite/table_writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <optional>

#include "runtime/numbers.h"

namespace tremvik {
namespace {

constexpr std::size_t kMostDigits = 18;

std::optional<std::int64_t> Integer(std::string_view text) {
  if (!OnlyDigits(text) || text.size() > kMostDigits) return std::nullopt;
  std::int64_t value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

// "1.234,56" as 123456.
std::optional<std::int64_t> Cents(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  const auto comma = text.find(',');
  if (comma == std::string_view::npos || text.size() != comma + 3) return std::nullopt;
  std::string digits(text);
  std::erase_if(digits, [](char c) { return c == '.' || c == ','; });
  const auto value = Integer(digits);
  return value && negative ? -*value : value;
}

// Makes a date or month of that form ISO; a text that has not the form stays as it is.
void MakeIso(Form form, std::string& text) {
  const auto slashes = [&](std::size_t first, std::size_t second) {
    return text.size() == 10 && text[first] == '/' && text[second] == '/';
  };
  if (form == Form::kDate && slashes(4, 7)) {
    text[4] = text[7] = '-';
  } else if (form == Form::kMonth && slashes(2, 5)) {
    text = text.substr(6) + "-" + text.substr(3, 2);
  } else if (form == Form::kPeriod && text.size() == 6 && OnlyDigits(text)) {
    text.insert(4, 1, '-');
  }
}

bool OnlyZeros(std::string_view text) { return text.find_first_not_of('0') == std::string_view::npos; }

void BindNumber(sqlite::Statement& insertion, int parameter, std::optional<std::int64_t> number) {
  if (number) {
    insertion.Bind(parameter, *number);
  } else {
    insertion.BindNull(parameter);
  }
}

}  // namespace

void TableWriter::Campo(std::string_view nome, std::string_view texto) {
  const auto column = std::ranges::find(table_.columns, nome, &StoredColumn::field);
  const auto place = static_cast<std::size_t>(column - table_.columns.begin());
  if (column == table_.columns.end() || cells_[place].given) {
    Clear();
    throw RuntimeError(erro::kArgumentoInvalido, fmt::format("Campo desconhecido ou repetido: '{}'.", nome));
  }
  cells_[place].text = texto;
  cells_[place].given = true;
}

void TableWriter::BindFields(sqlite::Statement& insertion) {
  int parameter = KeyColumns(table_);
  for (std::size_t i = 0; i < cells_.size(); ++i) {
    Cell& cell = cells_[i];
    const Form form = table_.columns[i].form;
    ++parameter;
    if (form == Form::kInteger && cell.given && Integer(cell.text)) {
      insertion.Bind(parameter, *Integer(cell.text));
    } else if (!cell.given || (form == Form::kPeriod && OnlyZeros(cell.text))) {
      insertion.BindNull(parameter);
    } else {
      MakeIso(form, cell.text);
      insertion.Bind(parameter, std::string_view{cell.text});
    }
    if (form == Form::kValue)
      BindNumber(insertion, ++parameter, cell.given ? Cents(cell.text) : std::nullopt);
  }
}

void TableWriter::Gravar() {
  try {
    sqlite::Statement& insertion = temporary_.Insertion(table_.kind);
    const RecordKey key = temporary_.NewKey(table_.kind);
    insertion.Bind(1, key.declaration).Bind(2, key.line);
    if (table_.parent) insertion.Bind(3, key.parent);
    BindFields(insertion);
    insertion.Run();
  } catch (...) {
    Clear();
    throw;
  }
  Clear();
}

void TableWriter::Clear() {
  for (Cell& cell : cells_)
    cell.given = false;
}

}  // namespace tremvik
