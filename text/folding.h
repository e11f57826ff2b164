// Texts as people type them: what differs only in accents, case or punctuation becomes the same.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace tremvik::text {

/// The letters and digits of `text` (UTF-8, combining accents too, or Windows-1252) as lower-case ASCII, one
/// blank in the place of everything between them.
[[nodiscard]] std::string Folded(std::string_view text);

/// How many characters to add, to take away or to change make one word the other.
[[nodiscard]] std::size_t Distance(std::string_view one, std::string_view other);

/// The one of `names` that `word` is most like, accents and case aside; empty where none is near enough to be
/// meant. A word of any length costs no more than a short one.
[[nodiscard]] std::string_view Nearest(std::string_view word, std::span<const std::string> names);

}  // namespace tremvik::text
