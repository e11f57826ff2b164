// Finding a line of a file and reading a part of it, without holding the line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tremvik::cli {

/// Where a line lies in its file, in bytes.
struct LineSpan {
  std::int64_t offset = 0;  ///< of its first character
  std::int64_t length = 0;  ///< of its content, without the line end; no more than was looked for
};

/// Finds line `line` (1-based) of the file at `path` and looks for its end within `longest` characters; a
/// line ends at CR LF, a bare LF or a bare CR. Nothing when the file has no such line or cannot be read.
[[nodiscard]] std::optional<LineSpan> FindLine(const std::string& path, int line, std::int64_t longest);

/// Up to `count` bytes of the file at `path` from `offset` on; fewer at its end.
[[nodiscard]] std::string ReadBytes(const std::string& path, std::int64_t offset, std::int64_t count);

/// The number of lines of a file of at most 64 MiB, an open last line included; 0 for a larger one or one
/// that cannot be read.
[[nodiscard]] int CountLines(const std::string& path);

}  // namespace tremvik::cli
