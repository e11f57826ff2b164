#include "report/tree_view.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string_view>

#include "report/field_text.h"
#include "report/words.h"
#include "runtime/text.h"
#include "text/readable.h"

namespace tremvik::report {
namespace {

using Json = nlohmann::ordered_json;
using text::Style;

constexpr std::size_t kGutter = 7;       // the line's number and two blanks
constexpr std::size_t kWideEnough = 60;  // for the columns of the fields
constexpr std::string_view kMark = "✗ ";
constexpr std::string_view kBetween = " · ";

// Lines of text behind a margin, filled piece by piece.
class Block {
 public:
  Block(std::size_t margin, const text::Look& look)
      : margin_(margin), room_(std::max(look.width, margin + kLeastRoom) - margin), colour_(look.colour) {}

  // Appends a piece to the line where it fits, with a dot between, else to the next one.
  void Flow(std::string_view piece, Style style) {
    const std::size_t cells = text::Cells(piece);
    if (taken_ > 0 && taken_ + text::Cells(kBetween) + cells > room_) EndLine();
    if (cells > room_) return Lines("", piece, style);
    const std::string_view between = taken_ > 0 ? kBetween : "";
    out_.append(taken_ > 0 ? 0 : margin_, ' ').append(between).append(text::Styled(piece, style, colour_));
    taken_ += text::Cells(between) + cells;
  }
  // Appends lines of their own, the first behind `lead`, the others behind as many blanks.
  void Lines(std::string_view lead, std::string_view body, Style style) {
    EndLine();
    const std::size_t hanging = std::min(text::Cells(lead), room_ - kLeastText);
    std::string before(lead);
    for (const std::string& line : text::Wrap(body, room_ - hanging)) {
      out_.append(margin_, ' ').append(text::Styled(before + line, style, colour_)).append("\n");
      before.assign(hanging, ' ');
    }
  }
  [[nodiscard]] std::string Take() {
    EndLine();
    return std::move(out_);
  }

 private:
  static constexpr std::size_t kLeastRoom = 20;
  static constexpr std::size_t kLeastText = 12;

  void EndLine() {
    if (taken_ > 0) out_ += "\n";
    taken_ = 0;
  }

