#include "adapters/local/temporary_names.h"

#include <string>
#include <utility>

#include "host/runtime_error.h"

namespace tremvik {

bool* TemporaryNames::Find(std::string_view path) {
  const std::string file = folder_.Resolve(path);
  if (file == folder_.File(arquivo::kTemporarioVazio)) return &empty_;
  return file == folder_.File(arquivo::kTemporario) ? &renamed_ : nullptr;
}

bool TemporaryNames::Exists(std::string_view path) {
  const bool* const name = Find(path);
  return name != nullptr ? *name : others_.Exists(path);
}

void TemporaryNames::Delete(std::string_view path) {
  bool* const name = Find(path);
  if (name == nullptr) return others_.Delete(path);
  if (!std::exchange(*name, false)) throw RuntimeError(erro::kArquivoNaoEncontrado);
}

void TemporaryNames::Rename(std::string_view from, std::string_view to) {
  bool* const name = Find(from);
  bool* const target = Find(to);
  if (name == nullptr || target == nullptr) return others_.Rename(from, to);
  if (!*name) throw RuntimeError(erro::kArquivoNaoEncontrado);
  if (*target) throw RuntimeError(erro::kArquivoJaExiste);
  std::swap(*name, *target);
}

}  // namespace tremvik
