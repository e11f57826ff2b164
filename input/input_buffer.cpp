#include "input/input_buffer.h"

namespace tremvik {
namespace {

constexpr std::size_t kReadAhead = std::size_t{64} * 1024;

}  // namespace

InputBuffer::InputBuffer(Files& files, int number, std::string_view path)
    : files_(files), number_(number), bytes_(std::make_unique_for_overwrite<char[]>(kReadAhead)) {
  files_.Open(number_, path);
  open_ = true;
}

InputBuffer::~InputBuffer() {
  try {
    Close();
  } catch (...) {  // NOLINT(bugprone-empty-catch): the error that ends the pass is the one to be told
  }
}

void InputBuffer::Close() {
  if (!open_) return;
  open_ = false;
  files_.Close(number_);
}

void InputBuffer::ReadOn() {
  position_ = 0;
  end_ = 0;  // should the read fail
  end_ = files_.Read(number_, bytes_.get(), kReadAhead);
}

}  // namespace tremvik
