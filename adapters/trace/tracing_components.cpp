#include "adapters/trace/tracing_components.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace tremvik {
namespace {

class TracingBanco final : public BancoTemporario {
 public:
  TracingBanco(std::unique_ptr<BancoTemporario> inner, TraceSink& sink)
      : inner_(std::move(inner)), sink_(sink) {}

  void Preparar() override {
    sink_.Banco("Preparar", {});
    inner_->Preparar();
  }
  std::int16_t Abrir(std::string_view caminho) override {
    sink_.Banco("Abrir", caminho);
    return inner_->Abrir(caminho);
  }
  void Encerrar(std::string_view caminho) override {
    sink_.Banco("Encerrar", caminho);
    inner_->Encerrar(caminho);
  }

 private:
  std::unique_ptr<BancoTemporario> inner_;
  TraceSink& sink_;
};

class TracingConsulta final : public ConsultaDeclaracoes {
 public:
  TracingConsulta(std::unique_ptr<ConsultaDeclaracoes> inner, TraceSink& sink)
      : inner_(std::move(inner)), sink_(sink) {}

  void CaminhoBase(std::string_view caminho) override { inner_->CaminhoBase(caminho); }
  bool Existe(std::string_view ie, std::string_view uf, std::string_view regime, std::string_view referencia,
              std::string_view referencia_inicial) override {
    const bool existe = inner_->Existe(ie, uf, regime, referencia, referencia_inicial);
    sink_.Consulta({ie, uf, regime, referencia, referencia_inicial, existe});
    return existe;
  }

 private:
  std::unique_ptr<ConsultaDeclaracoes> inner_;
  TraceSink& sink_;
};

// Keeps the fields of the record being given in one reused text, as their views end with each call.
class TracingGravador final : public Gravador {
 public:
  TracingGravador(std::unique_ptr<Gravador> inner, TraceSink& sink, Kind registro)
      : inner_(std::move(inner)), sink_(sink), registro_(registro) {}

  void CaminhoBase(std::string_view caminho) override { inner_->CaminhoBase(caminho); }
  void Campo(std::string_view nome, std::string_view texto) override {
    ends_.push_back({bytes_.size() + nome.size(), bytes_.size() + nome.size() + texto.size()});
    bytes_.append(nome).append(texto);
    inner_->Campo(nome, texto);
  }
  void Gravar() override {
    const std::string_view bytes = bytes_;
    campos_.clear();
    std::size_t begin = 0;
    for (const auto& end : ends_) {
      campos_.push_back(
          {bytes.substr(begin, end.nome - begin), bytes.substr(end.nome, end.texto - end.nome)});
      begin = end.texto;
    }
    sink_.Gravacao(registro_, campos_);
    bytes_.clear();
    ends_.clear();
    inner_->Gravar();
  }

 private:
  struct Ends {
    std::size_t nome;
    std::size_t texto;
  };
  std::unique_ptr<Gravador> inner_;
  TraceSink& sink_;
  Kind registro_;
  std::string bytes_;
  std::vector<Ends> ends_;
  std::vector<TracedField> campos_;
};

}  // namespace

std::unique_ptr<BancoTemporario> TracingComponents::CriarBancoTemporario() {
  return std::make_unique<TracingBanco>(inner_.CriarBancoTemporario(), sink_);
}

std::unique_ptr<ConsultaDeclaracoes> TracingComponents::CriarConsultaDeclaracoes() {
  return std::make_unique<TracingConsulta>(inner_.CriarConsultaDeclaracoes(), sink_);
}

std::unique_ptr<ValidadorDocumentos> TracingComponents::CriarValidadorDocumentos() {
  return inner_.CriarValidadorDocumentos();
}

std::unique_ptr<Gravador> TracingComponents::CriarGravador(Kind registro) {
  if (!gravacoes_) return inner_.CriarGravador(registro);
  return std::make_unique<TracingGravador>(inner_.CriarGravador(registro), sink_, registro);
}

}  // namespace tremvik
