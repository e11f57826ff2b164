#include "cli/json_lines.h"

#include <nlohmann/json.hpp>

#include "cli/text.h"
#include "host/screen.h"
#include "runtime/text.h"

namespace tremvik::cli {

using Json = nlohmann::ordered_json;

// One object. What is not UTF-8 (a file name, say) is replaced, never raised.
class JsonLines::Line {
 public:
  Line(JsonLines& lines, std::string_view tipo) : lines_(lines) {
    json_["tipo"] = tipo;
    if (!lines.arquivo_.empty()) json_["arquivo"] = lines.arquivo_;
  }
  Json& operator[](const char* key) { return json_[key]; }
  void Write() { lines_.out_.Write(json_.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n"); }

 private:
  JsonLines& lines_;
  Json json_;
};

void JsonLines::Mensagem(const TracedMessage& mensagem) {
  if (duvida_ && mensagem.resposta == resposta::kNao) Inconsistencia(*duvida_);
  duvida_.reset();
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

void JsonLines::Inconsistencia(const FaultLocation& where) {
  Line line(*this, "inconsistencia");
  line["linha"] = where.linha;
  line["registro"] = Utf8(where.registro);
  line["campo"] = where.campo;
  line["posicao"] = where.posicao;
  line["largura"] = where.largura;
  line["valor"] = Utf8(where.valor);
  line.Write();
}

void JsonLines::Fim(bool recusado, int linha, std::string_view mensagem) {
  Line line(*this, "fim");
  line["bolRetMonitora"] = recusado;
  line["NroLinha"] = linha;
  line["Mensagem"] = mensagem;
  line.Write();
}

}  // namespace tremvik::cli
