// The test library's entry points; registered for the machine, all classes or those that DllInstall names.
#include <algorithm>
#include <array>
#include <string>

#include "adapters/com/desktop.h"
#include "adapters/com/errors.h"
#include "adapters/com/registry.h"
#include "host_classes.h"

namespace {

using tremvik::com_test::HostClass;
using tremvik::com_test::HostClasses;

CLSID IdentifierOf(const HostClass& of) {
  return {0x3f6b1c52, 0x7a0d, 0x4e8e, {0x9b, 0x41, 0x52, 0x1d, 0x60, 0xaa, 0x70, of.number}};
}

std::wstring Key(const HostClass& of, bool clsid) {
  std::array<wchar_t, 39> text{};
  StringFromGUID2(IdentifierOf(of), text.data(), static_cast<int>(text.size()));
  const std::wstring classes = L"Software\\Classes\\";
  return classes + (clsid ? L"CLSID\\" + std::wstring(text.data()) : std::wstring(of.prog_id));
}

class Factory final : public IClassFactory {
 public:
  explicit Factory(const HostClass& of) : of_(of) {}
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
    *object = static_cast<IClassFactory*>(this);
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }  // lives as long as the library
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** object) override {
    return tremvik::com::Guarded([&] {
      tremvik::com_test::Scripted* const made = of_.make();
      const HRESULT given = made->QueryInterface(iid, object);
      made->Release();
      if (FAILED(given)) throw tremvik::RuntimeError(tremvik::erro::kComponenteNaoCriado);
    });
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  const HostClass& of_;
};

}  // namespace

STDAPI DllGetClassObject(REFCLSID clsid, REFIID, LPVOID* object) {
  for (const HostClass& each : HostClasses()) {
    if (!IsEqualCLSID(clsid, IdentifierOf(each))) continue;
    static std::array<Factory*, 256> factories{};
    Factory*& factory = factories[each.number];
    if (!factory) factory = new Factory(each);
    *object = factory;
    return S_OK;
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() { return S_FALSE; }

/// Number of the library's objects that are alive.
STDAPI_(long) AliveObjects() { return tremvik::com_test::Scripted::Alive(); }

STDAPI DllRegisterServer() {
  using tremvik::com::WriteText;
  for (const HostClass& each : HostClasses()) {
    const std::wstring clsid = Key(each, true);
    const std::wstring server = clsid + L"\\InprocServer32";
    LSTATUS status =
        WriteText(HKEY_LOCAL_MACHINE, Key(each, false) + L"\\CLSID", L"", clsid.substr(clsid.find(L'{')));
    if (status == ERROR_SUCCESS)
      status = WriteText(HKEY_LOCAL_MACHINE, server, L"", tremvik::com::LibraryPath());
    if (status == ERROR_SUCCESS) status = WriteText(HKEY_LOCAL_MACHINE, server, L"ThreadingModel", L"Both");
    if (status != ERROR_SUCCESS) return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
  }
  return S_OK;
}
