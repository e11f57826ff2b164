#include "cli/progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

#include "cli/terminal.h"
#include "text/readable.h"
#include "text/style.h"

namespace tremvik::cli {
namespace {

constexpr std::string_view kClearLine = "\r\x1b[K";
constexpr std::chrono::milliseconds kBetweenDraws{150};

void WriteToStandardError(std::string_view text) {
  Output err(STDERR_FILENO);
  err.Write(text);
}

}  // namespace

void Bar::Draw(int percent, std::string_view words) {
  if (!on_ || (drawn_ && percent == percent_ && words == words_)) return;
  constexpr int kCells = 30;
  std::string bar;
  for (int i = 0; i < kCells; ++i)
    bar += i < percent * kCells / 100 ? "█" : "░";
  std::string line(kClearLine);
  if (percent >= 0) {
    line += text::Styled(bar, text::Style::kGood, colour_) + " " + std::to_string(percent) + "% ";
  }
  WriteToStandardError(line.append(words));
  drawn_ = true;
  percent_ = percent;
  words_ = words;
}

void Bar::Clear() {
  if (drawn_) WriteToStandardError(kClearLine);
  drawn_ = false;
}

void ProgressBar::Begin(int lines, std::function<int()> line) {
  lines_ = lines;
  line_ = std::move(line);
  steps_ = 0;
  if (lines_ > 0) bar_.Draw(0, "conferindo tamanhos");
}

void ProgressBar::End() {
  Clear();
  lines_ = 0;
  line_ = nullptr;
}

// The first two steps are the count of the records, which reads to the end; the others are the validation's.
void ProgressBar::Progresso() {
  if (!on() || lines_ == 0) return;
  ++steps_;
  if (steps_ <= 2) return bar_.Draw(0, "conferindo quantidades");
  bar_.Draw(std::clamp(static_cast<int>(100LL * line_() / lines_), 0, 100), "validando");
}

void FilesBar::Step() {
  ++done_;
  if (!bar_.on()) return;
  const auto now = std::chrono::steady_clock::now();
  if (done_ < total_ && now - drawn_ < kBetweenDraws) return;
  drawn_ = now;
  if (total_ == 0) return bar_.Draw(-1, text::Count(done_, "arquivo", "arquivos"));
  const auto percent = static_cast<int>(std::min(done_, total_) * 100 / total_);
  bar_.Draw(percent,
            text::Count(done_, "", "").append("de ").append(text::Count(total_, "arquivo", "arquivos")));
}

void FilesBar::Part(std::size_t done, std::size_t total) {
  if (total > 0) bar_.Draw(static_cast<int>(done * 100 / total), "examinando");
}

}  // namespace tremvik::cli
