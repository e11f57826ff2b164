#include "examination/lines.h"

#include <algorithm>

namespace tremvik {
namespace {

// The line end that `text` begins with.
std::string_view LineEnd(std::string_view text) {
  return text.substr(0, text.starts_with(kCrLf) ? kCrLf.size() : 1);
}

// What stands before the first line end of `text`. It is looked for piece by piece, so that a file with one
// kind of line end is not searched to its end for the other.
std::size_t ContentLength(std::string_view text) {
  constexpr std::size_t kPiece = 512;
  for (std::size_t begin = 0; begin < text.size(); begin += kPiece) {
    const std::string_view piece = text.substr(begin, kPiece);
    const std::string_view up_to_feed = piece.substr(0, piece.find('\n'));
    const std::string_view content = up_to_feed.substr(0, up_to_feed.find('\r'));
    if (content.size() < piece.size()) return begin + content.size();
  }
  return text.size();
}

}  // namespace

std::vector<Line> SplitLines(std::string_view bytes, std::size_t most) {
  std::vector<Line> lines;
  while (!bytes.empty() && lines.size() < most) {
    const std::string_view content = bytes.substr(0, ContentLength(bytes));
    bytes.remove_prefix(content.size());
    const std::string_view end = LineEnd(bytes);
    bytes.remove_prefix(end.size());
    lines.push_back({content, end, bytes.substr(0, 1)});
  }
  return lines;
}

std::size_t CountLines(std::string_view bytes) {
  std::size_t lines = 0;
  for (; !bytes.empty(); ++lines) {
    bytes.remove_prefix(ContentLength(bytes));
    bytes.remove_prefix(LineEnd(bytes).size());
  }
  return lines;
}

const KindInfo* KindOf(std::string_view content) {
  if (const KindInfo* const named = FindKind(content.substr(0, 2))) return named;
  const auto same_length = [&](const KindInfo& kind) {
    return static_cast<std::size_t>(kind.length) == content.size();
  };
  const auto kind = std::ranges::find_if(kKinds, same_length);
  if (kind == kKinds.end() || std::any_of(kind + 1, kKinds.end(), same_length)) return nullptr;
  return &*kind;
}

bool HasRightLength(std::string_view content) {
  const KindInfo* const kind = FindKind(content.substr(0, 2));
  return kind != nullptr && content.size() == static_cast<std::size_t>(kind->length);
}

std::string Separators(const Line& line) {
  if (line.end.empty() || line.end == kCrLf) return std::string(line.end);
  return std::string(line.end).append(line.behind);
}

}  // namespace tremvik
