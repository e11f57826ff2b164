// What the library knows of itself: its type library and whether anybody still uses it.
#pragma once

#include "adapters/com/owners.h"
#include "adapters/com/windows_api.h"

namespace tremvik::com {

/// Counts one user of the library (an object, a factory, a lock) for as long as it lives.
void AddUser();
void RemoveUser();
[[nodiscard]] bool HasUsers();

/// The description of the interface or class `id`, from the type library in this library's own file. Raises
/// the run-time error of loading it.
[[nodiscard]] ComPtr<ITypeInfo> TypeOf(REFGUID id);

}  // namespace tremvik::com
