// Sample files: valid "Pré-Formatado" files with every record kind, for people who build their own generator,
// and for measurements and tests.
#pragma once

#include <cstdint>
#include <string>

namespace tremvik::sample {

/// What a sample file is to hold.
struct Options {
  /// Declarations, 1 to 9999; 0 makes twelve, or as many as `registros` calls for. From about sixty on, the
  /// file has every tax regime and references on both sides of every period limit.
  int declaracoes = 0;
  /// The same seed gives the same bytes, on every platform.
  std::uint64_t seed = 1;
  /// Exact number of records of the file; 0 leaves it to what the declarations happen to hold.
  int registros = 0;
  /// True makes one CFOP detail whose tax exceeds 25 % of its base, so that the import asks once.
  bool duvida = false;

  friend bool operator==(const Options&, const Options&) = default;
};

/// The bytes of a file (Windows-1252, lines ending in CR LF) that is accepted. The first declaration planned
/// holds every record kind. Raises std::invalid_argument, with a sentence for the user (UTF-8), where no file
/// has that many declarations or records.
[[nodiscard]] std::string Generate(const Options& options);

}  // namespace tremvik::sample
