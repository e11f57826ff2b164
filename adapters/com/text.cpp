#include "adapters/com/text.h"

#include "adapters/com/windows_api.h"

namespace tremvik::com {

std::wstring Wide(std::string_view utf8) {
  if (utf8.empty()) return {};
  const int bytes = static_cast<int>(utf8.size());
  const int size = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, wide.data(), size);
  return wide;
}

std::string Utf8(std::wstring_view wide) {
  if (wide.empty()) return {};
  const int units = static_cast<int>(wide.size());
  const int size = WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, utf8.data(), size, nullptr, nullptr);
  return utf8;
}

}  // namespace tremvik::com
