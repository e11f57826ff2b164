#include "cli/folder_walk.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <system_error>
#include <utility>

#include "cli/terminal.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// Bytes of the first character of a UTF-8 text.
std::size_t FirstCharacter(std::string_view text) {
  std::size_t end = 1;
  while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80)
    ++end;
  return end;
}

}  // namespace

bool Matches(std::string_view name, std::string_view pattern) {
  // Where a later mismatch may go on: behind the last star, with one character more taken by it.
  std::optional<std::pair<std::string_view, std::string_view>> retry;
  while (!name.empty() || !pattern.empty()) {
    if (pattern.starts_with('*')) {
      pattern.remove_prefix(1);
      retry.emplace(name, pattern);
    } else if (!name.empty() && pattern.starts_with('?')) {
      name.remove_prefix(FirstCharacter(name));
      pattern.remove_prefix(1);
    } else if (!name.empty() && !pattern.empty() && Lower(name.front()) == Lower(pattern.front())) {
      name.remove_prefix(1);
      pattern.remove_prefix(1);
    } else if (retry && !retry->first.empty()) {
      retry->first.remove_prefix(1);
      std::tie(name, pattern) = *retry;
    } else {
      return false;
    }
  }
  return true;
}

FolderWalk::FolderWalk(const std::string& folder, std::string pattern) : pattern_(std::move(pattern)) {
  Enter(folder);
}

std::optional<std::string> FolderWalk::Next() {
  while (!rest_.empty()) {
    const Entry entry = std::move(rest_.back());
    rest_.pop_back();
    if (!entry.folder) return entry.path;
    Enter(entry.path);
  }
  return std::nullopt;
}

void FolderWalk::Enter(const std::string& folder) {
  namespace fs = std::filesystem;
  std::error_code error;
  const std::size_t before = rest_.size();
  for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
    std::error_code ignored;  // what goes away meanwhile is not there
    const bool link = at->is_symlink(ignored);
    if (at->is_directory(ignored)) {
      if (!link) rest_.push_back({at->path().string(), true});
    } else if (at->is_regular_file(ignored)) {
      if (pattern_.empty() || Matches(at->path().filename().string(), pattern_))
        rest_.push_back({at->path().string(), false});
    }
  }
  std::ranges::sort(rest_.begin() + static_cast<std::ptrdiff_t>(before), rest_.end(), std::ranges::greater(),
                    &Entry::path);
  if (error && problem_.empty()) {
    problem_ = "a pasta " + text::InQuotes(folder) + " não pôde ser lida (" + SystemError(error.value()) +
               "); os arquivos dela ficaram de fora.";
  }
}

}  // namespace tremvik::cli
