// Calling another program's automation object by the names of its members.
#pragma once

#include <array>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "adapters/com/owners.h"
#include "host/runtime_error.h"

namespace tremvik::com {

/// `value` as text (Null is the empty one), number or truth, as the desktop runtime under Brazilian settings
/// converts it, whatever the user's settings are. Raises 13 where it is none, 6 where it is too great.
template <class Type>
[[nodiscard]] Type As(const Variant& value);
template <>
std::string As<std::string>(const Variant& value);
template <>
std::int32_t As<std::int32_t>(const Variant& value);
template <>
std::int16_t As<std::int16_t>(const Variant& value);
template <>
bool As<bool>(const Variant& value);
/// `value` as an object; Nothing is none.
[[nodiscard]] ComPtr<IDispatch> AsObject(const Variant& value);

/// An automation object that is called by names. Every operation raises the object's own error, with its
/// number and description, or the run-time error that the failed call stands for.
class LateBound {
 public:
  /// `name` stands for the object in descriptions of errors.
  explicit LateBound(ComPtr<IDispatch> object, std::wstring name)
      : object_(std::move(object)), name_(std::move(name)) {}
  /// Makes an object of class `prog_id`. A class that is not there or cannot be made is error 429 naming it.
  [[nodiscard]] static LateBound Create(std::wstring_view prog_id);

  /// Calls a method, or reads a property that takes arguments, with `arguments` in their order.
  template <class... Arguments>
  Variant Call(std::wstring_view member, Arguments&&... arguments) {
    return InvokeList(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, std::forward<Arguments>(arguments)...);
  }
  /// The same, for an answer of type std::string, std::int32_t, std::int16_t, bool or LateBound. An answer
  /// that is none raises 13 or 6, with words that name this object and the member.
  template <class Type, class... Arguments>
  Type Get(std::wstring_view member, Arguments&&... arguments) {
    const Variant answer = Call(member, std::forward<Arguments>(arguments)...);
    try {
      if constexpr (std::is_same_v<Type, LateBound>) {
        return LateBound(AsObject(answer), Qualified(member));
      } else {
        return As<Type>(answer);
      }
    } catch (const RuntimeError& error) {
      throw Named(error, member);
    }
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
  [[nodiscard]] std::wstring Qualified(std::wstring_view member) const;
  [[nodiscard]] RuntimeError Named(const RuntimeError& error, std::wstring_view member) const;

  ComPtr<IDispatch> object_;
  std::wstring name_;
  std::map<std::wstring, DISPID, std::less<>> identifiers_;
};

}  // namespace tremvik::com
