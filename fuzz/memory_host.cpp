#include "fuzz/memory_host.h"

#include <algorithm>

#include "adapters/local/documents.h"
#include "adapters/sqlite/reference_tables.h"
#include "host/runtime_error.h"

namespace tremvik::fuzz {

References::References() {
  ConstruirTabelasPadrao(folder_.File(arquivo::kTabelasFixas));
  Forget();
}

class MemoryHost::Banco final : public BancoTemporario {
 public:
  explicit Banco(MemoryHost& host) : host_(host) {}
  void Preparar() override { host_.Note({"Preparar"}); }
  std::int16_t Abrir(std::string_view caminho) override {
    host_.Note({"Abrir ", caminho});
    return 1;
  }
  void Encerrar(std::string_view caminho) override { host_.Note({"Encerrar ", caminho}); }

 private:
  MemoryHost& host_;
};

class MemoryHost::Consulta final : public ConsultaDeclaracoes {
 public:
  explicit Consulta(MemoryHost& host) : host_(host) {}
  void CaminhoBase(std::string_view /*caminho*/) override {}
  bool Existe(std::string_view ie, std::string_view uf, std::string_view regime, std::string_view referencia,
              std::string_view referencia_inicial) override {
    host_.Note({"Existe ", ie, " ", uf, " ", regime, " ", referencia, " ", referencia_inicial});
    return (host_.input_.answers & 0x80U) != 0;
  }

 private:
  MemoryHost& host_;
};

class MemoryHost::Writer final : public Gravador {
 public:
  Writer(MemoryHost& host, Gravavel registro) : host_(host), registro_(registro) {}
  void CaminhoBase(std::string_view /*caminho*/) override {}
  void Campo(std::string_view nome, std::string_view texto) override {
    campos_.append(" ").append(nome).append("=").append(texto);
  }
  void Gravar() override {
    host_.Note({"Gravar ", Codigo(registro_), campos_});
    campos_.clear();
    ++host_.records_;
  }

 private:
  MemoryHost& host_;
  Gravavel registro_;
  std::string campos_;
};

void MemoryHost::Note(std::initializer_list<std::string_view> pieces) {
  for (const std::string_view piece : pieces)
    trace_ += piece;
  trace_ += '\n';
}

void MemoryHost::Note(std::string_view what, const FaultLocation& where) {
  Note({what, " ", std::to_string(where.linha), " ", where.registro, " ", where.campo, " ",
        std::to_string(where.posicao), " ", std::to_string(where.largura), " ", where.valor});
}

int MemoryHost::MsgBox(std::string_view text, int style, std::string_view title) {
  Note({"MsgBox ", text, " ", std::to_string(style), " ", title});
  last_title_ = title;
  if ((style & estilo::kSimNao) == 0) {
    ++boxes_;
    return resposta::kOk;
  }
  const bool yes = (input_.answers & (1U << static_cast<unsigned>(questions_++ % 7))) != 0;
  return yes ? resposta::kSim : resposta::kNao;
}

void MemoryHost::SetPointer(int pointer) { Note({"SetPointer ", std::to_string(pointer)}); }

void MemoryHost::Fechar() {
  ++closings_;
  Note({"Fechar"});
}

void MemoryHost::Inconsistencia(const FaultLocation& where) {
  places_.push_back({where.linha, std::string(where.registro), std::string(where.campo)});
  Note("Inconsistencia", where);
}

void MemoryHost::Duvida(const FaultLocation& where) { Note("Duvida", where); }

void MemoryHost::Delete(std::string_view /*path*/) { throw RuntimeError(erro::kArquivoNaoEncontrado); }

int MemoryHost::FreeFile() {
  const auto free = std::ranges::find_if(offsets_, [](const auto& offset) { return !offset; });
  return static_cast<int>(free - offsets_.begin()) + 1;
}

void MemoryHost::Open(int number, std::string_view path) {
  if (path != kInputPath) throw RuntimeError(erro::kArquivoNaoEncontrado);
  const auto index = static_cast<std::size_t>(number - 1);
  if (index >= offsets_.size()) offsets_.resize(index + 1);
  if (offsets_[index]) throw RuntimeError(erro::kArquivoJaAberto);
  offsets_[index] = 0;
  ++open_files_;
}

std::size_t MemoryHost::Read(int number, char* buffer, std::size_t count) {
  auto& offset = offsets_.at(static_cast<std::size_t>(number - 1));
  if (!offset) throw RuntimeError(erro::kNumeroDeArquivoInvalido);
  const std::size_t got = input_.file.copy(buffer, std::min(count, input_.read_at_most), *offset);
  *offset += got;
  return got;
}

void MemoryHost::Close(int number) {
  auto& offset = offsets_.at(static_cast<std::size_t>(number - 1));
  if (offset) --open_files_;
  offset.reset();
}

std::string MemoryHost::GetSetting(std::string_view application, std::string_view section,
                                   std::string_view key, std::string_view fallback) {
  Note({"GetSetting ", application, " ", section, " ", key});
  return std::string(fallback);
}

std::unique_ptr<BancoTemporario> MemoryHost::CriarBancoTemporario() { return std::make_unique<Banco>(*this); }

std::unique_ptr<ConsultaDeclaracoes> MemoryHost::CriarConsultaDeclaracoes() {
  return std::make_unique<Consulta>(*this);
}

std::unique_ptr<ValidadorDocumentos> MemoryHost::CriarValidadorDocumentos() {
  return std::make_unique<ValidadorDocumentosLocal>();
}

std::unique_ptr<Gravador> MemoryHost::CriarGravador(Gravavel registro) {
  return std::make_unique<Writer>(*this, registro);
}

}  // namespace tremvik::fuzz
