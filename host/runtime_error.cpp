#include "host/runtime_error.h"

#include <algorithm>
#include <array>
#include <new>

namespace tremvik {
namespace {

struct Entry {
  int number;
  std::string_view description;
};

constexpr std::array kTable{
    Entry{erro::kArgumentoInvalido, "Chamada de procedimento ou argumento inválido"},
    Entry{erro::kEstouro, "Estouro"},
    Entry{erro::kMemoriaInsuficiente, "Memória insuficiente"},
    Entry{erro::kTiposIncompativeis, "Tipos incompatíveis"},
    Entry{erro::kNumeroDeArquivoInvalido, "Nome ou número de arquivo inválido"},
    Entry{erro::kArquivoNaoEncontrado, "Arquivo não encontrado"},
    Entry{erro::kArquivoJaAberto, "Arquivo já aberto"},
    Entry{erro::kEntradaSaida, "Erro de E/S no dispositivo"},
    Entry{erro::kArquivoJaExiste, "Arquivo já existe"},
    Entry{erro::kDiscoCheio, "Disco cheio"},
    Entry{erro::kFimDoArquivo, "Entrada após o fim do arquivo"},
    Entry{erro::kExcessoDeArquivos, "Excesso de arquivos"},
    Entry{erro::kPermissaoNegada, "Permissão negada"},
    Entry{erro::kAcessoAoCaminho, "Erro de acesso ao caminho/arquivo"},
    Entry{erro::kCaminhoNaoEncontrado, "Caminho não encontrado"},
    Entry{erro::kComponenteNaoCriado, "O componente ActiveX não pode criar o objeto"},
    Entry{erro::kBancoNaoEncontrado, "Não foi possível localizar o arquivo"},
    Entry{erro::kBancoEmUso, "Banco de dados em uso"},
    Entry{erro::kParametrosInsuficientes, "Parâmetros insuficientes"},
    Entry{erro::kSintaxeDaConsulta, "Erro de sintaxe na consulta"},
    Entry{erro::kTabelaNaoEncontrada, "Tabela não encontrada"},
    Entry{erro::kFormatoDesconhecido, "Formato de banco de dados não reconhecido"},
};

std::string_view Description(int number) {
  const auto entry = std::ranges::find(kTable, number, &Entry::number);
  return entry == kTable.end() ? "Erro definido pelo aplicativo ou pelo objeto" : entry->description;
}

}  // namespace

RuntimeError::RuntimeError(int number) : RuntimeError(number, Description(number)) {}

RuntimeError::RuntimeError(int number, std::string_view description)
    : number_(number), description_(description) {}

RuntimeError CurrentRuntimeError() {
  try {
    throw;
  } catch (const RuntimeError& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return RuntimeError(erro::kMemoriaInsuficiente);
  } catch (...) {
    return RuntimeError(erro::kArgumentoInvalido);
  }
}

}  // namespace tremvik
