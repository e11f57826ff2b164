// A host in front of another one whose calls fail as planned.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "host/host.h"

namespace tremvik::test {

/// Which of the calls counted fail.
enum class Reach {
  kOnce,      ///< the n-th one
  kFromThere  ///< the n-th one and all after it
};

/// Counts calls and raises a run-time error in those that are to fail.
class FaultPlan {
 public:
  FaultPlan(long n, Reach reach) : n_(n), reach_(reach) {}
  /// Counts one call, whose failure has that number.
  void Call(int number);
  /// True when a call has failed.
  [[nodiscard]] bool struck() const { return count_ >= n_; }

 private:
  long n_;
  Reach reach_;
  long count_ = 0;
};

/// Wraps any host. Every call of every collaborator is one of the plan's; a call that fails is not passed on,
/// but for closing a file, which closes it and then fails.
class FaultHost final : public Screen,
                        public Events,
                        public Diagnostics,
                        public Files,
                        public Application,
                        public ReferenceEngine,
                        public ComponentFactory {
 public:
  /// `inner`'s objects and `plan` must outlive this object, and this object every component made with it.
  FaultHost(const Host& inner, FaultPlan& plan);
  ~FaultHost() override;
  FaultHost(const FaultHost&) = delete;
  FaultHost& operator=(const FaultHost&) = delete;
  [[nodiscard]] Host host() { return {*this, *this, *this, *this, *this, *this, *this}; }
  [[nodiscard]] std::size_t open_files() const { return open_.size(); }

  int MsgBox(std::string_view text, int style, std::string_view title) override;
  void SetPointer(int pointer) override;
  void Progresso() override;
  void Fechar() override;
  void Inconsistencia(const FaultLocation& where) override;
  void Duvida(const FaultLocation& where) override;
  bool Exists(std::string_view path) override;
  void Delete(std::string_view path) override;
  void Rename(std::string_view from, std::string_view to) override;
  int FreeFile() override;
  void Open(int number, std::string_view path) override;
  std::size_t Read(int number, char* buffer, std::size_t count) override;
  void Close(int number) override;
  std::string AppPath() override;
  std::string GetSetting(std::string_view application, std::string_view section, std::string_view key,
                         std::string_view fallback) override;
  Database& OpenDatabase(std::string_view path) override;
  std::unique_ptr<BancoTemporario> CriarBancoTemporario() override;
  std::unique_ptr<ConsultaDeclaracoes> CriarConsultaDeclaracoes() override;
  std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() override;
  std::unique_ptr<Gravador> CriarGravador(Gravavel registro) override;

 private:
  struct Tables;
  Host inner_;
  FaultPlan& plan_;
  std::set<int> open_;
  std::unique_ptr<Tables> tables_;
};

}  // namespace tremvik::test
