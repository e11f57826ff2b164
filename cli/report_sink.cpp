#include "cli/report_sink.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "adapters/local/system.h"
#include "cli/environment.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPiece = 64UL * 1024;

// Writes to what cannot be replaced: a device, a pipe.
void WriteTo(int descriptor, std::string_view bytes, const std::string& path) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      throw FileError(errno, "Não foi possível gravar", path);
    }
  }
}

// A link stays a link: what it leads to is replaced.
std::string Target(const std::string& path) {
  std::error_code error;
  const fs::path target = fs::canonical(path, error);
  return error ? path : target.string();
}

std::string Sentence(const RuntimeError& error, const std::string& path) {
  return "não foi possível escrever o relatório em " + text::InQuotes(path) + InWords(error) +
         ". Confira a pasta e as permissões, ou escolha outro arquivo com --saida.";
}

}  // namespace

ReportSink::ReportSink(const std::string& path, Output& out)
    : path_(path), out_(out), to_file_(!path.empty() && path != "-") {
  if (!to_file_) return;
  try {
    std::error_code ignored;
    const fs::file_status found = fs::status(path_, ignored);
    if (!fs::exists(found) || fs::is_regular_file(found)) {
      file_.emplace(Target(path_));
      return;
    }
    device_ = Descriptor(::open(path_.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
    if (!device_) throw FileError(errno, "Não foi possível gravar", path_);
  } catch (const RuntimeError& error) {
    problem_ = Sentence(error, path_);
  }
}

ReportSink::~ReportSink() = default;

void ReportSink::Write(std::string_view text) {
  if (!to_file_) return out_.Write(text);
  if (failed()) return;
  pending_ += text;
  if (pending_.size() >= kPiece) WriteThrough();
}

void ReportSink::Flush() {
  if (!to_file_) out_.Flush();
}

void ReportSink::Finish() {
  if (!to_file_ || failed()) return;
  WriteThrough();
  if (failed() || !file_) return;
  try {
    file_->TakePlace();
  } catch (const RuntimeError& error) {
    problem_ = Sentence(error, path_);
  }
}

void ReportSink::WriteThrough() {
  try {
    if (file_) {
      file_->Write(pending_);
    } else {
      WriteTo(device_.get(), pending_, path_);
    }
  } catch (const RuntimeError& error) {
    problem_ = Sentence(error, path_);
  }
  pending_.clear();
}

}  // namespace tremvik::cli
