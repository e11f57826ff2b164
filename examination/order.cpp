#include "examination/order.h"

#include <algorithm>
#include <string>

namespace tremvik {
namespace {

// What orders the records of a kind: one field, or two read as one text.
struct Key {
  Kind kind;
  FieldInfo first;
  FieldInfo second{};
};

template <typename R>
constexpr FieldInfo Plain(const Field<R>& field) {
  return {field.name, field.position, field.width};
}

constexpr std::array kKeys{
    Key{Kind::kCr10, Plain(Cr10::kCFOP)},
    Key{Kind::kCr20, Plain(Cr20::kCodSubItem), Plain(Cr20::kPropriaOuST)},
    Key{Kind::kCr25, Plain(Cr25::kIE)},
    Key{Kind::kCr26, Plain(Cr26::kIESubstituto), Plain(Cr26::kNF)},
    Key{Kind::kCr27, Plain(Cr27::kIESubstituido), Plain(Cr27::kNF)},
    Key{Kind::kCr28, Plain(Cr28::kCodAutorizacao)},
    Key{Kind::kCr31, Plain(Cr31::kRE)},
};

std::string TextOf(const Key& key, const Piece& piece) {
  std::string text(FieldText(piece.content, key.first));
  if (key.second.width > 0) text += FieldText(piece.content, key.second);
  return text;
}

}  // namespace

std::size_t OutOfPlace(const Workpiece& work, std::size_t at, std::string_view campo) {
  const auto key = std::ranges::find(kKeys, work[at].kind->kind, &Key::kind);
  if (key == kKeys.end() || key->first.name != campo) return at;
  const auto siblings = work.Children(work[at].parent, key->kind);
  const auto own = std::ranges::find(siblings, at) - siblings.begin();
  if (own == 0) return at;
  const auto text = [&](std::ptrdiff_t i) {
    return TextOf(*key, work[siblings[static_cast<std::size_t>(i)]]);
  };
  const bool in_order = text(own - 1) < text(own);
  const bool fits_before = own == 1 || text(own - 2) < text(own);
  return !in_order && fits_before ? siblings[static_cast<std::size_t>(own) - 1] : at;
}

}  // namespace tremvik
