#include "adapters/local/file_errors.h"

#include <algorithm>
#include <array>
#include <cerrno>

namespace tremvik {
namespace {

struct Mapped {
  int code;
  int number;
  std::string_view reason;
};

// What is not listed is an error of the path for operations on names, of the device for reads.
constexpr std::array kMapped{
    Mapped{ENOENT, erro::kArquivoNaoEncontrado, "o arquivo ou a pasta não existe"},
    Mapped{ENOTDIR, erro::kCaminhoNaoEncontrado, "há um arquivo onde devia haver uma pasta"},
    Mapped{ELOOP, erro::kCaminhoNaoEncontrado, "um atalho (link simbólico) do caminho leva a si mesmo"},
    Mapped{EACCES, erro::kPermissaoNegada, "sem permissão"},
    Mapped{EPERM, erro::kPermissaoNegada, "sem permissão"},
    Mapped{EROFS, erro::kPermissaoNegada, "o disco é só de leitura"},
    Mapped{EBUSY, erro::kPermissaoNegada, "em uso"},
    Mapped{ETXTBSY, erro::kPermissaoNegada, "em uso"},
    Mapped{EEXIST, erro::kArquivoJaExiste, ""},
    Mapped{EMFILE, erro::kExcessoDeArquivos, "há arquivos demais abertos"},
    Mapped{ENFILE, erro::kExcessoDeArquivos, "há arquivos demais abertos"},
    Mapped{ENOSPC, erro::kDiscoCheio, "disco cheio"},
#ifdef EDQUOT  // not every system has quotas
    Mapped{EDQUOT, erro::kDiscoCheio, "disco cheio"},
#endif
    Mapped{EFBIG, erro::kEntradaSaida, "o limite de tamanho dos arquivos (ulimit -f) foi atingido"},
    Mapped{EIO, erro::kEntradaSaida, "erro de leitura ou gravação"},
    Mapped{ENOMEM, erro::kMemoriaInsuficiente, ""},
    Mapped{ENAMETOOLONG, erro::kNumeroDeArquivoInvalido, "o nome é longo demais"},
};

}  // namespace

int FileErrorNumber(int code) {
  const auto* const entry = std::ranges::find(kMapped, code, &Mapped::code);
  return entry == kMapped.end() ? erro::kAcessoAoCaminho : entry->number;
}

RuntimeError FileError(int code, std::string_view what, const std::string& path) {
  const auto* const entry = std::ranges::find(kMapped, code, &Mapped::code);
  std::string text(what);
  text.append(" '").append(path).append("'");
  if (entry != kMapped.end() && !entry->reason.empty()) text.append(": ").append(entry->reason);
  return {FileErrorNumber(code), text.append(".")};
}

}  // namespace tremvik
