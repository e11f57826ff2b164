// The system's errors as run-time errors with words that the user understands.
#pragma once

#include <string>
#include <string_view>

#include "host/runtime_error.h"

namespace tremvik {

/// The runtime's error number of the system error `code` (an errno value) of an operation on a path.
[[nodiscard]] int FileErrorNumber(int code);
/// The error that says `what` could not be done, with the path and, where it helps, the reason.
[[nodiscard]] RuntimeError FileError(int code, std::string_view what, const std::string& path);

/// True where the system limits the size of files for this process ("ulimit -f").
[[nodiscard]] bool SizesAreLimited();

}  // namespace tremvik
