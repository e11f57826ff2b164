#include "tests/support/recording_host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

namespace tremvik::test {
namespace {

struct Banco final : BancoTemporario {
  explicit Banco(RecordingHost& of) : host(of) {}
  void Preparar() override {
    host.log.emplace_back("Preparar");
    host.Step("Preparar");
  }
  std::int16_t Abrir(std::string_view caminho) override {
    host.log.emplace_back("Abrir ").append(caminho);
    host.Step("Abrir");
    return 7;
  }
  void Encerrar(std::string_view caminho) override {
    host.log.emplace_back("Encerrar ").append(caminho);
    host.Step("Encerrar");
  }
  RecordingHost& host;
};

struct Consulta final : ConsultaDeclaracoes {
  explicit Consulta(RecordingHost& of) : host(of) {}
  void CaminhoBase(std::string_view caminho) override {
    host.log.emplace_back("Consulta em ").append(caminho);
  }
  bool Existe(std::string_view ie, std::string_view uf, std::string_view regime, std::string_view referencia,
              std::string_view referencia_inicial) override {
    host.Step("Existe");
    std::string& line = host.log.emplace_back("Existe");
    for (const std::string_view part : {ie, uf, regime, referencia, referencia_inicial}) {
      line.append(" ").append(part);
    }
    return ie == RecordingHost::kHeldIE;
  }
  RecordingHost& host;
};

struct Documentos final : ValidadorDocumentos {
  explicit Documentos(RecordingHost& of) : host(of) {}
  bool ValidarIE(std::string_view ie) override {
    host.Step("ValidarIE");
    return ie != RecordingHost::kInvalidIE;
  }
  bool ValidarCNPJ(std::string_view cnpj) override { return cnpj != RecordingHost::kInvalidCNPJ; }
  RecordingHost& host;
};

struct Writer final : Gravador {
  Writer(RecordingHost& of, std::string_view code) : host(of), record(code) {}
  void CaminhoBase(std::string_view caminho) override {
    host.log.emplace_back("Gravador ").append(record).append(" em ").append(caminho);
  }
  void Campo(std::string_view nome, std::string_view texto) override {
    fields.append(" ").append(nome).append("=").append(texto);
  }
  void Gravar() override {
    host.Step("Gravar");
    host.log.emplace_back("Gravar ").append(record).append(fields);
    fields.clear();
  }
  RecordingHost& host;
  std::string record, fields;
};

Place PlaceOf(const FaultLocation& where) {
  return {where.linha,   std::string(where.registro), std::string(where.campo), where.posicao,
          where.largura, std::string(where.valor)};
}

std::string LogLine(std::string_view what, const FaultLocation& where) {
  return std::string(what) + " " + std::to_string(where.linha) + " " + std::string(where.registro) + "." +
         std::string(where.campo);
}

}  // namespace

void RecordingHost::Step(std::string_view operation) {
  const auto failure = failures_.find(operation);
  if (failure == failures_.end() || failure->second.good-- > 0) return;
  if (failure->second.number == 0) throw std::runtime_error("a defect of the host");
  throw RuntimeError(failure->second.number);
}

int RecordingHost::MsgBox(std::string_view text, int style, std::string_view title) {
  log.emplace_back("Caixa");
  Step("MsgBox");
  boxes.push_back({std::string(text), style, std::string(title)});
  return boxes.size() <= answers.size() ? answers.at(boxes.size() - 1) : 1;
}

void RecordingHost::SetPointer(int pointer) { log.push_back("Ponteiro " + std::to_string(pointer)); }

void RecordingHost::Progresso() {
  log.emplace_back("Progresso");
  Step("Progresso");
}

void RecordingHost::Fechar() { log.emplace_back("Fechar"); }

void RecordingHost::Inconsistencia(const FaultLocation& where) {
  places.push_back(PlaceOf(where));
  log.push_back(LogLine("Inconsistência", where));
}

void RecordingHost::Duvida(const FaultLocation& where) { log.push_back(LogLine("Dúvida", where)); }

bool RecordingHost::Exists(std::string_view path) {
  Step("Exists");
  return files.contains(path);
}

void RecordingHost::Delete(std::string_view path) {
  log.emplace_back("Delete ").append(path);
  Step("Delete");
  if (files.erase(std::string(path)) == 0) throw RuntimeError(53);
}

void RecordingHost::Rename(std::string_view from, std::string_view to) {
  log.emplace_back("Rename ").append(from).append(" ").append(to);
  Step("Rename");
  if (!files.contains(from)) throw RuntimeError(53);
  if (files.contains(to)) throw RuntimeError(58);
  files.insert_or_assign(std::string(to), files.extract(std::string(from)).mapped());
}

int RecordingHost::FreeFile() {
  Step("FreeFile");
  int number = 1;
  while (open_.contains(number))
    ++number;
  return number;
}

void RecordingHost::Open(int number, std::string_view path) {
  log.push_back("Open " + std::to_string(number) + " " + std::string(path));
  Step("Open");
  const auto file = files.find(path);
  if (file == files.end()) throw RuntimeError(53);
  if (!open_.try_emplace(number, Opened{file->second}).second) throw RuntimeError(55);
  if (++openings_ % 3 == 0 && !third_opening.empty()) open_.at(number).rest = third_opening;
}

std::size_t RecordingHost::Read(int number, char* buffer, std::size_t count) {
  Step("Read");
  std::string_view& rest = open_.at(number).rest;
  const std::string_view piece = rest.substr(0, std::min(count, most_read));
  std::ranges::copy(piece, buffer);
  rest.remove_prefix(piece.size());
  return piece.size();
}

void RecordingHost::Close(int number) {
  log.push_back("Close " + std::to_string(number));
  open_.erase(number);
  Step("Close");
}

std::string RecordingHost::GetSetting(std::string_view application, std::string_view section,
                                      std::string_view key, std::string_view fallback) {
  log.emplace_back("GetSetting ").append(application).append(" ").append(section).append(" ").append(key);
  Step("GetSetting");
  EXPECT_EQ(fallback, "");
  return "Base do usuário";
}

Database& RecordingHost::OpenDatabase(std::string_view path) {
  Step("OpenDatabase");
  EXPECT_EQ(path, "C:\\App\\tblFixas.fix");
  ++open_databases;
  return tables_;
}

Recordset& RecordingHost::Tables::OpenRecordset(std::string_view sql, int type) {
  host.Step("OpenRecordset");
  EXPECT_EQ(type, 4);
  host.queries.emplace_back(sql);
  ++host.open_databases;
  host.rows_.count = std::ranges::none_of(
      kUnknownKeys, [&](std::string_view key) { return sql.find(key) != std::string_view::npos; });
  return host.rows_;
}

std::string_view RecordingHost::Rows::Field(std::string_view name) {
  EXPECT_EQ(name, "Descrição");
  return "Compra de teste";
}

std::unique_ptr<BancoTemporario> RecordingHost::CriarBancoTemporario() {
  Step("CriarBancoTemporario");
  return std::make_unique<Banco>(*this);
}
std::unique_ptr<ConsultaDeclaracoes> RecordingHost::CriarConsultaDeclaracoes() {
  Step("CriarConsultaDeclaracoes");
  return std::make_unique<Consulta>(*this);
}
std::unique_ptr<ValidadorDocumentos> RecordingHost::CriarValidadorDocumentos() {
  Step("CriarValidadorDocumentos");
  return std::make_unique<Documentos>(*this);
}
std::unique_ptr<Gravador> RecordingHost::CriarGravador(Gravavel registro) {
  Step("CriarGravador");
  return std::make_unique<Writer>(*this, Codigo(registro));
}

}  // namespace tremvik::test
