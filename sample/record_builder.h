#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "layout/record.h"

namespace tremvik::sample {

/// Builds one record by named fields. What is not set stays zeros; the code and the separators are set.
template <typename R>
class RecordBuilder {
 public:
  RecordBuilder() : bytes_(Record<R>::kBlock, '0') {
    Text(R::kCr, Codigo(R::kKind)).Text(R::kSeparadores, kCrLf);
  }

  /// Sets `field` to `text` (Windows-1252), filled up with blanks.
  RecordBuilder& Text(const Field<R>& field, std::string_view text) {
    const auto width = static_cast<std::size_t>(field.width);
    if (text.size() > width) throw std::logic_error("text wider than its field");
    std::string filled(text);
    filled.resize(width, ' ');
    bytes_.replace(static_cast<std::size_t>(field.position - 1), width, filled);
    return *this;
  }
  /// Sets `field` to `valor`, zero-filled on the left.
  RecordBuilder& Number(const Field<R>& field, std::int64_t valor) {
    const std::string digits = std::to_string(valor);
    const auto width = static_cast<std::size_t>(field.width);
    if (digits.size() > width) throw std::logic_error("number wider than its field");
    return Text(field, std::string(width - digits.size(), '0') + digits);
  }
  /// The block: content and separators.
  [[nodiscard]] const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

}  // namespace tremvik::sample
