// Automation objects of the tests: members by name, each a function.
#pragma once

#include <atomic>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "adapters/com/owners.h"
#include "adapters/com/windows_api.h"

namespace tremvik::com_test {

/// The arguments of a call in the caller's order, as texts (numbers in decimal).
using Arguments = std::vector<std::string>;
using Member = std::pair<std::wstring, std::function<com::Variant(const Arguments&)>>;

/// An object that answers late-bound calls with `members`. What a member throws reaches the caller as its
/// error. `contract`, where given, describes the object: a call of another name, kind or number of arguments
/// than it states fails with error 438 or 450.
class Scripted final : public IDispatch {
 public:
  explicit Scripted(std::vector<Member> members, com::ComPtr<ITypeInfo> contract = {});
  Scripted(const Scripted&) = delete;
  Scripted& operator=(const Scripted&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override;

  /// Objects of this library that are alive.
  static long Alive();

 private:
  ~Scripted();
  [[nodiscard]] bool Agreed(const std::wstring& name, WORD flags, UINT arguments) const;

  std::vector<Member> members_;
  com::ComPtr<ITypeInfo> contract_;
  std::atomic<ULONG> references_{1};
};

/// A Scripted object as a value to return.
[[nodiscard]] com::Variant AsValue(Scripted* object);

}  // namespace tremvik::com_test
