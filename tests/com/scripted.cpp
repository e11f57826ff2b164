#include "scripted.h"

#include <algorithm>

#include "adapters/com/errors.h"
#include "adapters/com/late_bound.h"

namespace tremvik::com_test {
namespace {

std::atomic<long> alive{0};

Arguments TextsOf(const DISPPARAMS& parameters) {
  Arguments texts;
  for (UINT i = parameters.cArgs; i > 0; --i) {
    com::Variant value;
    VariantCopyInd(&value.raw(), &parameters.rgvarg[i - 1]);
    texts.push_back(com::AsText(value));
  }
  return texts;
}

HRESULT Raise(const RuntimeError& error, EXCEPINFO* exception) {
  if (!exception) return E_FAIL;
  *exception = {};
  // Both ways of giving a number are in use: hosts' classes fill the code, the engine fills the status.
  if (error.number() < 3000) exception->wCode = static_cast<WORD>(error.number());
  const unsigned status = 0x800A0000U + static_cast<unsigned>(error.number());
  if (error.number() >= 3000) exception->scode = static_cast<SCODE>(status);
  exception->bstrDescription = com::Bstr(error.description()).Detach();
  exception->bstrSource = com::Bstr(L"TesteHost").Detach();
  return DISP_E_EXCEPTION;
}

}  // namespace

Scripted::Scripted(std::vector<Member> members, com::ComPtr<ITypeInfo> contract)
    : members_(std::move(members)), contract_(std::move(contract)) {
  ++alive;
}

Scripted::~Scripted() { --alive; }

long Scripted::Alive() { return alive; }

HRESULT Scripted::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IDispatch)) return E_NOINTERFACE;
  *object = static_cast<IDispatch*>(this);
  AddRef();
  return S_OK;
}

ULONG Scripted::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT Scripted::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

HRESULT Scripted::GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) {
  const auto found = std::ranges::find_if(
      members_, [&](const Member& member) { return _wcsicmp(member.first.c_str(), names[0]) == 0; });
  if (found == members_.end()) return DISP_E_UNKNOWNNAME;
  ids[0] = static_cast<DISPID>(found - members_.begin()) + 1;
  return S_OK;
}

bool Scripted::Agreed(const std::wstring& name, WORD flags, UINT arguments) const {
  if (!contract_) return true;
  std::wstring wanted = name;
  LPOLESTR names = wanted.data();
  MEMBERID id = MEMBERID_NIL;
  if (FAILED(contract_->GetIDsOfNames(&names, 1, &id))) return false;
  for (UINT index = 0;; ++index) {
    FUNCDESC* function = nullptr;
    if (FAILED(contract_->GetFuncDesc(index, &function))) return false;
    const bool same = function->memid == id && (function->invkind & flags) != 0;
    auto count = static_cast<UINT>(function->cParams);
    const auto* const last = count > 0 ? &function->lprgelemdescParam[count - 1] : nullptr;
    if (last && (last->paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0) --count;
    contract_->ReleaseFuncDesc(function);
    if (same) return count == arguments;
  }
}

HRESULT Scripted::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                         EXCEPINFO* exception, UINT*) {
  if (id < 1 || static_cast<std::size_t>(id) > members_.size()) return DISP_E_MEMBERNOTFOUND;
  const auto& [name, body] = members_[static_cast<std::size_t>(id) - 1];
  try {
    if (!Agreed(name, flags, parameters->cArgs))
      throw RuntimeError(450, "Fora do contrato: " + com::Utf8(name));
    com::Variant value = body(TextsOf(*parameters));
    if (result) *result = value.Detach();
    return S_OK;
  } catch (const RuntimeError& error) {
    return Raise(error, exception);
  } catch (...) {
    return E_UNEXPECTED;
  }
}

com::Variant AsValue(Scripted* object) {
  com::Variant value;
  value.raw().vt = VT_DISPATCH;
  value.raw().pdispVal = object;
  return value;
}

}  // namespace tremvik::com_test
