// What is done to a record after its fault was told, so that the next trial gets past it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "examination/trial.h"
#include "examination/workpiece.h"

namespace tremvik {

enum class Mended : std::uint8_t {
  kTell,     ///< a fault of its own; the next trial gets past it
  kFollows,  ///< it follows from a fault already told; the next trial gets past it
  kGiveUp    ///< a fault of its own, and nothing is known that gets past it
};

/// Mends what the passes over the whole file told of the record `at`: a length, an unknown code, a quantity.
[[nodiscard]] Mended MendStructure(Workpiece& work, std::size_t at, const Told& told);

/// Mends what a rule refused at the record `at` of a declaration; `last` is the record read last. Values of
/// the header become neutral ones, other records are taken out.
[[nodiscard]] Mended MendRule(Workpiece& work, std::size_t at, std::size_t last, const Finding& finding,
                              const TrialResult& result, Suppressed& suppressed);

/// Gives a field of the master record a value that passes.
void MendMaster(Piece& master, const FieldInfo& field, std::size_t headers);

/// A master record without a fault that announces `headers` declarations.
[[nodiscard]] std::string SoundMaster(std::size_t headers);

}  // namespace tremvik
