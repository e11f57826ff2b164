// The CSV reader of the reference tables' builder: what it read and wrote again reads the same.
#include "text/csv_reader.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/target.h"

namespace tremvik::fuzz {
namespace {

using Records = std::vector<std::vector<std::string>>;

// Nothing when the text is not well formed.
std::optional<Records> Read(std::string_view text) {
  Records records;
  try {
    text::CsvReader reader(text);
    std::vector<std::string> fields;
    int last_line = 0;
    while (reader.Next(fields)) {
      Expect(reader.line() > last_line, "records begin on later and later lines");
      Expect(!fields.empty(), "a record has a field");
      last_line = reader.line();
      records.push_back(fields);
    }
  } catch (const text::CsvError& error) {
    const auto lines = 1 + std::ranges::count(text, '\n');
    Expect(error.line >= 1 && error.line <= lines, "the fault lies on a line of the text");
    Expect(!error.words.empty(), "a fault has a text");
    return std::nullopt;
  }
  return records;
}

std::string Write(const Records& records) {
  std::string text;
  for (const auto& record : records) {
    for (const std::string& field : record) {
      text += '"';
      for (const char c : field)
        text.append(c == '"' ? 2 : 1, c);
      text += "\",";
    }
    text.back() = '\n';
  }
  return text;
}

}  // namespace

const bool kTakesFiles = false;

void Check(std::string_view text) {
  const auto records = Read(text);
  if (!records) return;
  Expect(Read(Write(*records)) == records, "what was read, written and read again is the same");
}

}  // namespace tremvik::fuzz
