// Reading and writing texts in the registry.
#pragma once

#include <optional>
#include <string>

#include "adapters/com/windows_api.h"

namespace tremvik::com {

/// The text of value `name` of key `path`; nothing where there is none or it is no text.
[[nodiscard]] std::optional<std::wstring> ReadText(HKEY root, const std::wstring& path,
                                                   const std::wstring& name);
/// Sets value `name` (empty: the default value) of key `path`, which is made where it is not there.
[[nodiscard]] LSTATUS WriteText(HKEY root, const std::wstring& path, const std::wstring& name,
                                const std::wstring& text);
/// Deletes key `path` with all below it; a key that is not there is no error. `view` is KEY_WOW64_64KEY or
/// KEY_WOW64_32KEY for the part of one architecture, 0 for the caller's.
[[nodiscard]] LSTATUS DeleteTree(HKEY root, const std::wstring& path, REGSAM view = 0);
/// True when key `path` is not there or holds no other key.
[[nodiscard]] bool HasNoSubkeys(HKEY root, const std::wstring& path);
/// Deletes key `path` if it is there and holds nothing.
void DeleteIfEmpty(HKEY root, const std::wstring& path);

}  // namespace tremvik::com
