// One declaration of a sample file: its header (CR=05) and everything under it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sample/cfops.h"
#include "sample/draw.h"
#include "sample/occurrences.h"

namespace tremvik::sample {

/// A reference `months` months after `ref` (both AAAAMM).
[[nodiscard]] int AddMonths(int ref, int months);

/// Who declares.
struct Contribuinte {
  std::string ie;
  std::string cnpj;
};

/// One payment (CR=07).
struct Pagamento {
  char propria_ou_st;
  std::int64_t valor;
  int data;  ///< AAAAMMDD
};

/// The plan of one declaration. Kinds whose content is free are only counted.
struct Declaracao {
  Contribuinte contribuinte{};
  int ref = 0;          ///< AAAAMM
  int regime = 1;       ///< 1 to 4
  int ref_inicial = 0;  ///< regime 2 only
  std::vector<Pagamento> pagamentos{};
  std::vector<DetalheCfop> cfops{};
  std::vector<Ocorrencia> ocorrencias{};
  int dipam = 0;        ///< CR=30 records
  int exportacoes = 0;  ///< CR=31 records

  [[nodiscard]] bool TakesDipam() const { return ref >= 200101 && regime != 4; }
  [[nodiscard]] bool TakesExportacoes() const { return ref >= 200201; }
  /// Records from the header to the last one under it.
  [[nodiscard]] int Records() const;
};

/// Draws the content of a declaration. `complete` gives it every record kind (regime 1 to 3, reference from
/// 201201 on, IE not beginning with 8).
[[nodiscard]] Declaracao DrawDeclaracao(Draw& draw, const Contribuinte& contribuinte, int ref, int regime,
                                        bool complete);
/// Appends all its records to `out`.
void Write(const Declaracao& declaracao, Draw& draw, std::string& out);

}  // namespace tremvik::sample
