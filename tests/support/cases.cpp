#include "tests/support/cases.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <utility>

namespace tremvik::test {
namespace {

using ::testing::ElementsAre;

std::string Header() {
  return "Sr(a) usuário(a), entre em contato com a empresa\r\n"
         "responsável pela geração do arquivo Pré-Formatado\r\n"
         "e informe a mensagem abaixo : \r\n\r\n";
}

// The place told holds what the file holds there, under the name that its makers know.
void CheckPlace(const Place& place, const FileBuilder& file) {
  const Column& column = ColumnOf(place.record, place.field);
  EXPECT_EQ(place.position, column.position);
  EXPECT_EQ(place.width, column.width);
  if (place.line > file.Lines() || place.field == "Separadores") return;
  EXPECT_EQ(place.value,
            file.Record(place.line)
                .substr(static_cast<std::size_t>(place.position) - 1, static_cast<std::size_t>(place.width)));
}

// The box, the place, and the order of a refusal's end.
Place CheckRefusal(const Case& given, const FileBuilder& file, const Instance& run) {
  EXPECT_EQ(run.host.boxes, (Boxes{{Report(given.first, given.second, given.line), 64, "Atenção"}}));
  EXPECT_TRUE(run.tremvik.bolRetMonitora());
  const std::string encerrar = "Encerrar C:\\App\\BDTempPrf.fix";
  if (given.first.substr(2, 3) == " - ") {  // a run-time error
    EXPECT_EQ(run.tremvik.outcome().estado, Outcome::Estado::kErro);
    EXPECT_THAT(Tail(run.host.log, 5), ElementsAre("Close 1", encerrar, "Caixa", "Fechar", encerrar));
    return {};
  }
  EXPECT_EQ(run.tremvik.outcome().estado, Outcome::Estado::kRecusado);
  EXPECT_EQ(run.host.places.size(), 1U);
  if (run.host.places.size() != 1) return {};
  const Place& place = run.host.places.front();
  CheckPlace(place, file);
  const std::string told =
      "Inconsistência " + std::to_string(place.line) + " " + place.record + "." + place.field;
  EXPECT_THAT(Tail(run.host.log, 6), ElementsAre(told, "Caixa", "Fechar", encerrar, "Close 1", "Ponteiro 0"));
  return place;
}

// A cell without the blanks that part it from its bars, its bytes in place.
std::string CellOf(std::string_view text) {
  if (text.starts_with(' ')) text.remove_prefix(1);
  if (text.ends_with(' ')) text.remove_suffix(1);
  return sample::WithBytes(text);
}

// The rows that a row with {a b c} stands for: one with each of them.
void AppendExpanded(const Row& row, std::vector<Row>& rows) {
  for (std::size_t i = 0; i < row.cells.size(); ++i) {
    const std::string& cell = row.cells[i];
    const auto open = cell.find('{');
    if (open == std::string::npos) continue;
    const auto close = cell.find('}', open);
    for (const std::string_view one : Split(std::string_view(cell).substr(open + 1, close - open - 1), ' ')) {
      Row single = row;
      single.where.append(" with ").append(one);
      single.cells[i].replace(open, close - open + 1, one);
      AppendExpanded(single, rows);
    }
    return;
  }
  rows.push_back(row);
}

}  // namespace

std::vector<std::string> Tail(const std::vector<std::string>& log, std::size_t count) {
  return {log.end() - static_cast<std::ptrdiff_t>(std::min(count, log.size())), log.end()};
}

std::string Report(std::string_view first, std::string_view second, int line) {
  std::string text = Header().append(first);
  if (!second.empty()) text.append("\r\n").append(second);
  return text + "\r\nLinha nº " + std::to_string(line);
}

const std::vector<Column>& Columns() {
  static const std::vector<Column> columns = [] {
    std::vector<Column> all;
    for (const auto& [where, cells] : ReadTable("fields.txt", 2)) {
      const int first = std::stoi(cells[1]);
      const int last = std::stoi(cells[1].substr(cells[1].find('-') + 1));
      all.push_back({cells[0].substr(0, 2), cells[0].substr(3), first, last - first + 1});
    }
    return all;
  }();
  return columns;
}

const Column& ColumnOf(std::string_view record, std::string_view name) {
  return *std::ranges::find_if(Columns(),
                               [&](const Column& c) { return c.record == record && c.name == name; });
}

void Instance::Import(std::string_view bytes) {
  host.files["entrada.txt"] = bytes;
  tremvik.Monitora("entrada.txt");
}

bool Instance::Succeeded() const {
  return !host.boxes.empty() && host.boxes.back().text == "A importação foi concluída com sucesso!";
}

Place Check(const Case& given) {
  FileBuilder file(given.kinds);
  Instance run;
  const auto edit = [&](bool meanwhile) {
    for (const std::string_view one : Split(given.edits, ';')) {
      if (one.starts_with('~') == meanwhile) file.Edit(one.substr(meanwhile ? 1 : 0));
    }
  };
  edit(false);
  const std::string before = file.Bytes();
  edit(true);
  if (file.Bytes() != before) run.host.third_opening = file.Bytes();
  run.Import(before);

  EXPECT_EQ(run.host.open_files(), 0U);
  EXPECT_EQ(run.host.open_databases, 0);
  EXPECT_EQ(run.host.boxes.size(), 1U);
  if (given.line != kAccepted) return CheckRefusal(given, file, run);
  EXPECT_TRUE(run.Succeeded()) << (run.host.boxes.empty() ? "" : run.host.boxes.back().text);
  EXPECT_FALSE(run.tremvik.bolRetMonitora());
  EXPECT_EQ(run.tremvik.outcome().estado, Outcome::Estado::kAceito);
  EXPECT_TRUE(run.host.places.empty());
  return {};
}

std::vector<Row> ReadTable(std::string_view name, std::size_t cells) {
  std::ifstream file(std::string(CASES_DIR "/").append(name));
  EXPECT_TRUE(file) << name;
  std::vector<Row> rows;
  std::map<std::size_t, std::string> last;  // cell of each column
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    if (line.empty() || line.front() == '#') continue;
    Row row{std::string(name) + ":" + std::to_string(number) + ": " + line, {}};
    for (std::size_t end = 0; (end = line.find('|')) != std::string::npos; line.erase(0, end + 1)) {
      std::string cell = CellOf(std::string_view(line).substr(0, end));
      std::string& above = last[row.cells.size()];
      if (cell == "\"") cell = above;
      if (!cell.empty()) above = cell;
      row.cells.push_back(std::move(cell));
    }
    EXPECT_EQ(line, "") << row.where;
    row.cells.resize(std::max(row.cells.size(), cells));
    AppendExpanded(row, rows);
  }
  EXPECT_FALSE(rows.empty()) << name;
  return rows;
}

void CheckTable(std::string_view name) {
  for (const auto& [where, cells] : ReadTable(name, 7)) {
    SCOPED_TRACE(where);
    const std::string& edits = cells[1];
    std::string line = cells[2];
    std::string period;
    if (const auto slash = line.find('/'); slash != std::string::npos) {
      Check({cells[0], edits + "; 05.Ref=" + line.substr(0, slash)});
      period = "; 05.Ref=" + line.substr(slash + 1, line.find(':') - slash - 1);
      line.erase(0, line.find(':') + 1);
    }
    const Place place =
        Check({cells[0], edits + period, line == "ok" ? kAccepted : std::stoi(line), cells[3], cells[4]});
    const std::string told = std::to_string(place.line) + "." + place.field;
    EXPECT_TRUE(cells[5].empty() || told == cells[5]) << told;
    EXPECT_TRUE(cells[6].empty() || place.porque == cells[6]) << place.porque;
  }
}

}  // namespace tremvik::test
