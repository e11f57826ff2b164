#include "adapters/com/registry.h"

#include "adapters/com/owners.h"

namespace tremvik::com {

std::optional<std::wstring> ReadText(HKEY root, const std::wstring& path, const std::wstring& name) {
  RegistryKey key;
  if (RegOpenKeyExW(root, path.c_str(), 0, KEY_QUERY_VALUE, key.Receive()) != ERROR_SUCCESS) return {};
  std::wstring text(64, L'\0');
  for (;;) {
    auto bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    const LSTATUS status =
        RegGetValueW(key.get(), nullptr, name.c_str(), RRF_RT_REG_SZ, nullptr, text.data(), &bytes);
    if (status == ERROR_MORE_DATA) {
      text.resize(text.size() * 2);
      continue;
    }
    if (status != ERROR_SUCCESS) return {};
    text.resize(bytes / sizeof(wchar_t));
    return text.substr(0, text.find(L'\0'));  // whoever wrote the value need not have ended it
  }
}

LSTATUS WriteText(HKEY root, const std::wstring& path, const std::wstring& name, const std::wstring& text) {
  RegistryKey key;
  const LSTATUS status =
      RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, key.Receive(), nullptr);
  if (status != ERROR_SUCCESS) return status;
  return RegSetValueExW(key.get(), name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

LSTATUS DeleteTree(HKEY root, const std::wstring& path, REGSAM view) {
  constexpr REGSAM kWanted = DELETE | KEY_ENUMERATE_SUB_KEYS | KEY_QUERY_VALUE | KEY_SET_VALUE;
  RegistryKey key;
  LSTATUS status = RegOpenKeyExW(root, path.c_str(), 0, kWanted | view, key.Receive());
  if (status == ERROR_FILE_NOT_FOUND) return ERROR_SUCCESS;
  if (status == ERROR_SUCCESS) status = RegDeleteTreeW(key.get(), nullptr);
  return status == ERROR_SUCCESS ? RegDeleteKeyExW(root, path.c_str(), view, 0) : status;
}

namespace {

struct Contents {
  DWORD subkeys = 0;
  DWORD values = 0;
};

Contents ContentsOf(HKEY root, const std::wstring& path) {
  RegistryKey key;
  Contents found;
  if (RegOpenKeyExW(root, path.c_str(), 0, KEY_QUERY_VALUE, key.Receive()) != ERROR_SUCCESS) return found;
  RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &found.subkeys, nullptr, nullptr, &found.values,
                   nullptr, nullptr, nullptr, nullptr);
  return found;
}

}  // namespace

bool HasNoSubkeys(HKEY root, const std::wstring& path) { return ContentsOf(root, path).subkeys == 0; }

void DeleteIfEmpty(HKEY root, const std::wstring& path) {
  const Contents found = ContentsOf(root, path);
  if (found.subkeys == 0 && found.values == 0) RegDeleteKeyW(root, path.c_str());
}

}  // namespace tremvik::com
