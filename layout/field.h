// Fields of a fixed-layout record: declared once, with the columns written out as everyone talks about them.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace tremvik {

/// One field of record `R`: its name as users read it (UTF-8), its 1-based column and its width. A field of
/// another record on a record does not compile.
template <typename R>
struct Field {
  std::string_view name;
  int position;
  int width;
};

/// A field without its record's type, for code that walks over all kinds (viewer, documentation).
struct FieldInfo {
  std::string_view name;
  int position;
  int width;
};

/// True when `fields` cover a block of `block` bytes (content and the two separators) without gap or overlap.
template <typename R, std::size_t N>
consteval bool Covers(const std::array<Field<R>, N>& fields, int block) {
  int next = 1;
  for (const auto& field : fields) {
    if (field.position != next || field.width < 1) return false;
    next += field.width;
  }
  return next == block + 1;
}

/// The fields of record `R` without their type.
template <typename R>
consteval auto FieldInfos() {
  std::array<FieldInfo, R::kFields.size()> infos{};
  for (std::size_t i = 0; i < infos.size(); ++i) {
    infos[i] = {R::kFields[i].name, R::kFields[i].position, R::kFields[i].width};
  }
  return infos;
}

}  // namespace tremvik
