#include "fuzz/mutator.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>
#include <vector>

#include "fuzz/repairs.h"
#include "layout/kinds.h"
#include "sample/draw.h"
#include "sample/sample.h"

namespace tremvik::fuzz {
namespace {

using sample::Draw;

// Values around which rules change, by field.
const std::map<std::string_view, std::vector<std::string_view>>& Dictionary() {
  static const std::map<std::string_view, std::vector<std::string_view>> kValues{
      {"RegTrib", {"01", "02", "03", "04", "00", "05"}},
      {"Ref",
       {"200006", "200007", "200012", "200101", "200112", "200201", "200212", "200301", "200307", "200308",
        "200312", "200401", "200412", "200501", "200512", "200601", "200606", "200607", "200712", "200801",
        "200804", "200805", "200906", "200907", "201001", "201003", "201004", "201005", "201007", "201011",
        "201101", "201110", "201111", "201112", "201201", "201212", "201301", "201313"}},
      {"CFOP",
       {"111000", "199000", "196000", "185000", "511000", "561000", "570000", "611000", "719000", "110100",
        "112800", "136000", "140100", "150500", "160200", "160500", "165100", "193000", "193400", "210100",
        "250500", "510100", "510900", "515300", "530100", "535100", "536000", "540100", "560200", "560500",
        "560600", "566700", "592700", "593300", "610100", "635900", "636000", "710100", "766700", "799900"}},
      {"CódSubItem",
       {"00201", "00203", "00205", "00210", "00211", "00218", "00219", "00220", "00221", "00223", "00224",
        "00225", "00226", "00299", "00399", "00701", "00702", "00704", "00707", "00715", "00729", "00730",
        "00740", "00741", "00742", "00744", "00745", "00746", "00747", "00748", "00799", "00899", "01499"}},
      {"Separadores", {"\n\r", "\r\r", "\n\n", "  "}},
  };
  return kValues;
}

std::size_t Below(Draw& draw, std::size_t end) { return draw.Between<std::size_t>(0, end - 1); }

// Mostly what stands in numbers; line ends rarely: they hide every change behind a wrong length.
char RandomByte(Draw& draw) {
  constexpr std::string_view kInNumbers = " +-.,\t0123456789";
  if (draw.Chance(60)) return kInNumbers[Below(draw, kInNumbers.size())];
  const char byte = static_cast<char>(draw.Between(0, 255));
  return (byte == '\r' || byte == '\n') && draw.Chance(90) ? '\0' : byte;
}

// The field of another record of the same kind.
std::string Borrowed(Draw& draw, const Lines& lines, const KindInfo& kind, const FieldInfo& field) {
  std::vector<std::string_view> texts;
  for (const std::string& line : lines) {
    const std::string_view text = FieldText(line, field);
    if (KindOf(line) == &kind && !text.empty()) texts.push_back(text);
  }
  return std::string(texts[Below(draw, texts.size())]);
}

// Another text for a field that holds `text`, in a file of such lines.
std::string NewText(Draw& draw, const Lines& lines, const KindInfo& kind, const FieldInfo& field,
                    std::string text) {
  if (const auto known = Dictionary().find(field.name); known != Dictionary().end() && draw.Chance(60))
    return std::string(known->second[Below(draw, known->second.size())]);
  constexpr std::string_view kFillers = "09 ";
  const std::size_t width = text.size();
  switch (draw.Between(0, 8)) {
    case 0:
      return draw.Digits(width);
    case 1:
    case 2:
    case 3:
      return std::string(width, kFillers[Below(draw, kFillers.size())]);
    case 4:
      return std::string(width - 1, '0') + draw.Digits(1);
    case 5:
      std::ranges::generate(text, [&draw] { return RandomByte(draw); });
      return text;
    case 6:
    case 7:
      text[Below(draw, width)] = RandomByte(draw);
      return text;
    default:
      return Borrowed(draw, lines, kind, field);
  }
}

void ChangeField(Draw& draw, Lines& lines) {
  std::string& line = lines[Below(draw, lines.size())];
  const KindInfo* const kind = KindOf(line);
  if (kind == nullptr) return;
  const std::size_t code = draw.Chance(95) ? 1 : 0;  // the code itself rarely: it hides the other changes
  const FieldInfo& field = kind->fields[draw.Between(code, kind->fields.size() - 1)];
  const std::string text(FieldText(line, field));
  if (text.empty()) return;
  line.replace(static_cast<std::size_t>(field.position - 1), text.size(),
               NewText(draw, lines, *kind, field, text));
}

Lines::iterator Line(Draw& draw, Lines& lines) {
  return lines.begin() + static_cast<std::ptrdiff_t>(Below(draw, lines.size()));
}

// The declaration of a line, or what stands before the first one, follows once more.
void CopyDeclaration(Draw& draw, Lines& lines) {
  const auto header = [](const std::string& line) { return line.starts_with("05"); };
  const auto at = std::next(Line(draw, lines));
  const auto last_header = std::find_if(std::make_reverse_iterator(at), lines.rend(), header);
  const auto begin = last_header == lines.rend() ? lines.begin() : std::prev(last_header.base());
  const auto end = std::find_if(at, lines.end(), header);
  const Lines copy(begin, end);
  lines.insert(end, copy.begin(), copy.end());
}

// A valid declaration or a few take the place of all others.
void TakeSample(Draw& draw, Lines& lines) {
  const int declaracoes = draw.Between(1, 3);
  lines = SplitLines(sample::Generate({.declaracoes = declaracoes, .seed = draw.Bits() % 100'000}));
}

void MoveRecord(Draw& draw, Lines& lines) {
  const auto from = Line(draw, lines);
  std::string moved = std::move(*from);
  lines.erase(from);
  lines.insert(lines.empty() ? lines.end() : Line(draw, lines), std::move(moved));
}

// Its line end included.
void ChangeLength(Draw& draw, Lines& lines) {
  std::string& line = *Line(draw, lines);
  if (line.size() < 2) return;
  const std::size_t at = draw.Chance(60) ? Below(draw, line.size()) : line.size() - 2;
  if (draw.Chance(50)) {
    line.insert(at, 1, static_cast<char>(draw.Between(0, 255)));
  } else {
    line.erase(at, draw.Between<std::size_t>(1, 3));
  }
}

// Too much in one place, as much lost in another.
void ShiftFields(Draw& draw, Lines& lines) {
  std::string& line = *Line(draw, lines);
  const auto columns = draw.Between<std::size_t>(1, 3);
  if (line.size() < 2 * columns) return;
  line.insert(Below(draw, line.size() - columns), columns, draw.Chance(70) ? ' ' : '0');
  line.erase(draw.Chance(50) ? line.size() - columns - 2 : Below(draw, line.size() - columns), columns);
}

void Change(Draw& draw, Lines& lines) {
  if (lines.empty() || draw.Chance(10)) TakeSample(draw, lines);
  const auto at = Line(draw, lines);
  const int kind = draw.Between(0, 99);
  if (kind < 74) {
    ChangeField(draw, lines);
  } else if (kind < 82) {
    lines.insert(at, std::string(*at));
  } else if (kind < 90) {
    lines.erase(at);
  } else if (kind < 94) {
    MoveRecord(draw, lines);
  } else if (kind < 96) {
    CopyDeclaration(draw, lines);
  } else if (kind < 98) {
    ShiftFields(draw, lines);
  } else {
    ChangeLength(draw, lines);
  }
}

}  // namespace

std::string MutateFile(std::string_view file, std::uint64_t seed, const RawMutator& raw) {
  Draw draw(seed);
  if (draw.Chance(4)) {
    std::string bytes(file);
    raw(bytes);
    return bytes;
  }
  Lines lines = SplitLines(file);
  for (int changes = draw.Between(1, 4); changes > 0; --changes)
    Change(draw, lines);
  if (draw.Chance(50)) RepairDocuments(lines);
  if (draw.Chance(50)) RepairOrder(lines);
  if (draw.Chance(50)) RepairAuthorizations(lines, draw);
  if (draw.Chance(85)) RepairQuantities(lines);
  if (draw.Chance(60)) RepairSums(lines);
  return JoinLines(lines);
}

}  // namespace tremvik::fuzz
