#include "input/block_reader.h"

#include <algorithm>

#include "runtime/int16.h"

namespace tremvik {

void BlockReader::Open(int number, std::string_view path) {
  input_.reset();
  end_of_file_ = false;
  input_.emplace(files_, number, path);
}

void BlockReader::Close() {
  if (input_) input_->Close();
  input_.reset();
}

void BlockReader::CountLine() { Increment(NumeroLinha_); }

void BlockReader::Read(std::span<char> block) {
  while (true) {
    const std::string_view ahead = input_->Ahead().substr(0, block.size());
    std::ranges::copy(ahead, block.begin());
    input_->Consume(ahead.size());
    if (ahead.size() == block.size()) return;
    if (ahead.empty()) {
      end_of_file_ = true;
      return;
    }
    block = block.subspan(ahead.size());
  }
}

}  // namespace tremvik
