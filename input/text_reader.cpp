#include "input/text_reader.h"

#include <algorithm>

#include "layout/record.h"

namespace tremvik {
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

std::string_view TextReader::TakeLine(std::size_t length) {
  const std::string_view line = Ahead().substr(0, length + kCrLf.size());
  if (UpToLineEnd(line).size() != length || !line.substr(length).starts_with(kCrLf)) return {};
  input_.Consume(line.size());
  return line;
}

void TextReader::ReadCharacters(std::size_t count, std::string& text) {
  while (count > 0 && !AtEnd()) {
    if (owes_line_feed_) {
      text += '\n';
      owes_line_feed_ = false;
      --count;
      continue;
    }
    const std::string_view ahead = input_.Ahead().substr(0, count);
    const std::string_view piece = UpToLineEnd(ahead);
    text += piece;
    count -= piece.size();
    input_.Consume(piece.size());
    if (piece.size() == ahead.size()) continue;
    SkipLineEnd();
    text += '\r';
    owes_line_feed_ = true;
    --count;
  }
}

void TextReader::SkipLineEnd() {
  const bool carriage_return = input_.Ahead().front() == '\r';
  input_.Consume(1);
  if (carriage_return && input_.Ahead().starts_with('\n')) input_.Consume(1);
}

}  // namespace tremvik
