// Case tables: files, and what the import must answer to them.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "component/tremvik.h"
#include "tests/support/file_builder.h"
#include "tests/support/recording_host.h"

namespace tremvik::test {

/// One instance on a host of its own.
struct Instance {
  RecordingHost host;
  Tremvik tremvik{host.host()};

  /// One import of a file with these bytes.
  void Import(std::string_view bytes);
  /// True when the last box was that of a success.
  [[nodiscard]] bool Succeeded() const;
};

/// The line of an accepted file.
inline constexpr int kAccepted = 0;

/// A file and its fault. `edits` are those of FileBuilder; one with "~" in front happens between the text
/// passes and the binary run. A fault is told on `line`, in two texts; a run-time error ("13 - ...") is one
/// text.
struct Case {
  std::string_view kinds, edits;
  int line = kAccepted;
  std::string_view first = {}, second = {};
};

/// A rule that depends on the period: accepted at `good`, refused at `bad`, both set in "05.Ref".
struct Limit {
  std::string_view kinds, edits, good, bad;
  int line;
  std::string_view first, second;
};

/// Imports the case's file on a new instance and holds everything that the user and the host see to it.
/// Returns the place that was told, empty after a success.
Place Check(const Case& given);
void CheckAll(std::span<const Case> cases);
void CheckAll(std::span<const Limit> limits);

/// The message of a fault, as the user reads it.
[[nodiscard]] std::string Report(std::string_view first, std::string_view second, int line);

}  // namespace tremvik::test
