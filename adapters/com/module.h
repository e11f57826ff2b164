// What the library knows of itself: its type library and whether anybody still uses it.
#pragma once

#include "adapters/com/owners.h"
#include "adapters/com/windows_api.h"

namespace tremvik::com {

/// Counts the users of the library, without which the system unloads it.
void AddUser();
void RemoveUser();
[[nodiscard]] bool HasUsers();

/// A user of the library for as long as it lives: the first member of each object that is handed out, so that
/// the others end before.
struct Use {
  Use() { AddUser(); }
  Use(const Use&) = delete;
  Use& operator=(const Use&) = delete;
  ~Use() { RemoveUser(); }
};

/// The description of the interface or class `id`, from the type library in this library's own file. Raises
/// the run-time error of loading it.
[[nodiscard]] ComPtr<ITypeInfo> TypeOf(REFGUID id);

}  // namespace tremvik::com
