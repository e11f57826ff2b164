#include "adapters/local/run_reading.h"

#include <algorithm>

#include "host/runtime_error.h"

namespace tremvik {

void RunReading::Begin() noexcept {
  End();
  in_run_ = true;
}

void RunReading::End() noexcept {
  in_run_ = false;
  whole_ = false;
  number_ = 0;
  size_ = 0;
  pieces_.clear();
}

bool RunReading::Replays(std::string_view name) {
  if (number_ == 0 || name != name_) return false;
  if (!whole_ || size_ > kMostBytes) {
    throw RuntimeError(erro::kEntradaSaida,
                       "O arquivo mudou enquanto era examinado; espere que ele esteja completo.");
  }
  piece_ = 0;
  offset_ = 0;
  return true;
}

std::size_t RunReading::Replay(char* buffer, std::size_t count) {
  if (piece_ == pieces_.size()) return 0;
  const std::string_view rest = std::string_view{pieces_[piece_]}.substr(offset_);
  const std::size_t given = rest.copy(buffer, count);
  offset_ += given;
  if (given == rest.size()) {
    ++piece_;
    offset_ = 0;
  }
  return given;
}

void RunReading::Follow(int number, std::string_view name) {
  if (!in_run_ || number_ != 0) return;
  name_ = name;
  number_ = number;
}

void RunReading::Record(int number, std::string_view bytes) {
  if (number != number_ || whole_) return;
  whole_ = bytes.empty();
  size_ += bytes.size();
  if (whole_) return;
  if (size_ <= kMostBytes) {
    pieces_.emplace_back(bytes);
  } else {
    pieces_.clear();
  }
}

}  // namespace tremvik
