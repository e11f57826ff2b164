// Run-time errors at the border: a number and a description inside, a status and an error object outside.
#pragma once

#include <string_view>

#include "adapters/com/windows_api.h"
#include "host/runtime_error.h"

namespace tremvik::com {

/// Turns the exception being handled into the status of a member, with an error object that tells number and
/// description. Call it inside a catch block only.
[[nodiscard]] HRESULT ReportCurrentError() noexcept;

/// Runs `body`, the work of a member; what it throws becomes the member's status.
template <class Body>
[[nodiscard]] HRESULT Guarded(Body&& body) noexcept {
  try {
    body();
    return S_OK;
  } catch (...) {
    return ReportCurrentError();
  }
}

/// The run-time error of a call that ended in `status`. `exception` holds the callee's own words where there
/// are any; `member` names what was called.
[[nodiscard]] RuntimeError ErrorOfCall(HRESULT status, EXCEPINFO& exception, std::wstring_view member);

/// The run-time error of a system call that failed with `code` (GetLastError). A code without a counterpart
/// is `otherwise`.
[[nodiscard]] RuntimeError ErrorOfSystem(DWORD code, int otherwise = erro::kEntradaSaida);

}  // namespace tremvik::com
