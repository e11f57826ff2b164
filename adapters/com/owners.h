// Owners of what automation and the registry hand out: each releases what it holds.
#pragma once

#include <cstdint>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "adapters/com/text.h"
#include "adapters/com/windows_api.h"

namespace tremvik::com {

/// A counted interface pointer.
template <class Interface>
class ComPtr {
 public:
  ComPtr() = default;
  explicit ComPtr(Interface* shared) : pointer_(shared) {
    if (pointer_) pointer_->AddRef();
  }
  ComPtr(const ComPtr& other) : ComPtr(other.pointer_) {}
  ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ComPtr& operator=(const ComPtr& other) {
    ComPtr taken(other);
    std::swap(pointer_, taken.pointer_);
    return *this;
  }
  ComPtr& operator=(ComPtr&& other) noexcept {
    ComPtr taken(std::move(other));
    std::swap(pointer_, taken.pointer_);
    return *this;
  }
  ~ComPtr() {
    if (pointer_) pointer_->Release();
  }

  [[nodiscard]] Interface* get() const { return pointer_; }
  Interface* operator->() const { return pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }
  /// Where an out parameter puts its reference; what was held is released.
  [[nodiscard]] Interface** Receive() {
    *this = ComPtr();
    return &pointer_;
  }
  [[nodiscard]] void** ReceiveVoid() { return reinterpret_cast<void**>(Receive()); }
  /// Gives the reference away.
  [[nodiscard]] Interface* Detach() { return std::exchange(pointer_, nullptr); }

 private:
  Interface* pointer_ = nullptr;
};

/// An automation string.
class Bstr {
 public:
  Bstr() = default;
  explicit Bstr(std::wstring_view text)
      : text_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {
    if (!text_) throw std::bad_alloc();
  }
  explicit Bstr(std::string_view utf8) : Bstr(std::wstring_view(Wide(utf8))) {}
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  ~Bstr() { SysFreeString(text_); }

  [[nodiscard]] BSTR get() const { return text_; }
  [[nodiscard]] BSTR* Receive() { return &text_; }
  [[nodiscard]] BSTR Detach() { return std::exchange(text_, nullptr); }

 private:
  BSTR text_ = nullptr;
};

/// The characters of an automation string; a null one is the empty text.
[[nodiscard]] inline std::wstring_view View(BSTR text) {
  return text ? std::wstring_view(text, SysStringLen(text)) : std::wstring_view();
}

/// A variant.
class Variant {
 public:
  Variant() { VariantInit(&value_); }
  explicit Variant(std::string_view utf8) : Variant() {
    value_.bstrVal = Bstr(utf8).Detach();
    value_.vt = VT_BSTR;
  }
  explicit Variant(std::int16_t number) : Variant() {
    value_.iVal = number;
    value_.vt = VT_I2;
  }
  explicit Variant(std::int32_t number) : Variant() {
    value_.lVal = number;
    value_.vt = VT_I4;
  }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  Variant(Variant&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }
  Variant& operator=(Variant&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Variant() { VariantClear(&value_); }

  [[nodiscard]] VARIANT& raw() { return value_; }
  [[nodiscard]] const VARIANT& raw() const { return value_; }
  [[nodiscard]] VARIANT Detach() {
    VARIANT given = value_;
    VariantInit(&value_);
    return given;
  }

 private:
  VARIANT value_;
};

/// An open registry key.
class RegistryKey {
 public:
  RegistryKey() = default;
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;
  ~RegistryKey() {
    if (key_) RegCloseKey(key_);
  }

  [[nodiscard]] HKEY get() const { return key_; }
  [[nodiscard]] HKEY* Receive() { return &key_; }

 private:
  HKEY key_ = nullptr;
};

}  // namespace tremvik::com
