#include "cli/file_names.h"

#include <unistd.h>

#include <array>
#include <string_view>

namespace tremvik::cli {

std::optional<std::string> FileNames::Next() {
  for (;;) {
    if (reading_input_) {
      if (auto name = NextOfInput()) return name;
      reading_input_ = false;
    }
    if (next_ == arguments_.size()) return std::nullopt;
    std::string& argument = arguments_[next_++];
    if (argument != "-") return std::move(argument);
    reading_input_ = true;
  }
}

std::optional<std::string> FileNames::NextOfInput() {
  static constexpr std::string_view kEither("\0\n", 2);
  for (;;) {
    const auto end = separator_known_ ? pending_.find(separator_) : pending_.find_first_of(kEither);
    if (end == std::string::npos && Fill()) continue;
    if (end == std::string::npos && pending_.empty()) return std::nullopt;
    if (end != std::string::npos && !separator_known_) {
      separator_ = pending_[end];
      separator_known_ = true;
    }
    std::string name = pending_.substr(0, end);
    pending_.erase(0, end == std::string::npos ? end : end + 1);
    if (separator_ == '\n' && name.ends_with('\r')) name.pop_back();
    if (!name.empty()) return name;
  }
}

// More of standard input; false at its end.
bool FileNames::Fill() {
  std::array<char, 4096> buffer{};
  const ssize_t got = read(STDIN_FILENO, buffer.data(), buffer.size());
  if (got <= 0) return false;
  pending_.append(buffer.data(), static_cast<std::size_t>(got));
  return true;
}

}  // namespace tremvik::cli
