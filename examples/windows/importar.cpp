// Imports a "Pré-Formatado" file through the component, early bound, with a listener for its events:
//
//   importar FILE      ends with 0 (accepted), 1 (refused), 2 (usage) or 3 (the component cannot be made)
//
// DllTremvik_idl.h comes from the interface description, with Microsoft's or MinGW's compiler of it:
//
//   midl /h DllTremvik_idl.h DllTremvik.idl            widl -h -o DllTremvik_idl.h DllTremvik.idl
//   cl /EHsc /std:c++17 importar.cpp ole32.lib oleaut32.lib uuid.lib
//   g++ -std=c++17 -static -municode -o importar.exe importar.cpp -lole32 -loleaut32 -luuid
// clang-format off
#include <windows.h>
#include <initguid.h>
#include <oleauto.h>
#include <ocidl.h>
// clang-format on

#include <clocale>
#include <cstdio>
#include <cwchar>

#include "DllTremvik_idl.h"

namespace {

// Listens to the events of `__Tremvik`. Lives on the stack of main, which takes it off before it ends.
class Listener final : public IDispatch {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == DIID___Tremvik;
    *object = known ? static_cast<IDispatch*>(this) : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    if (event == 1) ++steps;       // Progresso: advance the progress display
    if (event == 2) close = true;  // Fechar: close the import screen
    return S_OK;
  }

  int steps = 0;
  bool close = false;
};

int Import(const wchar_t* file) {
  _Tremvik* tremvik = nullptr;
  const HRESULT made = CoCreateInstance(CLSID_Tremvik, nullptr, CLSCTX_INPROC_SERVER, IID__Tremvik,
                                        reinterpret_cast<void**>(&tremvik));
  if (FAILED(made)) {
    std::printf("DllTremvik.Tremvik cannot be made (0x%08lX); is it registered?\n",
                static_cast<unsigned long>(made));
    return 3;
  }
  Listener listener;
  IConnectionPointContainer* container = nullptr;
  IConnectionPoint* events = nullptr;
  DWORD cookie = 0;
  tremvik->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container));
  container->FindConnectionPoint(DIID___Tremvik, &events);
  events->Advise(&listener, &cookie);

  BSTR path = SysAllocString(file);
  VARIANT_BOOL refused = VARIANT_FALSE;
  VARIANT line;
  VARIANT message;
  VariantInit(&line);
  VariantInit(&message);
  tremvik->put_bolRetMonitora(VARIANT_FALSE);
  tremvik->Monitora(&path);
  tremvik->get_bolRetMonitora(&refused);
  tremvik->get_NroLinha(&line);
  tremvik->get_Mensagem(&message);
  if (refused) {
    std::wprintf(L"Recusado na linha %d:\n%ls\n", line.iVal, message.bstrVal);
  } else {
    std::wprintf(L"Aceito (%d passos)\n", listener.steps);
  }

  VariantClear(&message);
  SysFreeString(path);
  events->Unadvise(cookie);
  events->Release();
  container->Release();
  tremvik->Release();
  return refused ? 1 : 0;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count != 2) {
    std::puts("Uso: importar ARQUIVO");
    return 2;
  }
  std::setlocale(LC_ALL, ".OCP");  // the console's characters
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const int result = Import(arguments[1]);
  CoUninitialize();
  return result;
}
