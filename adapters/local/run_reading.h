#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "layout/kinds.h"

namespace tremvik {

/// What the first opening of a run's file gave. The run's later passes get the same bytes from here, so what
/// is stored is what was counted, even where somebody writes into the file meanwhile.
class RunReading {
 public:
  void Begin() noexcept;
  void End() noexcept;

  /// Where `name` is the run's file and was opened before: its reading begins again. Raises 57 when it was
  /// not read to its end, or had more bytes than a file that may be accepted: then it has changed.
  [[nodiscard]] bool Replays(std::string_view name);
  /// Up to `count` bytes of the reading; 0 at its end.
  std::size_t Replay(char* buffer, std::size_t count);

  /// `name` was opened from the disk under `number`: the run's file, when it is the first one.
  void Follow(int number, std::string_view name);
  /// `bytes` were read from the disk under `number`; none at the end of the file.
  void Record(int number, std::string_view bytes);

 private:
  /// More records than this cannot be counted.
  static constexpr std::size_t kMostRecords = 32'766;
  static constexpr std::size_t kMostBytes =
      kMostRecords * (static_cast<std::size_t>(std::ranges::max(kKinds, {}, &KindInfo::length).length) + 2);

  bool in_run_ = false;
  bool whole_ = false;  ///< read to its end
  int number_ = 0;      ///< of the first opening, 0 before it
  std::string name_;
  std::size_t size_ = 0;
  std::vector<std::string> pieces_;  ///< none once there are too many bytes
  std::size_t piece_ = 0;            ///< of the replay
  std::size_t offset_ = 0;
};

}  // namespace tremvik
