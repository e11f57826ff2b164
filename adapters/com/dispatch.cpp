#include "adapters/com/dispatch.h"

#include <span>
#include <vector>

#include "adapters/com/owners.h"

namespace tremvik::com {
namespace {

constexpr VARTYPE kByReference = VT_BYREF;

// The description of one member, released with the type that gave it.
class Function {
 public:
  Function(ITypeInfo& type, UINT index) : type_(type) {
    if (FAILED(type.GetFuncDesc(index, &description_))) description_ = nullptr;
  }
  Function(const Function&) = delete;
  Function& operator=(const Function&) = delete;
  ~Function() {
    if (description_) type_.ReleaseFuncDesc(description_);
  }

  explicit operator bool() const { return description_ != nullptr; }
  [[nodiscard]] bool Serves(DISPID member, WORD flags) const {
    return description_->memid == member && (description_->invkind & flags) != 0;
  }
  [[nodiscard]] INVOKEKIND kind() const { return description_->invkind; }
  /// The parameters that a caller gives: all but the result.
  [[nodiscard]] std::span<const ELEMDESC> parameters() const {
    auto count = static_cast<std::size_t>(description_->cParams);
    const ELEMDESC* const all = description_->lprgelemdescParam;
    if (count > 0 && (all[count - 1].paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0) --count;
    return {all, count};
  }

 private:
  ITypeInfo& type_;
  FUNCDESC* description_ = nullptr;
};

bool ByReference(const ELEMDESC& parameter) { return parameter.tdesc.vt == VT_PTR; }

VARTYPE TypeOf(const ELEMDESC& parameter) {
  return ByReference(parameter) ? parameter.tdesc.lptdesc->vt : parameter.tdesc.vt;
}

bool IsOmitted(const VARIANT& plain) { return plain.vt == VT_ERROR && plain.scode == DISP_E_PARAMNOTFOUND; }

// Places the caller's arguments, which come last first and the named ones before all others.
HRESULT Place(const DISPPARAMS& given, std::vector<VARIANT*>& places) {
  if (given.cArgs > places.size() || given.cNamedArgs > given.cArgs) return DISP_E_BADPARAMCOUNT;
  const UINT positional = given.cArgs - given.cNamedArgs;
  for (UINT i = 0; i < positional; ++i)
    places[i] = &given.rgvarg[given.cArgs - 1 - i];
  for (UINT i = 0; i < given.cNamedArgs; ++i) {
    const DISPID name = given.rgdispidNamedArgs[i];
    const auto place = name == DISPID_PROPERTYPUT ? places.size() - 1 : static_cast<std::size_t>(name);
    if (place >= places.size()) return DISP_E_PARAMNOTFOUND;
    if (places[place]) return DISP_E_BADPARAMCOUNT;  // named, but given by its place too
    places[place] = &given.rgvarg[i];
  }
  return S_OK;
}

// The value that the member gets for one argument, of the parameter's type.
HRESULT Convert(const ELEMDESC& parameter, VARIANT* given, LCID locale, Variant& converted) {
  Variant plain;  // without the references in between: what is left out may be a variable passed on
  if (given) {
    if (const HRESULT status = VariantCopyInd(&plain.raw(), given); FAILED(status)) return status;
  }
  if (!given || IsOmitted(plain.raw())) {
    constexpr USHORT kOptional = PARAMFLAG_FOPT | PARAMFLAG_FHASDEFAULT;
    if ((parameter.paramdesc.wParamFlags & kOptional) != kOptional) return DISP_E_PARAMNOTOPTIONAL;
    VARIANT& omitted = parameter.paramdesc.pparamdescex->varDefaultValue;
    if (const HRESULT status = VariantCopy(&plain.raw(), &omitted); FAILED(status)) return status;
  }
  return VariantChangeTypeEx(&converted.raw(), &plain.raw(), locale, VARIANT_ALPHABOOL, TypeOf(parameter));
}

// What is passed on: the value itself, or a reference to it.
VARIANT Passed(const ELEMDESC& parameter, Variant& value) {
  VARIANT passed = value.raw();
  if (!ByReference(parameter)) return passed;
  passed.vt = static_cast<VARTYPE>(kByReference | value.raw().vt);
  passed.byref = &value.raw().byref;
  return passed;
}

HRESULT CallFunction(ITypeInfo& type, void* instance, const Function& function, const DispatchCall& call) {
  const auto parameters = function.parameters();
  std::vector<VARIANT*> places(parameters.size());
  if (const HRESULT status = Place(*call.parameters, places); FAILED(status)) return status;
  std::vector<Variant> values(parameters.size());
  std::vector<VARIANT> passed(parameters.size());
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    const HRESULT status = Convert(parameters[i], places[i], call.locale, values[i]);
    if (FAILED(status)) {
      if (call.wrong_argument && places[i])
        *call.wrong_argument = static_cast<UINT>(places[i] - call.parameters->rgvarg);
      return status;
    }
    passed[passed.size() - 1 - i] = Passed(parameters[i], values[i]);
  }
  DISPID put = DISPID_PROPERTYPUT;
  const bool putting = function.kind() == INVOKE_PROPERTYPUT;
  DISPPARAMS full{passed.data(), putting ? &put : nullptr, static_cast<UINT>(passed.size()),
                  putting ? 1U : 0U};
  Variant result;
  const HRESULT status = type.Invoke(instance, call.member, static_cast<WORD>(function.kind()), &full,
                                     putting ? nullptr : &result.raw(), call.exception, call.wrong_argument);
  if (SUCCEEDED(status) && call.result) *call.result = result.Detach();
  return status;
}

}  // namespace

HRESULT InvokeMember(ITypeInfo& type, void* instance, const DispatchCall& call) {
  if (!call.parameters) return E_INVALIDARG;
  HRESULT status = DISP_E_MEMBERNOTFOUND;
  for (UINT index = 0;; ++index) {
    const Function function(type, index);
    if (!function) break;
    if (!function.Serves(call.member, call.flags)) continue;
    status = CallFunction(type, instance, function, call);
    break;
  }
  return status;
}

}  // namespace tremvik::com
