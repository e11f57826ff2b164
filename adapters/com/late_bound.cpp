#include "adapters/com/late_bound.h"

#include <algorithm>
#include <vector>

#include "adapters/com/errors.h"

namespace tremvik::com {
namespace {

constexpr LCID kBrasil = 0x0416;  // pt-BR

Variant Converted(const Variant& value, VARTYPE type) {
  Variant converted;
  VARIANT source = value.raw();  // lent; the call only reads it
  const HRESULT status = VariantChangeTypeEx(&converted.raw(), &source, kBrasil, 0, type);
  if (status == DISP_E_OVERFLOW) throw RuntimeError(erro::kEstouro);
  if (FAILED(status)) throw RuntimeError(erro::kTiposIncompativeis);
  return converted;
}

}  // namespace

LateBound LateBound::Create(std::wstring_view prog_id) {
  const std::wstring name(prog_id);
  CLSID clsid{};
  ComPtr<IDispatch> object;
  HRESULT status = CLSIDFromProgID(name.c_str(), &clsid);
  if (SUCCEEDED(status)) {
    status = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                              object.ReceiveVoid());
  }
  if (FAILED(status)) {
    const RuntimeError plain(erro::kComponenteNaoCriado);
    throw RuntimeError(plain.number(), plain.description() + ": '" + Utf8(prog_id) + "'");
  }
  return LateBound(std::move(object), name);
}

DISPID LateBound::Identifier(std::wstring_view member) {
  if (const auto known = identifiers_.find(member); known != identifiers_.end()) return known->second;
  std::wstring name(member);
  LPOLESTR names = name.data();
  DISPID identifier = DISPID_UNKNOWN;
  EXCEPINFO none{};
  const HRESULT status = object_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &identifier);
  if (FAILED(status)) throw ErrorOfCall(status, none, Qualified(member));
  identifiers_.emplace(std::move(name), identifier);
  return identifier;
}

Variant LateBound::Invoke(std::wstring_view member, WORD flags, std::span<Variant> arguments) {
  std::vector<VARIANT> reversed(arguments.size());
  std::ranges::transform(arguments, reversed.rbegin(), [](const Variant& each) { return each.raw(); });
  DISPID put = DISPID_PROPERTYPUT;
  const bool putting = flags == DISPATCH_PROPERTYPUT;
  DISPPARAMS parameters{reversed.data(), putting ? &put : nullptr, static_cast<UINT>(reversed.size()),
                        putting ? 1U : 0U};
  Variant result;
  EXCEPINFO exception{};
  UINT wrong = 0;
  const HRESULT status = object_->Invoke(Identifier(member), IID_NULL, LOCALE_USER_DEFAULT, flags,
                                         &parameters, putting ? nullptr : &result.raw(), &exception, &wrong);
  if (FAILED(status)) throw ErrorOfCall(status, exception, Qualified(member));
  return result;
}

std::wstring LateBound::Qualified(std::wstring_view member) const {
  return name_ + L"." + std::wstring(member);
}

RuntimeError LateBound::Named(const RuntimeError& error, std::wstring_view member) const {
  return {error.number(), error.description() + " em " + Utf8(Qualified(member))};
}

template <>
std::string As<std::string>(const Variant& value) {
  if (value.raw().vt == VT_NULL) return {};
  return Utf8(View(Converted(value, VT_BSTR).raw().bstrVal));
}
template <>
std::int32_t As<std::int32_t>(const Variant& value) {
  return Converted(value, VT_I4).raw().lVal;
}
template <>
std::int16_t As<std::int16_t>(const Variant& value) {
  return Converted(value, VT_I2).raw().iVal;
}
template <>
bool As<bool>(const Variant& value) {
  return Converted(value, VT_BOOL).raw().boolVal != VARIANT_FALSE;
}

ComPtr<IDispatch> AsObject(const Variant& value) {
  const Variant object = Converted(value, VT_DISPATCH);
  if (!object.raw().pdispVal) throw RuntimeError(erro::kTiposIncompativeis);
  return ComPtr<IDispatch>(object.raw().pdispVal);
}

}  // namespace tremvik::com
