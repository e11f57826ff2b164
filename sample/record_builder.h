#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "layout/record.h"

namespace tremvik::sample {

/// Builds one record by named fields. What is not set stays zeros; the code and the separators are set.
template <typename R>
class Montador {
 public:
  Montador() : bytes_(Record<R>::kBlock, '0') {
    Texto(R::kCr, Codigo(R::kKind)).Texto(R::kSeparadores, kCrLf);
  }

  /// Sets `campo` to `texto` (Windows-1252), filled up with blanks.
  Montador& Texto(const Field<R>& campo, std::string_view texto) {
    const auto largura = static_cast<std::size_t>(campo.width);
    if (texto.size() > largura) throw std::logic_error("text wider than its field");
    std::string cheio(texto);
    cheio.resize(largura, ' ');
    bytes_.replace(static_cast<std::size_t>(campo.position - 1), largura, cheio);
    return *this;
  }
  /// Sets `campo` to `valor`, zero-filled on the left.
  Montador& Numero(const Field<R>& campo, std::int64_t valor) {
    const std::string digitos = std::to_string(valor);
    const auto largura = static_cast<std::size_t>(campo.width);
    if (digitos.size() > largura) throw std::logic_error("number wider than its field");
    return Texto(campo, std::string(largura - digitos.size(), '0') + digitos);
  }
  /// The block: content and separators.
  [[nodiscard]] const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

}  // namespace tremvik::sample
