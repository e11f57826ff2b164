// Text for people: widths, line breaks, the file's bytes made readable.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tremvik::text {

/// Character cells that UTF-8 `text` takes on a terminal.
[[nodiscard]] std::size_t Cells(std::string_view text);

/// `Visible` text as lines of at most `width` cells: broken at CR LF, CR and LF, then between words, a longer
/// word where it must. Empty lines stay.
[[nodiscard]] std::vector<std::string> Wrap(std::string_view text, std::size_t width);

/// Any text from outside (a file name, what a database holds, another library's words) as UTF-8 that cannot
/// drive the terminal or deceive its reader: control characters become symbols, line breaks among them; what
/// is no UTF-8, upper controls and characters that turn the writing's direction or are not seen become
/// U+FFFD.
[[nodiscard]] std::string Visible(std::string_view text);

/// True for a character that is not seen or turns the direction of the writing around it.
[[nodiscard]] bool IsUnseen(char32_t code);

/// `Visible` in double quotes.
[[nodiscard]] std::string InQuotes(std::string_view text);

/// One file byte (Windows-1252) as exactly one cell: itself, or a symbol where it has no visible shape.
[[nodiscard]] std::string ByteCell(char byte);

/// File bytes as a quoted value: Windows-1252 read, what cannot be seen as \xHH, at most `limit` bytes.
[[nodiscard]] std::string Quoted(std::string_view bytes, std::size_t limit);

/// The same of a value that was read before, at most `limit` characters.
[[nodiscard]] std::string QuotedValue(std::string_view utf8, std::size_t limit);

/// "1 registro", "1.234 registros".
[[nodiscard]] std::string Count(std::uint64_t n, std::string_view one, std::string_view many);

/// `text` filled up with blanks to `width` cells, on the right or, with `right_aligned`, on the left.
[[nodiscard]] std::string Padded(std::string_view text, std::size_t width, bool right_aligned = false);

}  // namespace tremvik::text
