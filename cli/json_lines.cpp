#include "cli/json_lines.h"

#include <array>
#include <nlohmann/json.hpp>

#include "host/screen.h"
#include "runtime/text.h"
#include "text/json_text.h"
#include "text/readable.h"

namespace tremvik::cli {

using Json = nlohmann::ordered_json;

// One object. What all objects of a file begin with is made into text only once.
class JsonLines::Line {
 public:
  Line(JsonLines& lines, std::string_view tipo) : lines_(lines), tipo_(tipo) {}
  Json& operator[](const char* key) { return json_[key]; }
  void Write() {
    for (const std::string_view piece :
         {std::string_view(R"({"tipo":")"), tipo_, std::string_view(R"(","arquivo":)"),
          std::string_view(lines_.arquivo_), std::string_view(",")})
      lines_.out_.Write(piece);
    lines_.out_.Write(std::string_view(text::JsonText(json_)).substr(1));
    lines_.out_.Write("\n");
  }

 private:
  JsonLines& lines_;
  std::string_view tipo_;
  Json json_;
};

JsonLines::JsonLines(Output& out, const std::string& path)
    : out_(out), path_(path), arquivo_(text::JsonText(path)) {}

void JsonLines::Mensagem(const TracedMessage& mensagem) {
  if (question_ && mensagem.resposta == resposta::kNao) WriteFault(*question_);
  question_.reset();
  Line line(*this, "mensagem");
  line["texto"] = mensagem.texto;
  line["estilo"] = mensagem.estilo;
  line["titulo"] = mensagem.titulo;
  line["resposta"] = mensagem.resposta;
  line.Write();
}

void JsonLines::Evento(std::string_view nome) {
  Line line(*this, "evento");
  line["nome"] = nome;
  line.Write();
}

void JsonLines::Ponteiro(int valor) {
  Line line(*this, "ponteiro");
  line["valor"] = valor;
  line.Write();
}

void JsonLines::Banco(std::string_view operacao, std::string_view /*caminho*/) {
  Line line(*this, "banco");
  line["operacao"] = operacao;
  line.Write();
}

void JsonLines::Consulta(const TracedQuery& pergunta) {
  RunTrace::Consulta(pergunta);
  Line line(*this, "consulta");
  line["ie"] = pergunta.ie;
  line["uf"] = pergunta.uf;
  line["regime"] = pergunta.regime;
  line["referencia"] = pergunta.referencia;
  line["referenciaInicial"] = pergunta.referencia_inicial;
  line["existe"] = pergunta.existe;
  line.Write();
}

void JsonLines::Gravacao(Kind registro, std::span<const TracedField> campos) {
  Line line(*this, "gravacao");
  line["registro"] = Codigo(registro);
  Json& objeto = line["campos"] = Json::object();
  for (const auto& campo : campos)
    objeto[std::string(campo.nome)] = campo.texto;
  line.Write();
}

void JsonLines::WriteFault(const Fault& fault) {
  Line line(*this, "inconsistencia");
  line["linha"] = fault.linha;
  line["registro"] = Utf8(fault.registro);
  line["campo"] = fault.campo;
  line["posicao"] = fault.posicao;
  line["largura"] = fault.largura;
  line["valor"] = Utf8(fault.MarksLength() ? Surplus(fault, path_) : fault.valor);
  line["regra"] = fault.regra;
  line["porque"] = fault.porque;
  line.Write();
}

void JsonLines::Fim(ExitStatus status, int linha, std::string_view mensagem) {
  static constexpr std::array<std::string_view, 4> kStates{"aceito", "recusado", "erro", "erro"};
  const auto saida = static_cast<std::size_t>(status);
  Line line(*this, "fim");
  line["estado"] = kStates.at(saida);
  line["saida"] = saida;
  line["bolRetMonitora"] = status != ExitStatus::kAccepted;
  line["NroLinha"] = linha;
  line["Mensagem"] = mensagem;
  line.Write();
}

}  // namespace tremvik::cli
