#include "cli/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <utility>
#include <vector>

#include "text/readable.h"

namespace tremvik::cli {
namespace {

constexpr std::size_t kPiece = 64UL * 1024;
constexpr std::size_t kWidest = 132;
constexpr std::size_t kNarrowest = 40;

bool IsSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

std::size_t TerminalWidth(int descriptor, std::size_t fallback) {
  winsize size{};
  if (ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return fallback;
  return std::clamp<std::size_t>(size.ws_col, kNarrowest, kWidest);
}

// The lines of `text`, those that are too wide broken between words. What carries colours fits already.
std::string Wrapped(std::string_view text, std::size_t width) {
  std::string out;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    const bool ended = line.size() < text.size();
    const bool is_wide = text::Cells(line) > width && line.find('\x1b') == std::string_view::npos;
    std::string_view separator;
    for (const std::string& part : is_wide ? text::Wrap(line, width) : std::vector{std::string(line)}) {
      out.append(separator).append(part);
      separator = "\n";
    }
    if (ended) out += '\n';
    text.remove_prefix(line.size() + (ended ? 1 : 0));
  }
  return out;
}

}  // namespace

Terminal Terminal::Detect() {
  const char* term = std::getenv("TERM");
  const bool dumb = term == nullptr || std::string_view(term).empty() || std::string_view(term) == "dumb";
  Terminal terminal;
  terminal.out = isatty(STDOUT_FILENO) == 1;
  terminal.err = isatty(STDERR_FILENO) == 1;
  terminal.in = isatty(STDIN_FILENO) == 1;
  terminal.colour = terminal.out && !dumb && !IsSet("NO_COLOR");
  terminal.bar = terminal.err && !dumb;
  if (terminal.out) terminal.width = TerminalWidth(STDOUT_FILENO, 80);
  return terminal;
}

std::size_t ColumnsOf(int descriptor) { return isatty(descriptor) == 1 ? TerminalWidth(descriptor, 80) : 0; }

std::string SystemError(int error) {
  switch (error) {
    case ENOENT:
      return "a pasta não existe";
    case EBADF:
      return "está fechado";
    case EFBIG:
      return "o arquivo passaria do tamanho permitido, ulimit -f";
    case ELOOP:
      return "um link simbólico leva a si mesmo";
    case ENAMETOOLONG:
      return "o nome é longo demais";
    case EACCES:
    case EPERM:
    case EROFS:
      return "sem permissão";
    case ENOSPC:
    case EDQUOT:
      return "disco cheio";
    case EISDIR:
      return "é uma pasta";
    case ENOTDIR:
      return "não é uma pasta";
    default:
      return "erro " + std::to_string(error) + " do sistema";
  }
}

void Output::Write(std::string_view text) {
  if (failed()) return;
  pending_ += width_ == 0 ? std::string(text) : Wrapped(text, width_);
  if (descriptor_ >= 0 && pending_.size() >= kPiece) Flush();
}

void Output::Flush() {
  if (descriptor_ < 0) return;
  std::string_view rest = pending_;
  while (!rest.empty() && !failed()) {
    const ssize_t written = write(descriptor_, rest.data(), rest.size());
    if (written >= 0) {
      rest.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      error_ = errno;
    }
  }
  pending_.clear();
}

std::string Output::Take() { return std::exchange(pending_, {}); }

}  // namespace tremvik::cli
