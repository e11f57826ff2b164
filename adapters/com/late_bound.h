// Calling another program's automation object by the names of its members.
#pragma once

#include <array>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "adapters/com/owners.h"

namespace tremvik::com {

/// An automation object that is called by names. Every operation raises the object's own error, with its
/// number and description, or the run-time error that the failed call stands for.
class LateBound {
 public:
  explicit LateBound(ComPtr<IDispatch> object) : object_(std::move(object)) {}
  /// Makes an object of class `prog_id`. A class that is not there or cannot be made is error 429 naming it.
  [[nodiscard]] static LateBound Create(std::wstring_view prog_id);

  /// Calls a method, or reads a property that takes arguments, with `arguments` in their order.
  template <class... Arguments>
  Variant Call(std::wstring_view member, Arguments&&... arguments) {
    return InvokeList(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, std::forward<Arguments>(arguments)...);
  }
  void Put(std::wstring_view property, Variant value) {
    InvokeList(property, DISPATCH_PROPERTYPUT, std::move(value));
  }

 private:
  template <class... Arguments>
  Variant InvokeList(std::wstring_view member, WORD flags, Arguments&&... arguments) {
    std::array<Variant, sizeof...(arguments)> list{Variant(std::forward<Arguments>(arguments))...};
    return Invoke(member, flags, list);
  }
  Variant Invoke(std::wstring_view member, WORD flags, std::span<Variant> arguments);
  DISPID Identifier(std::wstring_view member);

  ComPtr<IDispatch> object_;
  std::map<std::wstring, DISPID, std::less<>> identifiers_;
};

/// `value` as text, number, truth or object, as the desktop runtime under Brazilian settings converts it,
/// whatever the user's settings are. Raises 13 where it is none, 6 where it is too great.
[[nodiscard]] std::string AsText(const Variant& value);  ///< Null is the empty text
[[nodiscard]] std::int32_t AsLong(const Variant& value);
[[nodiscard]] std::int16_t AsInteger(const Variant& value);
[[nodiscard]] bool AsBoolean(const Variant& value);
[[nodiscard]] LateBound AsObject(const Variant& value);

}  // namespace tremvik::com
