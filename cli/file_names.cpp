#include "cli/file_names.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "cli/interruption.h"
#include "cli/terminal.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

constexpr std::size_t kLongestName = 4096;  // as long as a path may be

bool IsFolder(const std::string& name) {
  std::error_code ignored;
  return std::filesystem::is_directory(name, ignored);
}

}  // namespace

bool FileNames::IsOne() const {
  return arguments_.size() == 1 && arguments_.front() != "-" && !IsFolder(arguments_.front());
}

std::size_t FileNames::Total() const {
  std::size_t total = 0;
  for (const std::string& name : arguments_) {
    if (name == "-") return 0;
    if (!IsFolder(name)) {
      ++total;
      continue;
    }
    FolderWalk walk(name, pattern_);
    while (walk.Next())
      ++total;
  }
  return total;
}

std::optional<std::string> FileNames::Next() {
  while (problem_.empty()) {
    if (folder_) {
      if (auto name = NextOfFolder()) return name;
    } else if (reading_input_) {
      if (auto name = NextOfInput()) return name;
      reading_input_ = false;
      if (!problem_.empty() || Interrupted()) return std::nullopt;
      if (!named_)
        problem_ = "a lista de nomes na entrada padrão está vazia. Confira o comando que a escreve.";
    } else if (next_ == arguments_.size()) {
      return std::nullopt;
    } else if (std::string& argument = arguments_[next_++]; argument == "-") {
      reading_input_ = true;
    } else if (!IsFolder(argument)) {
      return std::move(argument);
    } else {
      folder_.emplace(argument, pattern_);
      folder_gave_ = false;
    }
  }
  return std::nullopt;
}

// The next file of the folder; after the last one the folder is done with.
std::optional<std::string> FileNames::NextOfFolder() {
  auto name = folder_->Next();
  if (name) {
    folder_gave_ = true;
    return name;
  }
  if (folder_problem_.empty()) folder_problem_ = folder_->problem();
  if (folder_problem_.empty() && !folder_gave_) {
    folder_problem_ = "na pasta " + text::InQuotes(arguments_[next_ - 1]) + " não há arquivo" +
                      (pattern_.empty() ? "." : " que sirva a " + text::InQuotes(pattern_) + ".") +
                      " Confira o nome e --padrao.";
  }
  folder_.reset();
  return std::nullopt;
}

std::optional<std::string> FileNames::NextOfInput() {
  for (;;) {
    const auto end = pending_.find(separator_, searched_);
    if (end == std::string::npos) {
      searched_ = pending_.size();
      if (searched_ <= kLongestName && Fill()) continue;
      if (!problem_.empty() || pending_.empty() || Interrupted()) return std::nullopt;
    }
    searched_ = 0;
    std::string name = pending_.substr(0, end);
    pending_.erase(0, end == std::string::npos ? end : end + 1);
    if (separator_ == '\n' && name.ends_with('\r')) name.pop_back();
    if (!name.empty()) return Checked(std::move(name));
  }
}

std::optional<std::string> FileNames::Checked(std::string name) {
  named_ = true;
  if (name.size() > kLongestName) {
    problem_ = "um nome da lista na entrada padrão é longo demais para ser de um arquivo (mais de " +
               text::Count(kLongestName, "byte", "bytes") + "). Confira o comando que a escreve.";
  } else if (name.find('\0') != std::string::npos) {
    problem_ = "os nomes na entrada padrão são separados por NUL. Diga isso com -0 (--nulo).";
  }
  return problem_.empty() ? std::optional(std::move(name)) : std::nullopt;
}

// More of standard input; false at its end, when it cannot be read and when the program is told to end.
bool FileNames::Fill() {
  std::array<char, 4096> buffer{};
  ssize_t got = -1;
  do {
    if (!WaitForInput(STDIN_FILENO)) return false;
    got = read(STDIN_FILENO, buffer.data(), buffer.size());
  } while (got < 0 && (errno == EINTR || errno == EAGAIN));
  if (got < 0) {
    problem_ = "a lista de nomes na entrada padrão não pode ser lida (" + SystemError(errno) +
               "). Confira de onde ela vem.";
  }
  if (got <= 0) return false;
  pending_.append(buffer.data(), static_cast<std::size_t>(got));
  return true;
}

}  // namespace tremvik::cli
