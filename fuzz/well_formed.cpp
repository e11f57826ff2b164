#include "fuzz/well_formed.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace tremvik::fuzz {
namespace {

unsigned Byte(std::string_view text, std::size_t at) {
  return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
}

// The length of the UTF-8 character at the begin of `text` that may stand in a text, 0 where there is none.
std::size_t PlainCharacter(std::string_view text) {
  const auto follows = [&](std::size_t i, unsigned from, unsigned to) {
    return Byte(text, i) >= from && Byte(text, i) <= to;
  };
  const unsigned first = Byte(text, 0);
  if (first < 0x80) return first == '\n' || first == '\r' || (first >= 0x20 && first != 0x7F) ? 1 : 0;
  if (first >= 0xC2 && first < 0xE0) return follows(1, first == 0xC2 ? 0xA0 : 0x80, 0xBF) ? 2 : 0;
  if (first >= 0xE0 && first < 0xF0) {
    const bool second = follows(1, first == 0xE0 ? 0xA0 : 0x80, first == 0xED ? 0x9F : 0xBF);
    return second && follows(2, 0x80, 0xBF) ? 3 : 0;
  }
  if (first < 0xF0 || first > 0xF4) return 0;
  const bool second = follows(1, first == 0xF0 ? 0x90 : 0x80, first == 0xF4 ? 0x8F : 0xBF);
  return second && follows(2, 0x80, 0xBF) && follows(3, 0x80, 0xBF) ? 4 : 0;
}

// The length of the entity at the begin of `text`, 0 where there is none.
std::size_t Entity(std::string_view text) {
  constexpr std::size_t kLongest = 10;
  const std::size_t end = text.substr(0, kLongest).find(';');
  if (end == std::string_view::npos || end < 2) return 0;
  const std::string_view name = text.substr(1, end - 1);
  const bool known = std::ranges::all_of(
      name, [](char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '#'; });
  return known ? end + 1 : 0;
}

// Takes a document apart, tag by tag.
class Markup {
 public:
  explicit Markup(std::string_view text) : rest_(text) {}

  bool WellFormed() {
    while (!rest_.empty()) {
      if (rest_.front() == '<' ? !TakeTag() : !TakeText()) return false;
    }
    return open_.empty();
  }

 private:
  bool TakeText() {
    const std::string_view text = rest_.substr(0, rest_.find('<'));
    rest_.remove_prefix(text.size());
    return EntitiesIn(text);
  }

  static bool EntitiesIn(std::string_view text) {
    for (std::size_t at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1)) {
      if (Entity(text.substr(at)) == 0) return false;
    }
    return true;
  }

  bool Skip(std::string_view end) {
    const std::size_t at = rest_.find(end);
    if (at == std::string_view::npos) return false;
    rest_.remove_prefix(at + end.size());
    return true;
  }

  // Where the tag at the begin of the text ends; ">" in an attribute's quotes does not.
  [[nodiscard]] std::size_t TagEnd() const {
    char quote = '\0';
    for (std::size_t i = 1; i < rest_.size(); ++i) {
      const char c = rest_[i];
      if (c == '<') return std::string_view::npos;
      if (quote == '\0' && c == '>') return i;
      if (quote == '\0' && (c == '"' || c == '\'')) {
        quote = c;
      } else if (c == quote) {
        quote = '\0';
      }
    }
    return std::string_view::npos;
  }

  bool TakeTag() {
    constexpr std::array<std::string_view, 6> kWithoutContent{"br", "col", "hr", "input", "link", "meta"};
    if (rest_.starts_with("<!--")) return Skip("-->");
    if (rest_.starts_with("<?")) return Skip("?>");
    if (rest_.starts_with("<!")) return Skip(">");
    const std::size_t end = TagEnd();
    if (end == std::string_view::npos) return false;
    const std::string_view tag = rest_.substr(1, end - 1);
    rest_.remove_prefix(end + 1);
    if (!EntitiesIn(tag)) return false;
    if (tag.starts_with('/')) {
      if (open_.empty() || open_.back() != tag.substr(1)) return false;
      open_.pop_back();
      return true;
    }
    const std::string_view name = tag.substr(0, tag.find_first_of(" \n/"));
    if (name.empty()) return false;
    if (tag.ends_with('/') || std::ranges::find(kWithoutContent, name) != kWithoutContent.end()) return true;
    if (name == "style" || name == "script") return Skip("</" + std::string(name) + ">");
    open_.push_back(name);
    return true;
  }

  std::string_view rest_;
  std::vector<std::string_view> open_;
};

}  // namespace

bool IsPlainText(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = PlainCharacter(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

bool IsWellFormedMarkup(std::string_view text) { return IsPlainText(text) && Markup(text).WellFormed(); }

}  // namespace tremvik::fuzz
