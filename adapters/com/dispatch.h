// IDispatch::Invoke for what late-bound callers really pass.
#pragma once

#include "adapters/com/windows_api.h"

namespace tremvik::com {

/// One late-bound call, as IDispatch::Invoke gets it.
struct DispatchCall {
  DISPID member;
  LCID locale;
  WORD flags;
  DISPPARAMS* parameters;
  VARIANT* result;
  EXCEPINFO* exception;
  UINT* wrong_argument;
};

/// Calls a member of `instance`, an object whose interface `type` describes. Takes by-reference Variants and
/// values where the member wants a by-reference string or Boolean, omitted optional arguments and arguments
/// by name. The members read their by-reference arguments and never change them, so nothing is copied back.
[[nodiscard]] HRESULT InvokeMember(ITypeInfo& type, void* instance, const DispatchCall& call);

}  // namespace tremvik::com
