// CFOP details (CR=10) of a sample declaration, with their interstate (CR=14) and free-zone (CR=18) records.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "sample/draw.h"

namespace tremvik::sample {

/// One CFOP detail; values in cents.
struct DetalheCfop {
  std::string_view codigo;  ///< the six digits of the field
  std::int64_t base = 0;
  std::int64_t imposto = 0;
  std::int64_t isentas = 0;
  std::int64_t outras = 0;
  std::int64_t imposto_retido = 0;
  std::int64_t retido_substituto = 0;
  std::int64_t retido_substituido = 0;
  std::int64_t outros_impostos = 0;
  bool needs_dipam = false;  ///< the declaration must hold DIPAM records
  int interestaduais = 0;    ///< CR=14 records; more than 0 exactly for interstate operations
  int remessas = 0;          ///< CR=18 records, all under the first CR=14
};

/// CFOP details that a declaration of that reference and regime may hold, ascending: operations that begin or
/// end with the reference first of all, one interstate operation where the regime has them, and others.
[[nodiscard]] std::vector<DetalheCfop> DrawCfops(Draw& draw, int ref, int regime);
/// Gives it a tax just above the 25 % of the base that pass without a question.
void ExceedImposto(DetalheCfop& detalhe);
/// Appends the record and those under it to `out`.
void Write(const DetalheCfop& detalhe, Draw& draw, std::string& out);

}  // namespace tremvik::sample
