#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "layout/field.h"

namespace tremvik {

/// What ends every record in the file: the field "Separadores".
inline constexpr std::string_view kCrLf = "\r\n";

/// The buffer of one record kind. It lives as long as the instance, starts as NUL characters and keeps what
/// the last read left in it, an incomplete read included.
template <typename R>
class Record {
 public:
  /// Bytes of one block in the file: the content and the two separators.
  static constexpr std::size_t kBlock = R::kFields.back().position + R::kFields.back().width - 1;

  /// The bytes of `field` (Windows-1252), valid until the next read.
  std::string_view operator[](const Field<R>& field) const {
    return {bytes_.data() + field.position - 1, static_cast<std::size_t>(field.width)};
  }
  /// The content without the separators.
  [[nodiscard]] std::string_view content() const { return {bytes_.data(), kBlock - kCrLf.size()}; }
  /// Where a read lays its bytes.
  [[nodiscard]] std::span<char> block() { return bytes_; }

  /// The number of the record in the file, from 1; 0 before the first read.
  [[nodiscard]] int linha() const { return linha_; }
  void set_linha(int linha) { linha_ = linha; }

 private:
  std::array<char, kBlock> bytes_{};
  int linha_ = 0;
};

}  // namespace tremvik
