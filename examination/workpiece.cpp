#include "examination/workpiece.h"

#include <algorithm>
#include <array>

#include "runtime/numbers.h"

namespace tremvik {
namespace {

// The last record of each kind so far, forgotten where a record of a kind above it begins.
class Ancestors {
 public:
  std::optional<std::size_t> Enter(const KindInfo& kind, std::size_t index) {
    for (const KindInfo& below : kKinds) {
      if (below.parent == kind.kind) Forget(below);
    }
    auto& own = last_[static_cast<std::size_t>(kind.kind)];
    own = index;
    if (!kind.parent) return std::nullopt;
    return last_[static_cast<std::size_t>(*kind.parent)];
  }

 private:
  void Forget(const KindInfo& kind) {
    last_[static_cast<std::size_t>(kind.kind)].reset();
    for (const KindInfo& below : kKinds) {
      if (below.parent == kind.kind) Forget(below);
    }
  }
  std::array<std::optional<std::size_t>, kKinds.size()> last_;
};

}  // namespace

Workpiece::Workpiece(std::span<const Line> lines, int first) {
  Ancestors ancestors;
  pieces_.reserve(lines.size());
  for (const Line& line : lines) {
    Piece piece{first++, std::string(line.content), Separators(line), KindOf(line.content)};
    if (piece.kind != nullptr) piece.parent = ancestors.Enter(*piece.kind, pieces_.size());
    pieces_.push_back(std::move(piece));
  }
}

std::vector<std::size_t> Workpiece::Children(std::optional<std::size_t> parent, Kind kind) const {
  std::vector<std::size_t> children;
  for (std::size_t i = parent.value_or(0); i < pieces_.size(); ++i) {
    const Piece& piece = pieces_[i];
    if (!piece.out && piece.kind != nullptr && piece.kind->kind == kind && piece.parent == parent) {
      children.push_back(i);
    }
  }
  return children;
}

// A parent stands before its children, so one pass finds all that stand under it.
std::vector<std::size_t> Workpiece::Descendants(std::size_t index) const {
  std::vector<std::size_t> descendants;
  const KindInfo* const kind = pieces_[index].kind;
  if (kind == nullptr || ChildrenOf(kind->kind).empty()) return descendants;
  const auto below = [&](std::size_t parent) {
    return parent == index || std::ranges::binary_search(descendants, parent);
  };
  for (std::size_t i = index + 1; i < pieces_.size(); ++i) {
    const Piece& piece = pieces_[i];
    if (!piece.out && piece.parent && below(*piece.parent)) descendants.push_back(i);
  }
  return descendants;
}

void Workpiece::TakeOut(std::size_t index) {
  for (const std::size_t below : Descendants(index))
    pieces_[below].out = true;
  pieces_[index].out = true;
}

void Workpiece::TakeOutAnnounced(std::size_t index) {
  TakeOut(index);
  const Piece& piece = pieces_[index];
  if (piece.kind == nullptr || !piece.parent) return;
  const std::string_view announced = FieldText(pieces_[*piece.parent].content, piece.kind->quantity);
  if (OnlyDigits(announced) && IntVal(announced) > 0)
    SetQuantity(*piece.parent, *piece.kind, IntVal(announced) - 1);
}

void Workpiece::Announce(std::size_t parent, Kind kind) {
  SetQuantity(parent, InfoOf(kind), static_cast<int>(Children(parent, kind).size()));
}

void Workpiece::SetQuantity(std::size_t parent, const KindInfo& kind, int quantity) {
  std::string digits = std::to_string(quantity);
  const auto width = static_cast<std::size_t>(kind.quantity.width);
  digits.insert(0, width - std::min(width, digits.size()), '0');
  SetFieldText(pieces_[parent].content, kind.quantity, digits.substr(0, width));
}

void Workpiece::Append(TrialText& trial) const {
  for (std::size_t i = 0; i < pieces_.size(); ++i) {
    const Piece& piece = pieces_[i];
    if (piece.out) continue;
    trial.text.append(piece.content).append(kCrLf);
    trial.blocks.append(piece.content).append(piece.end);
    trial.pieces.emplace_back(i);
  }
}

void AppendRecord(TrialText& trial, std::string_view content) {
  for (std::string* const view : {&trial.text, &trial.blocks})
    view->append(content).append(kCrLf);
  trial.pieces.emplace_back();
}

std::string_view FieldText(std::string_view content, const FieldInfo& field) {
  const auto position = static_cast<std::size_t>(field.position - 1);
  return position < content.size() ? content.substr(position, static_cast<std::size_t>(field.width))
                                   : std::string_view();
}

void SetFieldText(std::string& content, const FieldInfo& field, std::string_view text) {
  content.replace(static_cast<std::size_t>(field.position - 1), static_cast<std::size_t>(field.width), text);
}

const FieldInfo* FindField(const KindInfo& kind, std::string_view name) {
  const auto field = std::ranges::find(kind.fields, name, &FieldInfo::name);
  return field == kind.fields.end() ? nullptr : &*field;
}

std::string WithoutQuantities(const KindInfo& kind, std::string content) {
  for (const KindInfo& child : kKinds) {
    if (child.parent == kind.kind) {
      SetFieldText(content, child.quantity, std::string(static_cast<std::size_t>(child.quantity.width), '0'));
    }
  }
  return content;
}

}  // namespace tremvik
