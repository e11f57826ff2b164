#include "tests/support/cases.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace tremvik::test {
namespace {

using ::testing::ElementsAre;

std::string Header() {
  return "Sr(a) usuário(a), entre em contato com a empresa\r\n"
         "responsável pela geração do arquivo Pré-Formatado\r\n"
         "e informe a mensagem abaixo : \r\n\r\n";
}

// The last lines of the log, as many as `count`.
std::vector<std::string> Tail(const std::vector<std::string>& log, std::size_t count) {
  return {log.end() - static_cast<std::ptrdiff_t>(std::min(count, log.size())), log.end()};
}

// The place told holds what the file holds there, under the name that its makers know.
void CheckPlace(const Place& place, const FileBuilder& file) {
  const auto& columns = ColumnsOf(place.record);
  const auto column = std::ranges::find(columns, place.field, &Column::name);
  ASSERT_NE(column, columns.end()) << place.record << "." << place.field;
  EXPECT_EQ(place.position, column->position);
  EXPECT_EQ(place.width, column->width);
  if (place.line > file.Lines() || place.field == "Separadores") return;
  EXPECT_EQ(place.value,
            file.Record(place.line)
                .substr(static_cast<std::size_t>(place.position) - 1, static_cast<std::size_t>(place.width)));
}

// The box, the place, and the order of a refusal's end.
Place CheckRefusal(const Case& given, const FileBuilder& file, const Instance& run) {
  if (run.host.boxes.size() != 1) return {};
  const Box& box = run.host.boxes.front();
  EXPECT_EQ(box.text, Report(given.first, given.second, given.line));
  EXPECT_EQ(box.style, 64);
  EXPECT_EQ(box.title, "Atenção");
  EXPECT_TRUE(run.tremvik.bolRetMonitora());
  const std::string encerrar = "Encerrar C:\\App\\BDTempPrf.fix";
  if (given.first.substr(2, 3) == " - ") {  // a run-time error
    EXPECT_THAT(Tail(run.host.log, 5), ElementsAre("Close 1", encerrar, "Caixa", "Fechar", encerrar));
    return {};
  }
  EXPECT_EQ(run.host.places.size(), 1U);
  if (run.host.places.size() != 1) return {};
  const Place& place = run.host.places.front();
  CheckPlace(place, file);
  const std::string told =
      "Inconsistência " + std::to_string(place.line) + " " + place.record + "." + place.field;
  EXPECT_THAT(Tail(run.host.log, 6), ElementsAre(told, "Caixa", "Fechar", encerrar, "Close 1", "Ponteiro 0"));
  return place;
}

}  // namespace

std::string Report(std::string_view first, std::string_view second, int line) {
  std::string text = Header().append(first);
  if (!second.empty()) text.append("\r\n").append(second);
  return text + "\r\nLinha nº " + std::to_string(line);
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
  EXPECT_TRUE(run.host.places.empty());
  return {};
}

void CheckAll(std::span<const Case> cases) {
  for (const Case& given : cases) {
    SCOPED_TRACE(std::string(given.kinds) + " | " + std::string(given.edits));
    Check(given);
  }
}

void CheckAll(std::span<const Limit> limits) {
  for (const Limit& limit : limits) {
    const std::string edits = std::string(limit.edits) + "; 05.Ref=";
    const std::string good = edits + std::string(limit.good);
    const std::string bad = edits + std::string(limit.bad);
    const Case pair[] = {{limit.kinds, good}, {limit.kinds, bad, limit.line, limit.first, limit.second}};
    CheckAll(pair);
  }
}

}  // namespace tremvik::test
