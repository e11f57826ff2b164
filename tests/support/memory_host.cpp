#include "tests/support/memory_host.h"

#include <algorithm>
#include <stdexcept>

namespace tremvik::test {
namespace {

Place PlaceOf(const FaultLocation& where) {
  return {where.linha,   std::string(where.registro), std::string(where.campo), where.posicao,
          where.largura, std::string(where.valor),    std::string(where.porque)};
}

// What the component always does the same way.
void Require(bool as_agreed, const char* what) {
  if (!as_agreed) throw std::logic_error(what);
}

}  // namespace

struct MemoryHost::Banco final : BancoTemporario {
  explicit Banco(MemoryHost& of) : host(of) {}
  void Preparar() override {
    host.Note("Preparar");
    host.Step("Preparar");
  }
  std::int16_t Abrir(std::string_view caminho) override {
    host.Note("Abrir ", caminho);
    host.Step("Abrir");
    return 7;
  }
  void Encerrar(std::string_view caminho) override {
    host.Note("Encerrar ", caminho);
    host.Step("Encerrar");
  }
  MemoryHost& host;
};

struct MemoryHost::Consulta final : ConsultaDeclaracoes {
  explicit Consulta(MemoryHost& of) : host(of) {}
  void CaminhoBase(std::string_view caminho) override { host.Note("Consulta em ", caminho); }
  bool Existe(std::string_view ie, std::string_view uf, std::string_view regime, std::string_view referencia,
              std::string_view referencia_inicial) override {
    host.Step("Existe");
    host.Note("Existe ", ie, " ", uf, " ", regime, " ", referencia, " ", referencia_inicial);
    return host.holds_all || ie == kHeldIE;
  }
  MemoryHost& host;
};

struct MemoryHost::Documentos final : ValidadorDocumentos {
  explicit Documentos(MemoryHost& of) : host(of) {}
  bool ValidarIE(std::string_view ie) override {
    host.Step("ValidarIE");
    return ie != kInvalidIE;
  }
  bool ValidarCNPJ(std::string_view cnpj) override { return cnpj != kInvalidCNPJ; }
  std::string IECerta(std::string_view /*ie*/) override { return "110042490114"; }
  MemoryHost& host;
};

struct MemoryHost::Writer final : Gravador {
  Writer(MemoryHost& of, std::string_view code) : host(of), record(code), written(of.written[record]) {}
  void CaminhoBase(std::string_view caminho) override { host.Note("Gravador ", record, " em ", caminho); }
  void Campo(std::string_view nome, std::string_view texto) override {
    if (host.keeps_log) fields.append(" ").append(nome).append("=").append(texto);
  }
  void Gravar() override {
    host.Step("Gravar");
    host.Note("Gravar ", record, fields);
    fields.clear();
    ++written;
  }
  MemoryHost& host;
  std::string record, fields;
  int& written;
};

// The reference tables: one look-up is open at a time.
struct MemoryHost::Tables final : Database, Recordset {
  explicit Tables(MemoryHost& of) : host(of) {}
  Recordset& OpenRecordset(std::string_view sql, int type) override {
    host.Step("OpenRecordset");
    Require(type == kSnapshot, "recordsets are snapshots");
    host.queries.emplace_back(sql);
    ++host.open_databases;
    known = std::ranges::none_of(
        kUnknownKeys, [&](std::string_view key) { return sql.find(key) != std::string_view::npos; });
    return *this;
  }
  long RecordCount() override { return known ? 1 : 0; }
  std::string_view Field(std::string_view name) override {
    Require(name == "Descrição", "no other column is read");
    return "Compra de teste";
  }
  void Close() override { --host.open_databases; }
  MemoryHost& host;
  bool known = false;
};

MemoryHost::MemoryHost(std::string_view folder) : folder_(folder), tables_(std::make_unique<Tables>(*this)) {
  files[folder_ + "\\BDTemp.mdb"] = "";
}

MemoryHost::~MemoryHost() = default;

void MemoryHost::Step(std::string_view operation) {
  const auto failure = failures_.find(operation);
  if (failure == failures_.end() || failure->second.good-- > 0) return;
  if (failure->second.number == 0) throw std::runtime_error("a defect of the host");
  throw RuntimeError(failure->second.number);
}

int MemoryHost::MsgBox(std::string_view text, int style, std::string_view title) {
  Note("Caixa");
  Step("MsgBox");
  boxes.push_back({std::string(text), style, std::string(title)});
  if ((style & estilo::kSimNao) == 0) return resposta::kOk;
  Require(!answers.empty(), "an answer is set");
  return answers.at(questions_++ % answers.size());
}

void MemoryHost::Progresso() {
  Note("Progresso");
  Step("Progresso");
}

void MemoryHost::Inconsistencia(const FaultLocation& where) {
  places.push_back(PlaceOf(where));
  Note("Inconsistência ", std::to_string(where.linha), " ", where.registro, ".", where.campo);
}

void MemoryHost::Duvida(const FaultLocation& where) {
  doubts.push_back(PlaceOf(where));
  Note("Dúvida ", std::to_string(where.linha), " ", where.registro, ".", where.campo);
}

bool MemoryHost::Exists(std::string_view path) {
  Step("Exists");
  return files.contains(path);
}

void MemoryHost::Delete(std::string_view path) {
  Note("Delete ", path);
  Step("Delete");
  if (files.erase(std::string(path)) == 0) throw RuntimeError(erro::kArquivoNaoEncontrado);
}

void MemoryHost::Rename(std::string_view from, std::string_view to) {
  Note("Rename ", from, " ", to);
  Step("Rename");
  if (!files.contains(from)) throw RuntimeError(erro::kArquivoNaoEncontrado);
  if (files.contains(to)) throw RuntimeError(erro::kArquivoJaExiste);
  files.insert_or_assign(std::string(to), files.extract(std::string(from)).mapped());
}

int MemoryHost::FreeFile() {
  Step("FreeFile");
  int number = 1;
  while (open_.contains(number))
    ++number;
  return number;
}

void MemoryHost::Open(int number, std::string_view path) {
  Note("Open ", std::to_string(number), " ", path);
  Step("Open");
  const auto file = files.find(path);
  if (file == files.end()) throw RuntimeError(erro::kArquivoNaoEncontrado);
  if (!open_.try_emplace(number, file->second).second) throw RuntimeError(erro::kArquivoJaAberto);
  if (++openings_ % 3 == 0 && !third_opening.empty()) open_.at(number) = third_opening;
}

std::size_t MemoryHost::Read(int number, char* buffer, std::size_t count) {
  Step("Read");
  std::string_view& rest = open_.at(number);
  const std::size_t got = rest.copy(buffer, std::min(count, most_read));
  rest.remove_prefix(got);
  return got;
}

void MemoryHost::Close(int number) {
  Note("Close ", std::to_string(number));
  open_.erase(number);
  Step("Close");
}

std::string MemoryHost::GetSetting(std::string_view application, std::string_view section,
                                   std::string_view key, std::string_view fallback) {
  Note("GetSetting ", application, " ", section, " ", key);
  Step("GetSetting");
  Require(fallback.empty(), "no fallback");
  return "Base do usuário";
}

Database& MemoryHost::OpenDatabase(std::string_view path) {
  Step("OpenDatabase");
  Require(path == folder_ + "\\tblFixas.fix", "there is no other database");
  ++open_databases;
  return *tables_;
}

std::unique_ptr<BancoTemporario> MemoryHost::CriarBancoTemporario() {
  Step("CriarBancoTemporario");
  return std::make_unique<Banco>(*this);
}

std::unique_ptr<ConsultaDeclaracoes> MemoryHost::CriarConsultaDeclaracoes() {
  Step("CriarConsultaDeclaracoes");
  return std::make_unique<Consulta>(*this);
}

std::unique_ptr<ValidadorDocumentos> MemoryHost::CriarValidadorDocumentos() {
  Step("CriarValidadorDocumentos");
  return std::make_unique<Documentos>(*this);
}

std::unique_ptr<Gravador> MemoryHost::CriarGravador(Kind registro) {
  Step("CriarGravador");
  return std::make_unique<Writer>(*this, Codigo(registro));
}

}  // namespace tremvik::test
