// The classes of a pretended host program, of the database engine and of the journal.
#pragma once

#include <span>
#include <string_view>

#include "scripted.h"

namespace tremvik::com_test {

/// A class that the test library makes: its name, and the last bytes of its identifier.
struct HostClass {
  std::wstring_view prog_id;
  unsigned char number;
  Scripted* (*make)();
};
[[nodiscard]] std::span<const HostClass> HostClasses();

}  // namespace tremvik::com_test
