// A host that keeps one file in memory, answers look-ups from the default reference tables and counts what it
// is given: light enough for thousands of runs.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "adapters/local/component_folder.h"
#include "adapters/local/documents.h"
#include "adapters/sqlite/reference_engine.h"
#include "adapters/sqlite/reference_tables.h"
#include "component/tremvik.h"
#include "host/host.h"
#include "host/runtime_error.h"

namespace tremvik::test {

/// The default reference tables in a folder of their own, which goes with this object.
class ReferenceFolder {
 public:
  ReferenceFolder() { ConstruirTabelasPadrao(folder_.File(arquivo::kTabelasFixas)); }
  ~ReferenceFolder() { std::filesystem::remove_all(folder_.path()); }
  ReferenceFolder(const ReferenceFolder&) = delete;
  ReferenceFolder& operator=(const ReferenceFolder&) = delete;

  [[nodiscard]] std::string path() const { return folder_.path(); }
  [[nodiscard]] ReferenceEngine& engine() { return engine_; }

 private:
  static std::string MakeFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "exemplo-XXXXXX").string();
    return mkdtemp(name.data()) == nullptr ? throw RuntimeError(erro::kAcessoAoCaminho) : name;
  }

  ComponentFolder folder_{MakeFolder()};
  SqliteReferenceEngine engine_{folder_};
};

struct Box {
  std::string texto;
  int estilo;
  std::string titulo;
  friend bool operator==(const Box&, const Box&) = default;
};

struct Place {
  int linha;
  std::string registro;
  std::string campo;
  int posicao;
  friend bool operator==(const Place&, const Place&) = default;
};

class MemoryHost final : public Screen,
                         public Events,
                         public Diagnostics,
                         public Files,
                         public Application,
                         public ComponentFactory {
 public:
  MemoryHost(ReferenceFolder& reference, std::string_view file) : reference_(reference), file_(file) {}

  /// Runs the import; true when it was accepted. Questions are answered with `answer`.
  bool Import(int answer = resposta::kNao) {
    answer_ = answer;
    Tremvik tremvik({*this, *this, *this, *this, *this, reference_.engine(), *this});
    tremvik.set_bolRetMonitora(false);
    tremvik.Monitora("memory.txt");
    return !tremvik.bolRetMonitora() && !boxes.empty() &&
           boxes.back() == Box{"A importação foi concluída com sucesso!", 64, "Arquivo Pré-Formatado"};
  }

  std::vector<Box> boxes;
  std::vector<Place> places;                        // of refusals, a question answered No included
  std::map<std::string, int, std::less<>> written;  // records per code

  int MsgBox(std::string_view text, int style, std::string_view title) override {
    boxes.push_back({std::string(text), style, std::string(title)});
    if ((style & estilo::kSimNao) == 0) return resposta::kOk;
    if (answer_ == resposta::kNao) places.push_back(doubt_);
    return answer_;
  }
  void SetPointer(int /*pointer*/) override {}
  void Progresso() override {}
  void Fechar() override {}
  void Inconsistencia(const FaultLocation& where) override { places.push_back(ToPlace(where)); }
  void Duvida(const FaultLocation& where) override { doubt_ = ToPlace(where); }

  bool Exists(std::string_view /*path*/) override { return false; }
  void Delete(std::string_view /*path*/) override {}
  void Rename(std::string_view /*from*/, std::string_view /*to*/) override {}
  int FreeFile() override { return 1; }
  void Open(int /*number*/, std::string_view /*path*/) override { at_ = 0; }
  std::size_t Read(int /*number*/, char* buffer, std::size_t count) override {
    const std::size_t read = file_.copy(buffer, count, at_);
    at_ += read;
    return read;
  }
  void Close(int /*number*/) override {}

  std::string AppPath() override { return reference_.path(); }
  std::string GetSetting(std::string_view /*application*/, std::string_view /*section*/,
                         std::string_view /*key*/, std::string_view fallback) override {
    return std::string(fallback);
  }

  std::unique_ptr<BancoTemporario> CriarBancoTemporario() override { return std::make_unique<Banco>(); }
  std::unique_ptr<ConsultaDeclaracoes> CriarConsultaDeclaracoes() override {
    return std::make_unique<Consulta>();
  }
  std::unique_ptr<ValidadorDocumentos> CriarValidadorDocumentos() override {
    return std::make_unique<ValidadorDocumentosLocal>();
  }
  std::unique_ptr<Gravador> CriarGravador(Gravavel registro) override {
    return std::make_unique<Counter>(written[std::string(Codigo(registro))]);
  }

 private:
  static Place ToPlace(const FaultLocation& where) {
    return {where.linha, std::string(where.registro), std::string(where.campo), where.posicao};
  }

  struct Banco final : BancoTemporario {
    void Preparar() override {}
    std::int16_t Abrir(std::string_view /*caminho*/) override { return 1; }
    void Encerrar(std::string_view /*caminho*/) override {}
  };
  struct Consulta final : ConsultaDeclaracoes {
    void CaminhoBase(std::string_view /*caminho*/) override {}
    bool Existe(std::string_view /*ie*/, std::string_view /*uf*/, std::string_view /*regime*/,
                std::string_view /*referencia*/, std::string_view /*referencia_inicial*/) override {
      return false;
    }
  };
  struct Counter final : Gravador {
    explicit Counter(int& written) : written_(written) {}
    void CaminhoBase(std::string_view /*caminho*/) override {}
    void Campo(std::string_view /*nome*/, std::string_view /*texto*/) override {}
    void Gravar() override { ++written_; }
    int& written_;
  };

  ReferenceFolder& reference_;
  std::string_view file_;
  std::size_t at_ = 0;
  Place doubt_{};
  int answer_ = resposta::kNao;
};

}  // namespace tremvik::test
