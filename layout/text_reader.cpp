#include "layout/text_reader.h"

#include <algorithm>

#include "layout/record.h"

namespace tremvik {
namespace {

// The part of `text` before its first line end.
std::string_view UpToLineEnd(std::string_view text) {
  const std::string_view up_to_feed = text.substr(0, text.find('\n'));
  return up_to_feed.substr(0, up_to_feed.find('\r'));
}

}  // namespace

bool TextReader::AtEnd() { return !owes_line_feed_ && input_.Ahead().empty(); }

void TextReader::ReadLine(Line& line) {
  line.code.clear();
  line.length = 0;
  while (true) {
    const std::string_view ahead = input_.Ahead();
    const std::string_view piece = UpToLineEnd(ahead);
    if (line.code.size() < 2) line.code.append(piece.substr(0, 2 - line.code.size()));
    line.length += piece.size();
    input_.Consume(piece.size());
    if (piece.size() == ahead.size() && !ahead.empty()) continue;  // the line goes on in the next piece
    if (!ahead.empty()) SkipLineEnd();
    return;
  }
}

void TextReader::ReadCharacters(std::size_t count, std::string& text) {
  const auto take = [&](std::string_view piece) {
    text += piece;
    count -= piece.size();
  };
  while (count > 0 && !AtEnd()) {
    if (owes_line_feed_) {
      take(kCrLf.substr(1));
      owes_line_feed_ = false;
      continue;
    }
    const std::string_view ahead = input_.Ahead().substr(0, count);
    const std::size_t before_end = UpToLineEnd(ahead).size();
    if (ahead.substr(before_end).starts_with(kCrLf)) {  // as in nearly every file
      take(ahead.substr(0, before_end + kCrLf.size()));
      input_.Consume(before_end + kCrLf.size());
      continue;
    }
    take(ahead.substr(0, before_end));
    input_.Consume(before_end);
    if (before_end == ahead.size()) continue;
    SkipLineEnd();
    take(kCrLf.substr(0, 1));
    owes_line_feed_ = true;
  }
}

void TextReader::SkipLineEnd() {
  const bool carriage_return = input_.Ahead().front() == '\r';
  input_.Consume(1);
  if (carriage_return && input_.Ahead().starts_with('\n')) input_.Consume(1);
}

}  // namespace tremvik
