// The component: one creatable class that validates and imports a "Pré-Formatado" file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "host/host.h"
#include "host/outcome.h"

namespace tremvik {

/// Validates and imports one "Pré-Formatado" file per instance. Create it, set `bolRetMonitora` to False,
/// call `Monitora`, then read `bolRetMonitora` and, after a failure, `Mensagem` and `NroLinha`.
/// Single-threaded: events and message boxes come on the caller's thread. Texts are UTF-8.
///
/// `Monitora`, `CompararTotais` and `ErroSair` run one at a time: called while one of them runs on the same
/// instance, from an event or from anything else of the host, they raise error 5 at once and change nothing.
/// An instance must not be destroyed there either; debug builds check it.
class Tremvik {
 public:
  /// All that `host` refers to must outlive the instance.
  explicit Tremvik(Host host);
  /// Not within a call that the instance makes to its host.
  ~Tremvik();
  Tremvik(const Tremvik&) = delete;
  Tremvik& operator=(const Tremvik&) = delete;

  /// True after a failed run; the component only ever sets it to True.
  [[nodiscard]] bool bolRetMonitora() const;
  void set_bolRetMonitora(bool valor);
  /// The handle that the host's database component returned when the temporary database was opened.
  [[nodiscard]] std::int16_t idxBanco() const;
  void set_idxBanco(std::int16_t valor);
  /// The host's current database, from the per-user setting "DbAtual".
  [[nodiscard]] const std::string& database_name() const;
  void set_database_name(std::string_view valor);

  /// Counts the records of every kind in the file at path `TextLine` and compares the counts with the
  /// quantities announced; shows all that differ in one box. True when something was reported. Raises
  /// run-time errors.
  bool CompararTotais(std::string_view TextLine);
  /// Formats a value in cents ("000000000012345") as "123,45". Raises error 13 where `a` is no number, 6
  /// where it exceeds the runtime's currency.
  [[nodiscard]] std::string FomataValor(std::string_view a) const;
  /// The code form of a CFOP for the current declaration's period: four digits after 200212, else the
  /// non-zero ones of six. Raises error 6 above 32767, 13 where a character is no digit.
  [[nodiscard]] std::string TiraZeros(std::string_view a) const;
  /// True when `a` is no plain number: digits only, no blanks, minus sign or separators; with `b`, 0 is
  /// rejected too. `c` is not consulted.
  [[nodiscard]] bool LefRigNumChr(std::string_view a, bool b = false, bool c = false) const;
  /// Always empty; published for hosts that read it.
  [[nodiscard]] const std::string& linha() const;
  /// The text of the last fault or prompt.
  [[nodiscard]] const std::string& Mensagem() const;
  /// Shows `Mensagem` with the request to contact the file's maker, raises `Fechar` and closes the temporary
  /// database. Raises what closing it raises.
  void ErroSair();
  /// Validates and imports the file at path `NArq`. Raises nothing but the error 5 of a call within a call:
  /// how the run ended is in `bolRetMonitora` and `outcome`.
  void Monitora(std::string_view NArq);
  /// How the last run ended.
  [[nodiscard]] const Outcome& outcome() const;
  /// The number of the record last read.
  [[nodiscard]] std::int16_t NroLinha() const;
  /// True when the authorization code of the current CR=28 record does not agree with its value, the
  /// occurrence's sub-item and the taxpayer.
  [[nodiscard]] bool Validar_Cod_CredAcumulado() const;

 private:
  class Run;
  std::unique_ptr<Run> run_;
};

}  // namespace tremvik
