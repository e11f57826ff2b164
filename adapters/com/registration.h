// The library's entries in the registry.
#pragma once

#include "adapters/com/windows_api.h"

namespace tremvik::com {

/// For whom the class is registered: everybody on this machine, or the user alone.
enum class Scope { kMachine, kUser };

/// Writes the class, its ProgID, the type library and the interfaces. A failure leaves nothing behind;
/// E_ACCESSDENIED where the caller may not write there.
[[nodiscard]] HRESULT Register(Scope scope);
/// Removes all that Register writes; what the library of the other architecture needs stays while it is
/// registered. Entries that are not there are no error.
[[nodiscard]] HRESULT Unregister(Scope scope);

}  // namespace tremvik::com
