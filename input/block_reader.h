#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "input/input_buffer.h"
#include "layout/record.h"

namespace tremvik {

/// Reads a file as a sequence of fixed-length blocks, counting the reads in the run's line counter.
class BlockReader {
 public:
  /// `NumeroLinha` counts the reads; it outlives the reader.
  BlockReader(Files& files, std::int16_t& NumeroLinha) : files_(files), NumeroLinha_(NumeroLinha) {}

  /// Opens `path` under file number `number`. Raises the host's file errors.
  void Open(int number, std::string_view path);
  /// Closes the file if it is open. Raises the host's file errors.
  void Close();

  /// Adds 1 to the line counter, then reads the record's block. A read that meets the end of the file lays
  /// what it got over the buffer and leaves the rest as it was. Raises error 6 past record 32767, and file
  /// errors.
  template <typename R>
  void Next(Record<R>& record) {
    CountLine();
    record.set_linha(NumeroLinha_);
    Read(record.block());
  }

  /// True from the first read on that got less than a whole block; not before, even after the last one.
  [[nodiscard]] bool EndOfFile() const { return end_of_file_; }
  [[nodiscard]] std::int16_t NumeroLinha() const { return NumeroLinha_; }

 private:
  void CountLine();
  void Read(std::span<char> block);

  Files& files_;
  std::int16_t& NumeroLinha_;
  std::optional<InputBuffer> input_;
  bool end_of_file_ = false;
};

}  // namespace tremvik
