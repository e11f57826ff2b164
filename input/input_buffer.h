#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "host/files.h"

namespace tremvik {

/// An input file opened through the host and read ahead in large pieces. Closed at the latest when this
/// object goes, run-time errors on that path swallowed.
class InputBuffer {
 public:
  /// Opens `path` under file number `number`. Raises the host's file errors.
  InputBuffer(Files& files, int number, std::string_view path);
  ~InputBuffer();
  InputBuffer(const InputBuffer&) = delete;
  InputBuffer& operator=(const InputBuffer&) = delete;

  /// Closes the file; later calls do nothing. Raises the host's file errors.
  void Close();

  /// The bytes read ahead and not consumed yet; reads on when there are none. Empty at the end of the file
  /// only.
  std::string_view Ahead() {
    if (position_ == end_) ReadOn();
    return {bytes_.get() + position_, end_ - position_};
  }
  void Consume(std::size_t count) { position_ += count; }

 private:
  void ReadOn();

  Files& files_;
  int number_;
  bool open_ = false;
  std::unique_ptr<char[]> bytes_;
  std::size_t position_ = 0;
  std::size_t end_ = 0;
};

}  // namespace tremvik
