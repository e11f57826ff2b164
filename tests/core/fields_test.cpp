// Every field of every kind, spoiled by a letter between the text passes and the run.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/support/cases.h"

namespace tremvik::test {
namespace {

struct Spoiled {
  std::string_view field, first, second;
};

constexpr Spoiled kSpoiled[] = {
    {"01.CR", "Tabela 01, CR=01, Campo - CR", "Inválido ou incompatível com a quantidade, Posição 1"},
    {"01.TipoDocto", "Tabela 01, CR=01, Campo - TipoDocto", "Inconsistente, Posição 3 "},
    {"01.DataGeração", "Tabela 01, CR=01, Campo - DataGeração", "Inconsistente, Posição 5 "},
    {"01.HoraGeração", "Tabela 01, CR=01, Campo - HoraGeração", "Inconsistente, Posição 13 "},
    {"01.VersãoFrontEnd", "Tabela 01, CR=01, Campo - VersãoFrontEnd", "Inconsistente, Posição 19"},
    {"01.VersãoPref", "Tabela 01, CR=01, Campo - VersãoPref", "Inconsistente, Posição 23"},
    {"01.Q05", "Tabela 01, CR=01, Campo - Q05", "Inconsistente, Posição 27"},
    {"01.Separadores", "Tabela 01, CR=01, Campo - Separadores", "Inconsistente, Posição 31"},
    {"05.CR", "Tabela 2, CR=05, Campo - CR", "Inconsistentes, Posição 1"},
    {"05.IE", "Tabela 2, CR=05, Campo - IE", "Inconsistente, Posição 3"},
    {"05.CNPJ", "Tabela 2, CR=05, Campo - CNPJ", "Inconsistente, Posição 15"},
    {"05.CNAE", "CNAE 000000G Inconsistente.", "Tabela 2, CR=05, Posição 29."},
    {"05.RegTrib", "Tabela 2, CR=05, Campo - RegTrib", "Inválido, Posição 36"},
    {"05.Ref", "Tabela 2, CR=05, Campo - Ref", "Inconsistente, Posição 38"},
    {"05.RefInicial", "Tabela 2, CR=05, Campo - RefInicial", "Inconsistente, Posição 44 "},
    {"05.Tipo", "Tabela 2, CR=05, Campo - Tipo", "Inconsistente, Posição 50 "},
    {"05.Movimento", "Tabela 2, CR=05, Campo - Movimento", "Inconsistente, Posição 52 "},
    {"05.Transmitida", "Tabela 2, CR=05, Campo - Transmitida", "Inconsistente, Posição 53"},
    {"05.SaldoCredPeriodoAnt", "Tabela 2, CR=05, Campo - SaldoCredPeriodoAnt", "Inconsistente, Posição 54"},
    {"05.SaldoCredPeriodoAntST", "Tabela 2, CR=05, Campo - SaldoCredPeriodoAntST",
     "Inconsistente, Posição 69 "},
    {"05.OrigemPreDig", "Tabela 2, CR=05, Campo - OrigemPreDig", "Inconstente, Posição 98"},
    {"05.ICMSFixPer", "Tabela 2, CR=05, Campo - ICMSFixPer", "Inconsistente, Posição 99"},
    {"05.ChaveInterna", "Tabela 2, CR=05, Campo - ChaveInterna", "Inconsistente, Posição 114"},
    {"05.Q10", "Tabela 2, CR=05, Campo - Q10 ", "Inconsistente, Posição 146"},
    {"05.Q20", "Tabela 2, CR=05, Campo - Q20 ", "Inconsistente, Posição 150"},
    {"05.Q30", "Tabela 2, CR=05, Campo - Q30 ", "Inconsistente, Posição 154"},
    {"05.Q31", "Tabela 2, CR=05, Campo - Q31 ", "Inconsistente, Posição 158"},
    {"05.Separadores", "Tabela 2, CR=05, Campo - Separadores ", "Inconsistente, Posição 162 "},
    {"07.CR", "Tabela 20, CR=07, Campo - CR ", "Inconsistentes, Posição 1"},
    {"07.PrópriaOuST", "Tabela 20, CR=07, Campo - PrópriaOuST", "Inconsistente, Posição 3"},
    {"07.Valor", "Tabela 20, CR=07, Campo - Valor", "Inconsistente, Posição 4"},
    {"07.Data", "Tabela 20, CR=07, Campo - Data", "Inconsistente, Posição 19"},
    {"07.Separadores", "Tabela 20, CR=07 Campo - Separadores", "inconsistente, Posição 27"},
    {"10.CR", " Tabela 3, CR=10, Campo - CR Inconsistentes, Posição 1", ""},
    {"10.CFOP", "Tabela 3, CR=10 Campo - CFOP", "Inconsistente, posição 3"},
    {"10.ValorContábil", "Tabela 3, CR=10, Campo - ValorContábil", "Inconsistente, Posição 9 "},
    {"10.BaseCálculo", "Tabela 3, CR=10, Campo - BaseCálculo", "Inconsistente, Posição 24 "},
    {"10.Imposto", "Tabela 3, CR=10, Campo - Imposto", "Inconsistente, Posição 39"},
    {"10.IsentasNãoTrib", "Tabela 3, CR=10, Campo - IsentasNãoTrib", "Inconsistente, Posição 54 "},
    {"10.Outras", "Tabela 3, CR=10, Campo - Outras", "Inconsistente, Posição 69"},
    {"10.ImpostoRetidoST", "Tabela 3, CR=10, Campo - ImpostoRetidoST", "Inconsistente, Posição 84"},
    {"10.ImpRetSubstitutoST", "Tabela 3, CR=10, Campo - ImpRetSubstitutoST", "Inconsistente, Posição 99"},
    {"10.ImpRetSubstituÍdo", "Tabela 3, CR=10, Campo - ImpRetSubstituÍdo", "Inconsistente, Posição 114"},
    {"10.OutrosImpostos", "Tabela 3, CR=10, Campo - OutrosImpostos", "Inconsistente, Posição 129"},
    {"10.Q14", "Tabela 3, CR=10, Campo - Q14", "Inconsistente, Posição 144"},
    {"10.Separadores", "Tabela 3, CR=10 Campo - Separadores", "inconsistente, Posição 118"},
    {"14.CR", "Tabela 04, CR=14, Campo - CR ou Q14", "Inconsistentes, Posição 1 ou 144"},
    {"14.Q18", "Tabela 04, CR=14, Campo - Q18", "Inconsistente, Posição 141"},
    {"14.Separadores", "Tabela 4, CR=14 Campo - Separadores", "inconsistente, Posição 145"},
    {"18.CR", "Tabela 05, CR=18, Campo - CR ou Q18", "Inconsistentes, Posição 1 ou 141"},
    {"18.Separadores", "Tabela 5, CR=18 Campo - Separadores", "inconsistente, Posição 54"},
    {"20.CR", "Tabela 06, CR=20, Campo - CR ", "Inconsistentes, Posição 1"},
    {"20.CódSubItem", "Tabela 6, CR=20, Campo - CódSubitem", "Inconsistente, Posição 3"},
    {"20.Valor", "Tabela 06, CR=20, Campo - Valor", "Inconsistente, Posição 8"},
    {"20.PrópriaOuST", "Tabela 06, CR=20, Campo - PrópriaOuST", "Inconsistente, Posição 23"},
    {"20.Q25", "Tabela 06, CR=20, Campo - Q25", "Inconsistente, Posição 424"},
    {"20.Q26", "Tabela 06, CR=20, Campo - Q26", "Inconsistente, Posição 428"},
    {"20.Q27", "Tabela 06, CR=20, Campo - Q27", "Inconsistente, Posição 432"},
    {"20.Separadores", "Tabela 6, CR=20, Campo - Separadores", "inconsistente, Posição 428"},
    {"25.CR", "Tabela 07, CR=25, Campo - CR", "Inconsistentes, Posição 1"},
    {"25.IE", "Tabela 7, CR=25 Campo - IE", "Inconsistente, Posição 3"},
    {"25.Valor", "Tabela 07, CR=25, Campo - Valor", "Inconsistente, Posição 15"},
    {"25.Separadores", "Tabela 7, CR=25 Campo - Separadores", "inconsistente, Posição 30"},
    {"26.CR", "Tabela 16, CR=26, Campo - CR", "Inconsistentes, Posição 1"},
    {"26.NF", "Tabela 05, CR=26, Campo - NF", "Inconsistente, Posição 15"},
    {"26.DataInicio", "Tabela 16, CR=26, Campo - DataInicio", "Inconsistente, Posição 21"},
    {"26.DataFim", "Tabela 16, CR=26, Campo - DataFim", "Inconsistente, Posição 27"},
    {"26.Valor", "Tabela 16, CR=26, Campo - Valor", "Inconsistente, Posição 33"},
    {"26.Separadores", "Tabela 16, CR=26 Campo - Separadores", "inconsistente, Posição 48"},
    {"27.CR", "Tabela 17, CR=27, Campo - CR", "Inconsistentes, Posição 1"},
    {"27.IESubstituído", "Tabela 17, CR=27 Campo - IESubstituído", "inconsistente, Posição 3"},
    {"27.NF", "Tabela 17, CR=27, Campo - Nf", "Inconsistente, Posição 15"},
    {"27.Valor", "Tabela 17, CR=27, Campo - Valor", "Inconsistente, Posição 21"},
    {"27.Separadores", "Tabela 17, CR=27 Campo - Separadores", "inconsistente, Posição 36"},
    {"28.CR", "Tabela 19, CR=28, Campo - CR", "Inconsistentes, Posição 1"},
    {"28.CodAutorizacao", "Tabela 18, CR=28 Campo - CodAutorizacao", "inconsistente, Posição 3"},
    {"28.Separadores", "Tabela 18, CR=28 Campo - Separadores", "inconsistente, Posição 29"},
    {"30.CR", "Tabela 08, CR=30, Campo - CR ou Q30", "Inconsistentes, Posição 1 ou 158"},
    {"30.Separadores", "Tabela 8, CR=30 Campo - Separadores", "inconsistente, Posição 25"},
    {"31.CR", "Tabela 05, CR=31, Campo - CR ", "Inconsistentes, Posição 1"},
    {"31.RE", "Tabela 18, CR=31, Campo - RE", "Inconsistente, Posição 3"},
    {"31.Separadores", "Tabela 18, CR=31 Campo - Separadores", "inconsistente, Posição 18"},
};

constexpr std::string_view kUnchecked[] = {
    "05.SemRegra",      // no rule
    "05.Q07",           // stored without a test: a run-time error, below
    "14.Conteúdo",      // not settled
    "18.Conteúdo",      // likewise
    "20.FLegal",        // free text, judged with the sub-item
    "20.Ocorrência",    // likewise
    "20.Q28",           // stored without a test: a run-time error, below
    "26.IESubstituto",  // judged by its check digits alone
    "28.Valor",         // changes the value that the code must agree with, which is tested first; below
    "30.Conteúdo",      // not settled
};

constexpr std::string_view kEveryKind = "05 07 10 14 18 20 26 20 28 20 27 20 25 30 31";

TEST(Fields, ALetterIsRefusedInItsPlace) {
  for (const auto& [field, first, second] : kSpoiled) {
    SCOPED_TRACE(field);
    FileBuilder file(kEveryKind);
    const std::string code(field.substr(0, 2));
    const std::string name(field.substr(3));
    const auto& columns = ColumnsOf(code);
    const Column& column = *std::ranges::find(columns, name, &Column::name);
    std::string value =
        file.Record(file.Line(code))
            .substr(static_cast<std::size_t>(column.position) - 1, static_cast<std::size_t>(column.width));
    value.back() = 'G';
    const std::string edit = "~" + std::string(field) + "=" + value;
    const Place place = Check({kEveryKind, edit, file.Line(code), first, second});
    EXPECT_EQ(place.line, file.Line(code));
    EXPECT_EQ(place.record, code);
    EXPECT_EQ(place.field, name);
    EXPECT_EQ(place.value, value);
  }
}

TEST(Fields, EachIsSpoiledOrKnownToBeUnchecked) {
  std::multiset<std::string> fields;
  for (const Spoiled& spoiled : kSpoiled)
    fields.emplace(spoiled.field);
  fields.insert(std::begin(kUnchecked), std::end(kUnchecked));
  for (const std::string_view code : Codes()) {
    for (const Column& column : ColumnsOf(code)) {
      const std::string field = std::string(code) + "." + column.name;
      EXPECT_EQ(fields.erase(field), 1U) << field;
    }
  }
  EXPECT_TRUE(fields.empty()) << *fields.begin();
}

TEST(Fields, WhatHasNoTestOfItsOwn) {
  constexpr Case kCases[] = {
      {kEveryKind,
       "05.SemRegra=GGGGGGGGGGGGGG; 14.Conteúdo=G; 18.Conteúdo=G; 26.IESubstituto=G; 30.Conteúdo=G"},
      {kEveryKind, "~05.Q07=000G", 2, "13 - Tipos incompatíveis"},
      {"05 20", "~20.Q28=000G", 3, "13 - Tipos incompatíveis"},
      {"05 20 28", "28.CodAutorizacao=000dubl00001; 28.Valor=G", 4, "Tabela 19, CR=28, Campo - Valor",
       "Inconsistente, Posição 15"},
      {"05 20 28", "28.Valor=G", 4, "Tabela 18, CR=28 Campo - CodAutorizacao", "inconsistente, Posição 3"},
  };
  CheckAll(kCases);
}

TEST(Fields, ARecordOfAnotherKindInTheKindsPlace) {
  constexpr Case kCases[] = {
      {kEveryKind, "~01.CR=02", 1, "Tabela 01, CR=01, Campo - CR",
       "Inválido ou incompatível com a quantidade, Posição 1"},
      {kEveryKind, "~05.CR=07", 2, "Tabela 2, CR=05, Campo - CR ou Q05", "Inconsistentes, Posição 1 ou 27"},
      {kEveryKind, "~07.CR=05", 3, "Tabela 20, CR=07, Campo - CR ou Q07", "Inconsistentes, Posição 1 ou 126"},
      {kEveryKind, "~10.CR=14", 4, "Tabela 3, CR=10, Campo - CR ou Q10", "Inconsistentes, Posição 1 ou 114"},
      {kEveryKind, "~14.CR=10", 5, "Tabela 04, CR=14, Campo - CR ou Q14", "Inconsistentes, Posição 1 ou 144"},
      {kEveryKind, "~18.CR=10", 6, "Tabela 05, CR=18, Campo - CR ou Q18", "Inconsistentes, Posição 1 ou 141"},
      {kEveryKind, "~20.CR=25", 7, "Tabela 06, CR=20, Campo - CR ou Q20", "Inconsistentes, Posição 1 ou 118"},
      {kEveryKind, "~26.CR=27", 8, "Tabela 16, CR=26, Campo - CR", "Inconsistentes, Posição 1"},
      {kEveryKind, "~28.CR=25", 10, "Tabela 19, CR=28, Campo - CR", "Inconsistentes, Posição 1"},
      {kEveryKind, "~27.CR=26", 12, "Tabela 17, CR=27, Campo - CR", "Inconsistentes, Posição 1"},
      {kEveryKind, "~25.CR=28", 14, "Tabela 07, CR=25, Campo - CR", "Inconsistentes, Posição 1"},
      {kEveryKind, "~30.CR=31", 15, "Tabela 08, CR=30, Campo - CR ou Q30",
       "Inconsistentes, Posição 1 ou 158"},
      {kEveryKind, "~31.CR=30", 16, "Tabela 05, CR=31, Campo - CR ", "Inconsistentes, Posição 1"},
      // Records that nothing announces are read as what comes next.
      {"05 10*2", "~05.Q10=0", 3, "Tabela 2, CR=05, Campo - CR ou Q05", "Inconsistentes, Posição 1 ou 27"},
      {"05 07 31*2", "~05.Q07=0", 3, "Tabela 18, CR=31 Campo - Separadores", "inconsistente, Posição 18"},
  };
  CheckAll(kCases);
}

// What the last read of a kind left in its buffer stands where the file ends: with an earlier record's
// separators the end itself is told, against the quantity; without them the separators are.
TEST(Fields, TheLastLineEndIsMissing) {
  constexpr Case kCases[] = {
      {"", "cut=2; ~01.Q05=1", 1, "Tabela 01, CR=01, Campo - Separadores", "Inconsistente, Posição 31"},
      {"05 07", "cut=2", 3, "Tabela 20, CR=07 Campo - Separadores", "inconsistente, Posição 27"},
      {"05 07*2", "cut=2", 4, "Tabela 2, CR=05 Campo - Q07", "inconsistente, Posição 114"},
      {"05 07 05 07", "cut=1", 5, "Tabela 2, CR=05 Campo - Q07", "inconsistente, Posição 114"},
      {"05 10", "cut=1", 3, "Tabela 3, CR=10 Campo - Separadores", "inconsistente, Posição 118"},
      {"05 10*2", "cut=1", 4, "Tabela 2, CR=05 Campo - Q10", "inconsistente, Posição 114"},
      {"05 10 14", "cut=2", 4, "Tabela 4, CR=14 Campo - Separadores", "inconsistente, Posição 145"},
      {"05 10 14*2", "cut=2", 5, "Tabela 3, CR=10 Campo - Q14", "inconsistente, Posição 144"},
      {"05 10 14 18", "cut=2", 5, "Tabela 5, CR=18 Campo - Separadores", "inconsistente, Posição 54"},
      {"05 10 14 18*2", "cut=2", 6, "Tabela 4, CR=14 Campo - Q18", "inconsistente, Posição 141"},
      {"05 20", "cut=2", 3, "Tabela 6, CR=20, Campo - Separadores", "inconsistente, Posição 428"},
      {"05 20*2", "cut=2", 4, "Tabela 3, CR=05, Campo - Q10", "inconsistente, Posição 118"},
      {"05 20 25", "cut=2", 4, "Tabela 7, CR=25 Campo - Separadores", "inconsistente, Posição 30"},
      {"05 20 25*2", "cut=2", 5, "Tabela 7, CR=20 Campo - Q25", "inconsistente, Posição 424"},
      {"05 20 26", "cut=2", 4, "Tabela 16, CR=26 Campo - Separadores", "inconsistente, Posição 48"},
      {"05 20 26*2", "cut=2", 5, "Tabela 16, CR=26 Campo - Q26", "inconsistente, Posição 48"},
      {"05 20 27", "cut=2", 4, "Tabela 17, CR=27 Campo - Separadores", "inconsistente, Posição 36"},
      {"05 20 27*2", "cut=2", 5, "Tabela 6, CR=20 Campo - Q27", "inconsistente, Posição 432"},
      {"05 20 28", "cut=2", 4, "Tabela 18, CR=28 Campo - Separadores", "inconsistente, Posição 29"},
      {"05 20 28*2", "cut=2", 5, "Tabela 6, CR=20 Campo - Q28", "inconsistente, Posição 436"},
      {"05 30", "cut=2", 3, "Tabela 8, CR=30 Campo - Separadores", "inconsistente, Posição 25"},
      {"05 30*2", "cut=2", 4, "Tabela 2, CR=05 Campo - Q30", "inconsistente, Posição 158"},
      {"05 31", "cut=2", 3, "Tabela 18, CR=31 Campo - Separadores", "inconsistente, Posição 18"},
      {"05 31*2", "cut=2", 4, "Tabela 2, CR=05 Campo - Q31", "inconsistente, Posição 158"},
  };
  CheckAll(kCases);
}

// The whole last record is gone: the buffer shows the one before it, and the end is told before its sequence.
TEST(Fields, FewerRecordsThanAnnounced) {
  constexpr Case kCases[] = {
      {"05 07*2", "~cut=28", 4, "Tabela 2, CR=05 Campo - Q07", "inconsistente, Posição 114"},
      {"05 10*2", "~cut=149", 4, "Tabela 2, CR=05 Campo - Q10", "inconsistente, Posição 114"},
      {"05 20*2", "~cut=441", 4, "Tabela 3, CR=05, Campo - Q10", "inconsistente, Posição 118"},
      {"05 20 25*2", "~cut=31", 5, "Tabela 7, CR=20 Campo - Q25", "inconsistente, Posição 424"},
      {"05 20 28*2", "~cut=31", 5, "Tabela 6, CR=20 Campo - Q28", "inconsistente, Posição 436"},
      {"05 30*2", "~cut=26", 4, "Tabela 2, CR=05 Campo - Q30", "inconsistente, Posição 158"},
      {"05 31*2", "~cut=19", 4, "Tabela 2, CR=05 Campo - Q31", "inconsistente, Posição 158"},
  };
  CheckAll(kCases);
}

// Where a message names two fields, or another record than the one read, the place is the one at fault.
TEST(Fields, PlacesOfFaultsBetweenFields) {
  struct Placed {
    Case given;
    int line;
    std::string_view field;
  };
  constexpr std::string_view kSubItem = "Tabela 06, CR=20, Campo - CódSubitem";
  constexpr std::string_view kLetters = "Falta informação (Flegal e ou Ocorrência), Posição 24 e ou 124 ";
  constexpr std::string_view kWithheld = "Tabela 03, CR=10, Campo - ImpRetSubstitutoST_x_ImpRetSubstituÍdo";
  constexpr Placed kCases[] = {
      {{"05 07*2", "cut=2", 4, "Tabela 2, CR=05 Campo - Q07", "inconsistente, Posição 114"}, 2, "Q07"},
      {{"05 10*2", "cut=2", 4, "Tabela 2, CR=05 Campo - Q10", "inconsistente, Posição 114"}, 2, "Q10"},
      {{"05 20*2", "cut=2", 4, "Tabela 3, CR=05, Campo - Q10", "inconsistente, Posição 118"}, 2, "Q20"},
      {{"05 10 14 18*2", "cut=2", 6, "Tabela 4, CR=14 Campo - Q18", "inconsistente, Posição 141"}, 4, "Q18"},
      {{"05 20 26*2", "cut=2", 5, "Tabela 16, CR=26 Campo - Q26", "inconsistente, Posição 48"}, 3, "Q26"},
      {{"05 20 26", "05.Ref=200112", 3, "Tabela 06, CR=20, Campo - Q26 _x_Q27",
        "Posição 428_x_432. Inconsistente "},
       3,
       "Q26"},
      {{"05 20 27", "05.Ref=200112", 3, "Tabela 06, CR=20, Campo - Q26 _x_Q27",
        "Posição 428_x_432. Inconsistente "},
       3,
       "Q27"},
      {{"05 20", "20.CódSubItem=00399; 20.FLegal=1; 20.Ocorrência=a", 3, kSubItem, kLetters}, 3, "FLegal"},
      {{"05 20", "20.CódSubItem=00399; 20.FLegal=a; 20.Ocorrência=1", 3, kSubItem, kLetters},
       3,
       "Ocorrência"},
      {{"05 10", "05.Ref=200112; 10.ImpRetSubstitutoST=1", 3, kWithheld, "Inconsistente, Posição 99_x_114"},
       3,
       "ImpRetSubstitutoST"},
      {{"05 10", "05.Ref=200112; 10.ImpRetSubstituÍdo=1", 3, kWithheld, "Inconsistente, Posição 99_x_114"},
       3,
       "ImpRetSubstituÍdo"},
      {{"05 20 25*2", "20.Valor=201", 5, "Tabela: 06, CR 20, Campo: Valor, Posição: 8",
        "O campo Valor é diferente da somatória do campo Valor dos CR=25 ou 26 ou 27. "},
       3,
       "Valor"},
  };
  for (const auto& [given, line, field] : kCases) {
    SCOPED_TRACE(given.edits);
    const Place place = Check(given);
    EXPECT_EQ(place.line, line);
    EXPECT_EQ(place.field, field);
  }
}

// Line ends that the text passes take, but no block has.
TEST(Fields, OtherLineEndsAreRefusedAtTheFirstRecord) {
  constexpr Case kCases[] = {
      {"05", "01.Separadores=\n", 1, "Tabela 01, CR=01, Campo - Separadores", "Inconsistente, Posição 31"},
      {"05", "01.Separadores=\r; 05.Separadores=\r", 1, "Tabela 01, CR=01, Campo - Separadores",
       "Inconsistente, Posição 31"},
      {"05 07", "05.Separadores=\n", 2, "Tabela 2, CR=05, Campo - Separadores ",
       "Inconsistente, Posição 162 "},
  };
  CheckAll(kCases);
}

}  // namespace
}  // namespace tremvik::test
