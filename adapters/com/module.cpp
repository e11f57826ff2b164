// The library's entry points: class factory, unloading, registration.
#include "adapters/com/module.h"

#include <atomic>
#include <string_view>

#include "adapters/com/desktop.h"
#include "adapters/com/errors.h"
#include "adapters/com/registration.h"
#include "adapters/com/tremvik_object.h"
#include "adapters/com/windows_api.h"

namespace tremvik::com {
namespace {

std::atomic<long> users{0};

class TremvikFactory final : public IClassFactory {
 public:
  TremvikFactory() = default;
  TremvikFactory(const TremvikFactory&) = delete;
  TremvikFactory& operator=(const TremvikFactory&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IClassFactory)) return E_NOINTERFACE;
    *object = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    TremvikObject* made = nullptr;
    const HRESULT status = Guarded([&made] { made = new TremvikObject; });
    if (FAILED(status)) return status;
    const HRESULT given = made->QueryInterface(iid, object);
    made->Release();
    return given;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    lock ? AddUser() : RemoveUser();
    return S_OK;
  }

 private:
  ~TremvikFactory() = default;

  Use use_;
  std::atomic<ULONG> references_{1};
};

}  // namespace

void AddUser() { ++users; }
void RemoveUser() { --users; }
bool HasUsers() { return users > 0; }

ComPtr<ITypeInfo> TypeOf(REFGUID id) {
  EXCEPINFO none{};
  ComPtr<ITypeLib> library;
  HRESULT status = LoadTypeLibEx(LibraryPath().c_str(), REGKIND_NONE, library.Receive());
  if (FAILED(status)) throw ErrorOfCall(status, none, L"LoadTypeLibEx");
  ComPtr<ITypeInfo> type;
  status = library->GetTypeInfoOfGuid(id, type.Receive());
  if (FAILED(status)) throw ErrorOfCall(status, none, L"GetTypeInfoOfGuid");
  return type;
}

}  // namespace tremvik::com

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (!IsEqualCLSID(clsid, CLSID_Tremvik)) return CLASS_E_CLASSNOTAVAILABLE;
  auto* const factory = new (std::nothrow) tremvik::com::TremvikFactory;
  if (!factory) return E_OUTOFMEMORY;
  const HRESULT status = factory->QueryInterface(iid, object);
  factory->Release();
  return status;
}

STDAPI DllCanUnloadNow() { return tremvik::com::HasUsers() ? S_FALSE : S_OK; }

// Where the caller may not write for the whole machine, the class is registered for the user alone.
STDAPI DllRegisterServer() {
  using tremvik::com::Scope;
  const HRESULT machine = tremvik::com::Register(Scope::kMachine);
  return machine == E_ACCESSDENIED ? tremvik::com::Register(Scope::kUser) : machine;
}

STDAPI DllUnregisterServer() {
  using tremvik::com::Scope;
  const HRESULT user = tremvik::com::Unregister(Scope::kUser);
  const HRESULT machine = tremvik::com::Unregister(Scope::kMachine);
  return FAILED(machine) ? machine : user;
}

// regsvr32 /i:user: for the user alone, whatever the caller's rights.
STDAPI DllInstall(BOOL install, LPCWSTR command) {
  using tremvik::com::Scope;
  const bool user = command && std::wstring_view(command) == L"user";
  if (!user) return install ? DllRegisterServer() : DllUnregisterServer();
  return install ? tremvik::com::Register(Scope::kUser) : tremvik::com::Unregister(Scope::kUser);
}
