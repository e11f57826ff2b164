// What each field holds, in words for makers of files: the part of docs/layout.md that no declaration can
// give.
#pragma once

#include <array>
#include <string_view>

namespace tremvik::tools {

/// What one record of a kind stands for.
struct KindNote {
  std::string_view code;
  std::string_view text;
};

inline constexpr std::array kKindNotes{
    KindNote{"01", "Master record: identifies the file and announces its declarations."},
    KindNote{"05", "Header of one declaration. Declarations stand in ascending order of IE, then Ref."},
    KindNote{"07", "One payment of the declaration."},
    KindNote{"10", "Totals of one CFOP of the declaration. CFOPs stand in ascending order."},
    KindNote{"14", "Interstate detail of the CFOP before it. The rules of its content are not settled."},
    KindNote{"18", "Free-zone shipment of the detail before it. The rules of its content are not settled."},
    KindNote{"20", "One occurrence of the declaration. Occurrences stand in ascending order."},
    KindNote{"25", "State registration that the occurrence before it concerns."},
    KindNote{"26", "Substitute taxpayer of the occurrence before it."},
    KindNote{"27", "Substituted taxpayer of the occurrence before it."},
    KindNote{"28", "Authorization of accumulated credit of the occurrence before it."},
    KindNote{"30", "DIPAM value of the declaration. The rules of its content are not settled."},
    KindNote{"31", "Export registration of the declaration. Registrations stand in ascending order."},
};

/// What a field holds. Record codes, quantities and separators explain themselves and have no note.
struct FieldNote {
  std::string_view code;
  std::string_view field;
  std::string_view text;
};

inline constexpr std::string_view kCents = "digits: value in cents";

inline constexpr std::array kFieldNotes{
    FieldNote{"01", "TipoDocto", "`01`"},
    FieldNote{"01", "DataGeração", "date AAAAMMDD"},
    FieldNote{"01", "HoraGeração", "time HHMMSS"},
    FieldNote{"01", "VersãoFrontEnd", "`0000`"},
    FieldNote{"01", "VersãoPref", "`0210`: version of this layout"},
    FieldNote{"05", "IE", "digits: state registration with its two check digits"},
    FieldNote{"05", "CNPJ", "digits: federal registration with its two check digits"},
    FieldNote{"05", "CNAE", "`0000000`"},
    FieldNote{"05", "RegTrib", "`01` to `04`: tax regime"},
    FieldNote{"05", "Ref", "AAAAMM: reference period"},
    FieldNote{"05", "RefInicial", "AAAAMM: first reference period, or zeros"},
    FieldNote{"05", "Tipo", "`00` to `03`: kind of return"},
    FieldNote{"05", "Movimento", "`0` or `1`"},
    FieldNote{"05", "Transmitida", "`0` or `1`"},
    FieldNote{"05", "SaldoCredPeriodoAnt", kCents},
    FieldNote{"05", "SaldoCredPeriodoAntST", kCents},
    FieldNote{"05", "SemRegra", "any text; not checked"},
    FieldNote{"05", "OrigemPreDig", "`0` or `1`"},
    FieldNote{"05", "ICMSFixPer", kCents},
    FieldNote{"05", "ChaveInterna", "32 hexadecimal digits"},
    FieldNote{"07", "PrópriaOuST", "`0` own operations, `1` tax substitution"},
    FieldNote{"07", "Valor", kCents},
    FieldNote{"07", "Data", "date AAAAMMDD of the payment"},
    FieldNote{"10", "CFOP", "digits, from the left, zeros to the right (`510200`)"},
    FieldNote{"10", "ValorContábil", kCents},
    FieldNote{"10", "BaseCálculo", kCents},
    FieldNote{"10", "Imposto", kCents},
    FieldNote{"10", "IsentasNãoTrib", kCents},
    FieldNote{"10", "Outras", kCents},
    FieldNote{"10", "ImpostoRetidoST", kCents},
    FieldNote{"10", "ImpRetSubstitutoST", kCents},
    FieldNote{"10", "ImpRetSubstituÍdo", kCents},
    FieldNote{"10", "OutrosImpostos", kCents},
    FieldNote{"14", "Conteúdo", "not settled; carried as it stands"},
    FieldNote{"18", "Conteúdo", "not settled; carried as it stands"},
    FieldNote{"20", "CódSubItem", "digits: three of the item, two of the sub-item (`00223` is 002.23)"},
    FieldNote{"20", "Valor", kCents},
    FieldNote{"20", "PrópriaOuST", "`0` own operations, `1` tax substitution"},
    FieldNote{"20", "FLegal", "text: legal basis, blanks to the right"},
    FieldNote{"20", "Ocorrência", "text: description, blanks to the right"},
    FieldNote{"25", "IE", "digits: state registration with its two check digits"},
    FieldNote{"25", "Valor", kCents},
    FieldNote{"26", "IESubstituto", "digits: state registration of the substitute"},
    FieldNote{"26", "NF", "digits: invoice number, zeros when none"},
    FieldNote{"26", "DataInicio", "AAAAMM: first period"},
    FieldNote{"26", "DataFim", "AAAAMM: last period"},
    FieldNote{"26", "Valor", kCents},
    FieldNote{"27", "IESubstituído", "digits: state registration of the substituted taxpayer"},
    FieldNote{"27", "NF", "digits: invoice number, zeros when none"},
    FieldNote{"27", "Valor", kCents},
    FieldNote{"28", "CodAutorizacao", "digits and lower-case letters: authorization code"},
    FieldNote{"28", "Valor", kCents},
    FieldNote{"30", "Conteúdo", "not settled; carried as it stands"},
    FieldNote{"31", "RE", "digits: number of the registration"},
};

}  // namespace tremvik::tools
