#include "report/file_tree.h"

#include <algorithm>
#include <utility>

#include "examination/causes.h"
#include "examination/lines.h"
#include "examination/workpiece.h"
#include "report/field_text.h"
#include "runtime/text.h"
#include "text/readable.h"

namespace tremvik::report {
namespace {

constexpr std::size_t kMostShown = 60;  // bytes of what belongs to no field

std::size_t LevelOf(const KindInfo& kind) { return kind.parent ? LevelOf(InfoOf(*kind.parent)) + 1 : 0; }

// Bytes that belong to no field of a layout.
TreeField Loose(std::string_view name, int column, std::string_view bytes) {
  std::string text = text::Quoted(bytes, kMostShown);
  if (bytes.size() > kMostShown) text += " (" + text::Count(bytes.size(), "caractere", "caracteres") + ")";
  return {name, column, static_cast<int>(bytes.size()), bytes, std::move(text)};
}

}  // namespace

FileTree::FileTree(std::string bytes) : bytes_(std::move(bytes)) {
  if (auto cause = FindCause(bytes_)) {
    causa_ = std::move(cause->porque);
    mended_ = cause->repaired.has_value();
    if (mended_) bytes_ = std::move(*cause->repaired);
  }
  const std::vector<Line> lines = SplitLines(bytes_, kMostLines);
  const Workpiece work(lines, 1);
  std::optional<std::size_t> declaration;
  records_.reserve(lines.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const Piece& piece = work[i];
    const std::size_t above = records_.empty() ? 0 : records_.back().nivel;
    const std::size_t level = piece.kind == nullptr ? above : LevelOf(*piece.kind);
    if (piece.kind != nullptr && piece.kind->kind == Kind::kCr05) declaration = i;
    records_.push_back(
        {piece.linha, piece.kind, level, piece.parent, declaration, lines[i].content, lines[i].end});
  }
  if (!lines.empty()) {
    const Line& last = lines.back();
    cut_ = last.content.size() + last.end.size() !=
           bytes_.size() - static_cast<std::size_t>(last.content.data() - bytes_.data());
  }
}

std::vector<TreeField> FileTree::Fields(const TreeRecord& record) const {
  std::vector<TreeField> fields;
  if (record.kind == nullptr) return {Loose("Linha", 1, record.content)};
  for (const FieldInfo& field : record.kind->fields) {
    const bool is_end = &field == &record.kind->fields.back();
    const bool is_code = &field == &record.kind->fields.front();
    const std::string_view bytes = is_end ? record.end : FieldText(record.content, field);
    if (is_end ? bytes == kCrLf : is_code && bytes == record.kind->code) continue;
    fields.push_back({field.name, field.position, field.width, bytes, FieldForPeople(field, bytes)});
  }
  const auto length = static_cast<std::size_t>(record.kind->length);
  if (record.content.size() > length)
    fields.push_back(Loose("Sobra", record.kind->length + 1, record.content.substr(length)));
  return fields;
}

}  // namespace tremvik::report
