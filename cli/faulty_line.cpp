#include "cli/faulty_line.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <string_view>

#include "input/text_reader.h"

namespace tremvik::cli {
namespace {

// A regular file, read forward through a buffer or at a place. One that cannot be opened is empty.
class ByteReader {
 public:
  static constexpr int kEnd = -1;

  explicit ByteReader(const std::string& path)
      : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
    struct stat status {};
    regular_ = descriptor_ >= 0 && fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
    size_ = regular_ ? status.st_size : 0;
  }
  ~ByteReader() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  ByteReader(const ByteReader&) = delete;
  ByteReader& operator=(const ByteReader&) = delete;

  int Peek() { return Buffered().empty() ? kEnd : static_cast<unsigned char>(buffer_[next_]); }
  // What is in the buffer and not yet skipped; empty only at the end of the file.
  std::string_view Buffered() {
    if (next_ == filled_) Fill();
    return {buffer_.data() + next_, filled_ - next_};
  }
  void Skip(std::size_t count) {
    next_ += count;
    offset_ += static_cast<std::int64_t>(count);
  }
  [[nodiscard]] std::int64_t offset() const { return offset_; }
  [[nodiscard]] std::int64_t size() const { return size_; }

  [[nodiscard]] std::string At(std::int64_t offset, std::int64_t count) const {
    std::string bytes(static_cast<std::size_t>(std::clamp<std::int64_t>(size_ - offset, 0, count)), '\0');
    const ssize_t got = pread(descriptor_, bytes.data(), bytes.size(), offset);
    bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    return bytes;
  }

 private:
  void Fill() {
    const ssize_t got = regular_ ? read(descriptor_, buffer_.data(), buffer_.size()) : 0;
    filled_ = got > 0 ? static_cast<std::size_t>(got) : 0;
    next_ = 0;
  }

  int descriptor_;
  bool regular_ = false;
  std::int64_t size_ = 0;
  std::int64_t offset_ = 0;
  std::size_t next_ = 0;
  std::size_t filled_ = 0;
  std::array<char, 64UL * 1024> buffer_{};
};

// Skips to the line's end, at most `longest` characters.
void SkipContent(ByteReader& reader, std::int64_t longest = std::numeric_limits<std::int64_t>::max()) {
  const std::int64_t begin = reader.offset();
  for (auto ahead = reader.Buffered(); !ahead.empty(); ahead = reader.Buffered()) {
    ahead = ahead.substr(0, static_cast<std::size_t>(longest - (reader.offset() - begin)));
    const std::size_t end = UpToLineEnd(ahead).size();
    reader.Skip(end);
    if (end < ahead.size() || reader.offset() - begin == longest) return;
  }
}

void SkipLine(ByteReader& reader) {
  SkipContent(reader);
  const bool carriage_return = reader.Peek() == '\r';
  if (reader.Peek() != ByteReader::kEnd) reader.Skip(1);
  if (carriage_return && reader.Peek() == '\n') reader.Skip(1);
}

}  // namespace

std::optional<LineSpan> FindLine(const std::string& path, int line, std::int64_t longest) {
  ByteReader reader(path);
  for (int skipped = 1; skipped < line && reader.Peek() != ByteReader::kEnd; ++skipped)
    SkipLine(reader);
  if (line < 1 || reader.Peek() == ByteReader::kEnd) return std::nullopt;
  const std::int64_t begin = reader.offset();
  SkipContent(reader, longest);
  return LineSpan{begin, reader.offset() - begin};
}

std::string ReadBytes(const std::string& path, std::int64_t offset, std::int64_t count) {
  return ByteReader(path).At(offset, count);
}

int CountLines(const std::string& path) {
  constexpr std::int64_t kLargest = 64LL * 1024 * 1024;
  ByteReader reader(path);
  if (reader.size() > kLargest) return 0;
  int lines = 0;
  for (; reader.Peek() != ByteReader::kEnd && lines < std::numeric_limits<int>::max(); ++lines)
    SkipLine(reader);
  return lines;
}

}  // namespace tremvik::cli
