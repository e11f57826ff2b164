// Every byte of an accepted file is changed, the file is cut off everywhere and added to: each change is
// refused where it was made, or stands in one of the short lists below with its reason (docs/trust.md repeats
// them).
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "component/tremvik.h"
#include "fuzz/repairs.h"
#include "layout/kinds.h"
#include "tests/faults/scene.h"
#include "tests/support/tables_host.h"

namespace tremvik::test {
namespace {

struct Outcome {
  bool accepted;
  std::vector<Place> places;
  std::string told;  ///< the text of the last box
};

Outcome Import(std::string_view file) {
  static References references;
  TablesHost host(references, file);
  host.answers = {resposta::kSim};
  host.keeps_log = false;
  Tremvik tremvik(host.host());
  tremvik.Monitora(kInputPath);
  return {!tremvik.bolRetMonitora(), host.places, host.boxes.empty() ? "" : host.boxes.back().text};
}

// A byte that was changed, and into what.
struct Change {
  int linha;
  std::string campo;  ///< "05.IE"
  int offset;         ///< in the field, from 0
  char byte;

  [[nodiscard]] bool Digit() const { return byte >= '0' && byte <= '9'; }
  [[nodiscard]] bool Separator() const { return campo.ends_with(".Separadores"); }
  [[nodiscard]] bool Code() const { return campo.ends_with(".CR"); }
  [[nodiscard]] bool LineEnd() const { return byte == '\r' || byte == '\n'; }
};

using Fields = std::set<std::string_view>;

// The names in a text, parted by blanks.
Fields FieldsOf(std::string_view names) {
  Fields fields;
  while (!names.empty()) {
    const std::size_t end = std::min(names.find(' '), names.size());
    fields.insert(names.substr(0, end));
    names.remove_prefix(std::min(end + 1, names.size()));
  }
  return fields;
}

// Whatever stands there is right: free texts, and kinds and columns that have no rules.
const Fields kFree = FieldsOf("05.SemRegra 14.Conteúdo 18.Conteúdo 20.FLegal 20.Ocorrência 30.Conteúdo");

// Another digit is another statement of the taxpayer, as right as the first: nothing in the file says it
// twice. Registration numbers are here because their check digits do not tell a remainder of 10 from one of
// 0.
const Fields kOtherValue = FieldsOf(
    "01.DataGeração 01.HoraGeração 05.IE 05.CNPJ 05.RegTrib 05.Ref 05.RefInicial 05.Tipo 05.Movimento 05.Transmitida "
    "05.SaldoCredPeriodoAnt 05.SaldoCredPeriodoAntST 05.OrigemPreDig 05.ICMSFixPer 05.ChaveInterna 07.PrópriaOuST 07.Valor "
    "07.Data 10.CFOP 10.ValorContábil 10.BaseCálculo 10.Imposto 10.IsentasNãoTrib 10.Outras 10.ImpRetSubstitutoST "
    "10.ImpRetSubstituÍdo 10.OutrosImpostos 20.CódSubItem 20.PrópriaOuST 20.Valor 25.IE 26.IESubstituto 26.NF "
    "26.DataInicio 26.DataFim 27.IESubstituído 27.NF 28.CodAutorizacao 31.RE");

// These have no numeric test: what the runtime takes for the number of records that follow is right.
const Fields kAnyNumber{"05.Q07", "20.Q28"};

bool MayBeAccepted(const Change& change) {
  if (change.Separator() || change.Code() || change.LineEnd()) return false;
  if (kFree.contains(change.campo)) return true;
  if (change.Digit()) return kOtherValue.contains(change.campo);
  // The end of an authorization code is any digits and small letters.
  if (change.campo == "28.CodAutorizacao" && change.offset >= 7) return change.byte == 'z';
  // A number may begin with a plus sign, by the runtime's rules.
  if (change.byte == '+' && change.offset == 0) return true;
  return kAnyNumber.contains(change.campo) &&
         std::string_view(" +-.,").find(change.byte) != std::string::npos;
}

// A change that only another field shows to be wrong, and which.
struct Elsewhere {
  std::string_view changed;
  Fields told;
};
const std::vector<Elsewhere> kElsewhere{
    {"05.Ref",
     {"05.Q30", "05.Q31", "05.RefInicial", "07.Data", "10.CFOP", "20.CódSubItem", "20.Q28", "26.DataFim"}},
    {"05.RegTrib", {"05.Q30", "05.Ref", "05.RefInicial", "05.ICMSFixPer"}},
    {"07.Data", {"07.Data"}},            // the next payment has that date already
    {"10.BaseCálculo", {"10.Imposto"}},  // no tax on a base, or more than a quarter of it
    {"10.CFOP", {"10.CFOP", "10.Q14", "10.ImpRetSubstitutoST", "10.ImpRetSubstituÍdo"}},
    {"20.CódSubItem",
     {"20.CódSubItem", "20.Valor", "20.Q25", "20.Q26", "20.Q27", "20.Q28", "26.NF", "27.NF",
      "28.CodAutorizacao"}},
    {"20.FLegal", {"20.CódSubItem"}},  // texts belong to the sub-items ending in 99 only
    {"20.Ocorrência", {"20.CódSubItem"}},
    {"20.PrópriaOuST", {"20.CódSubItem", "20.Q25"}},  // the sub-item is not of that kind
    {"25.CR", {"20.Q25"}},                            // the counts tell a detail that became another one
    {"28.CR", {"20.Q25", "20.Q28"}},
    {"25.Valor", {"20.Valor"}},  // the sum of the details
    {"26.Valor", {"20.Valor"}},
    {"27.Valor", {"20.Valor"}},
    {"28.Valor", {"20.Valor", "28.CodAutorizacao"}},
    {"25.IE", {"25.IE"}},  // the next one is out of order
    {"26.DataInicio", {"26.DataFim"}},
    {"26.IESubstituto", {"26.IESubstituto"}},
    {"27.IESubstituído", {"27.IESubstituído"}},
    {"28.CodAutorizacao", {"28.CodAutorizacao"}},
    {"31.RE", {"31.RE"}},
};

bool IsTold(const Change& change, const Outcome& outcome) {
  // The runtime's conversion of a quantity names the line, not the field.
  if (outcome.places.empty()) {
    return kAnyNumber.contains(change.campo) &&
           outcome.told.ends_with("13 - Tipos incompatíveis\r\nLinha nº " + std::to_string(change.linha));
  }
  return std::ranges::any_of(outcome.places, [&](const Place& place) {
    const bool here = place.line == change.linha;
    if (here && (place.record + "." + place.field == change.campo || place.field == "Tamanho")) return true;
    // A line end that is none any more, or is one too many, spoils the code or length of the next line.
    if (change.Separator()) {
      return place.line == change.linha + 1 && (place.field == "CR" || place.field == "Tamanho");
    }
    if (change.Code() && here && place.field == "CR") return true;
    const auto row = std::ranges::find(kElsewhere, change.campo, &Elsewhere::changed);
    return row != kElsewhere.end() && row->told.contains(place.record + "." + place.field);
  });
}

std::string InWords(const Change& change, const Outcome& outcome) {
  return "line " + std::to_string(change.linha) + ", " + change.campo + ", byte " +
         std::to_string(change.offset + 1) + " changed to code " +
         std::to_string(static_cast<unsigned char>(change.byte)) +
         (outcome.accepted ? " is accepted" : " is told elsewhere: " + outcome.told);
}

// The values that a byte is changed into: what people's programs put there, and other digits.
std::string OtherBytes(char byte) {
  std::string others("Xz -+.,\0\r\n\xE7", 11);
  if (byte >= '0' && byte <= '9') {
    for (const int step : {1, 5})
      others += static_cast<char>('0' + (byte - '0' + step) % 10);
  }
  std::erase(others, byte);
  return others;
}

TEST(Tamper, EachByteIsCheckedOrHasAReasonNotToBe) {
  const std::string file = Sample(1, 1);
  std::set<std::string> kinds;
  std::size_t at = 0;
  int linha = 0;
  for (const std::string& line : fuzz::SplitLines(file)) {
    ++linha;
    const KindInfo& kind = *fuzz::KindOf(line);
    kinds.insert(std::string(kind.code));
    for (const FieldInfo& field : kind.fields) {
      for (int i = 0; i < field.width; ++i, ++at) {
        for (const char byte : OtherBytes(file[at])) {
          const Change change{linha, std::string(kind.code) + "." + std::string(field.name), i, byte};
          std::string changed = file;
          changed[at] = byte;
          const Outcome outcome = Import(changed);
          const bool right = outcome.accepted ? MayBeAccepted(change) : IsTold(change, outcome);
          EXPECT_TRUE(right) << InWords(change, outcome);
        }
      }
    }
  }
  EXPECT_EQ(at, file.size());
  EXPECT_EQ(kinds.size(), kKinds.size());
}

TEST(Tamper, AFileCutOffOrAddedToIsRefused) {
  const std::string file = Sample(2, 3);
  ASSERT_TRUE(Import(file).accepted);
  for (std::size_t size = 0; size < file.size(); ++size)
    EXPECT_FALSE(Import(std::string_view(file).substr(0, size)).accepted) << size << " bytes";
  const std::string last_line = file.substr(file.rfind('\n', file.size() - 2) + 1);
  for (const std::string& more :
       {std::string("\0", 1), std::string("\r\n"), std::string("\x1A"), last_line, file})
    EXPECT_FALSE(Import(file + more).accepted) << testing::PrintToString(more);
}

}  // namespace
}  // namespace tremvik::test