  std::size_t margin_;
  std::size_t room_;
  bool colour_;
  std::size_t taken_ = 0;  ///< cells of the line at work
  std::string out_;
};

std::string HeadingOf(const TreeRecord& record) {
  if (record.kind == nullptr) return "linha que não é um registro conhecido";
  std::string heading = fmt::format("CR={} {}", record.kind->code, NameOfKind(record.kind->kind));
  if (record.IsOrphan()) heading += fmt::format(", sem o CR={} a que pertence", Codigo(*record.kind->parent));
  return heading;
}

// What people know a record by: " 110.042.490.114, 03/2012".
std::string KeyOf(const FileTree& tree, const TreeRecord& record) {
  static constexpr std::array<std::string_view, 4> kKeys{"IE", "Ref", "CFOP", "CódSubItem"};
  std::string key;
  for (const TreeField& field : tree.Fields(record)) {
    if (std::ranges::find(kKeys, field.nome) != kKeys.end())
      key.append(key.empty() ? " " : ", ").append(field.texto);
  }
  return key;
}

const std::vector<const Finding*>& FindingsOf(const TreeRecord& record, const FindingsByLine& findings) {
  static const std::vector<const Finding*> kNone;
  const auto found = findings.find(record.linha);
  return found == findings.end() ? kNone : found->second;
}

bool IsMarked(const TreeField& field, const std::vector<const Finding*>& findings) {
  return std::ranges::any_of(findings, [&](const Finding* finding) { return finding->campo == field.nome; });
}

std::string ColumnsInWords(const TreeField& field) {
  if (field.largura <= 1) return std::to_string(field.coluna);
  return fmt::format("{} a {}", field.coluna, field.coluna + field.largura - 1);
}

void AddFlowing(Block& block, const std::vector<TreeField>& fields,
                const std::vector<const Finding*>& found) {
  for (const TreeField& field : fields) {
    const bool marked = IsMarked(field, found);
    block.Flow(fmt::format("{}{}: {}", marked ? kMark : "", field.nome, field.texto),
               marked ? Style::kFault : Style::kPlain);
  }
}

void AddOneALine(Block& block, const std::vector<TreeField>& fields, const std::vector<const Finding*>& found,
                 bool with_columns) {
  std::size_t widest_name = 0;
  std::size_t widest_columns = 0;
  for (const TreeField& field : fields) {
    widest_name = std::max(widest_name, text::Cells(field.nome));
    widest_columns = std::max(widest_columns, ColumnsInWords(field).size());
  }
  for (const TreeField& field : fields) {
    const bool marked = IsMarked(field, found);
    std::string before = std::string(marked ? kMark : "  ") + text::Padded(field.nome, widest_name) + "  ";
    if (with_columns) before += text::Padded(ColumnsInWords(field), widest_columns) + "  ";
    block.Lines(before, field.texto, marked ? Style::kFault : Style::kPlain);
  }
}

}  // namespace

FindingsByLine ByLine(const std::vector<Finding>& findings) {
  FindingsByLine by_line;
  for (const Finding& finding : findings)
    by_line[finding.linha].push_back(&finding);
  return by_line;
}

std::string RenderFindingShort(const Finding& finding, std::size_t margin, const text::Look& look) {
  Block block(margin, look);
  const std::string words = finding.regra + ": " + MessageAndReason(finding);
  block.Lines(finding.tipo == FindingKind::kQuestion ? "? " : kMark, words, Style::kFault);
  return block.Take();
}

std::string RenderRecord(const FileTree& tree, const TreeRecord& record, const FindingsByLine& findings,
                         FieldLayout layout, const text::Look& look) {
  const auto& found = FindingsOf(record, findings);
  const std::size_t indent = kGutter + 2 * record.nivel;
  const std::string number = text::Padded(std::to_string(record.linha), kGutter - 2, true);
  Block heading(indent, look);
  heading.Lines("", HeadingOf(record), Style::kBold);
  std::string out = heading.Take().replace(0, number.size(), text::Styled(number, Style::kDim, look.colour));

  const auto fields = tree.Fields(record);
  const bool flowing = layout == FieldLayout::kFlowing;
  const std::size_t margin = flowing ? indent + 2 : 2;
  Block block(margin, look);
  if (flowing) AddFlowing(block, fields, found);
  if (!flowing) AddOneALine(block, fields, found, look.width >= kWideEnough);
  out += block.Take();
  for (const Finding* const finding : found)
    out += RenderFindingShort(*finding, margin, look);
  return out;
}

std::string RenderAncestors(const FileTree& tree, const TreeRecord& record, const text::Look& look) {
  std::string out;
  for (auto above = record.pai; above; above = tree.records()[*above].pai) {
    const TreeRecord& ancestor = tree.records()[*above];
    const std::string line =
        fmt::format("{}  {}{}{}", text::Padded(std::to_string(ancestor.linha), kGutter - 2, true),
                    std::string(2 * ancestor.nivel, ' '), HeadingOf(ancestor), KeyOf(tree, ancestor));
    out.insert(0, text::Styled(line, Style::kDim, look.colour) + "\n");
  }
  return out;
}

Json FindingAsJson(const Finding& finding) {
  return {{"regra", finding.regra},
          {"tipo", TipoName(finding.tipo)},
          {"linha", finding.linha},
          {"coluna", finding.coluna},
          {"largura", finding.largura},
          {"registro", finding.registro},
          {"campo", finding.campo},
          {"valor", finding.valor},
          {"mensagem", finding.mensagem},
          {"porque", finding.porque},
          {"doImportador", finding.doImportador}};
}

Json RecordAsJson(const FileTree& tree, const TreeRecord& record, const FindingsByLine& findings) {
  constexpr std::size_t kMostBytes = 1000;
  Json object{{"tipo", "registro"},
              {"linha", record.linha},
              {"registro", record.kind == nullptr ? "" : record.kind->code},
              {"nome", record.kind == nullptr ? "" : NameOfKind(record.kind->kind)},
              {"nivel", record.nivel},
              {"pai", record.pai ? Json(tree.records()[*record.pai].linha) : Json()}};
  Json& fields = object["campos"] = Json::array();
  for (const TreeField& field : tree.Fields(record)) {
    fields.push_back(Json{{"campo", field.nome},
                          {"coluna", field.coluna},
                          {"largura", field.largura},
                          {"valor", Utf8(field.bytes.substr(0, kMostBytes))},
                          {"texto", field.texto}});
  }
  Json& found = object["inconsistencias"] = Json::array();
  for (const Finding* const finding : FindingsOf(record, findings))
    found.push_back(FindingAsJson(*finding));
  return object;
}

}  // namespace tremvik::report
