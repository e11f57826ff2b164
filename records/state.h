// Run state that the validators share, split by how long it lives. `ContCR05`, `ChaveDeclaracao` and the
// totals of `Acumuladores` are kept but not read yet: the rules of the interstate and the DIPAM records
// (CR=14, CR=30), not settled so far, will read them.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace tremvik {

/// Of the instance: what is known of the headers read so far.
struct EstadoCabecalhos {
  std::string UltimaChaveIERef;  ///< IE and Ref (12 + 6 characters) of the last accepted header
  std::int16_t ContCR05 = 0;     ///< headers accepted
};

/// Totals of one declaration, in the file's units (cents). Zeroed before each declaration.
struct Acumuladores {
  double SomaEntradasCR10 = 0;            ///< base + exempt + other of the CFOPs of group 1
  double SomaSaidasCR10 = 0;              ///< the same of groups 5 to 7
  std::array<double, 4> SomaDipamCR10{};  ///< the same by family: sales, transport, communication, energy
  std::array<double, 3> SomaDipamCR30{};  ///< of the DIPAM records, still 0
};

/// Of one declaration. The quantities stay until the declaration ends or the next header sets them.
struct EstadoDeclaracao {
  std::int16_t QtdeCR07 = 0;
  std::int16_t QtdeCR10 = 0;
  std::int16_t QtdeCR20 = 0;
  std::int16_t QtdeCR30 = 0;
  std::int16_t QtdeCR31 = 0;
  std::int16_t QtdePendenteCR14 = 0;  ///< Q14 of the CFOP detail just validated
  std::string ChaveDeclaracao;        ///< IE and Ref (12 + 6 characters)
  std::string TextoLinha;             ///< number of the last CFOP detail's line, for prompts
  Acumuladores acumuladores;
};

/// Of one occurrence: details announced and not read yet, and the sums of their values in cents.
struct EstadoOcorrencia {
  std::int16_t QtdePendenteCR25 = 0;
  std::int16_t QtdePendenteCR26 = 0;
  std::int16_t QtdePendenteCR27 = 0;
  std::int16_t QtdePendenteCR28 = 0;
  double SomaValorCR25a27 = 0;
  double SomaValorCR28 = 0;
};

}  // namespace tremvik
