// A host in C++: early bound through the dual interface, with a sink for the events. Runs the stories of a
// list file, a line each: input file, answer (6 or 7), whether Preparar works (1 or 0), journal file, parted
// by "|".
#include <array>
#include <fstream>
#include <iostream>
#include <string>

#include "adapters/com/late_bound.h"
#include "adapters/com/tremvik_idl.h"

using tremvik::com::AsText;
using tremvik::com::Bstr;
using tremvik::com::ComPtr;
using tremvik::com::LateBound;
using tremvik::com::Variant;

namespace {

class Sink final : public IDispatch {
 public:
  explicit Sink(LateBound& diario) : diario_(diario) {}
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    const bool known =
        IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch) || IsEqualIID(iid, DIID___Tremvik);
    *object = known ? static_cast<IDispatch*>(this) : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }  // lives on main's stack
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    diario_.Call(L"Evento", std::string_view(event == 1 ? "Progresso" : event == 2 ? "Fechar" : "?"));
    return S_OK;
  }

 private:
  LateBound& diario_;
};

// Ends the program with `what`, which went wrong.
void Demand(bool good, std::string_view what) {
  if (good) return;
  std::cout << "failed: " << what << "\n" << std::flush;
  std::exit(1);
}

void Import(const std::string& file, LateBound& diario) {
  ComPtr<_Tremvik> tremvik;
  Demand(SUCCEEDED(CoCreateInstance(CLSID_Tremvik, nullptr, CLSCTX_INPROC_SERVER, IID__Tremvik,
                                    tremvik.ReceiveVoid())),
         "CoCreateInstance");
  Sink sink(diario);
  ComPtr<IConnectionPointContainer> container;
  ComPtr<IConnectionPoint> point;
  DWORD cookie = 0;
  Demand(SUCCEEDED(tremvik->QueryInterface(IID_IConnectionPointContainer, container.ReceiveVoid())),
         "container");
  Demand(SUCCEEDED(container->FindConnectionPoint(DIID___Tremvik, point.Receive())), "connection point");
  Demand(SUCCEEDED(point->Advise(&sink, &cookie)), "Advise");

  Demand(SUCCEEDED(tremvik->put_bolRetMonitora(VARIANT_FALSE)), "put bolRetMonitora");
  Bstr path(file);
  BSTR given = path.get();
  Demand(tremvik->Monitora(&given) == S_OK, "Monitora");
  VARIANT_BOOL refused = VARIANT_FALSE;
  Variant line;
  Variant message;
  Demand(SUCCEEDED(tremvik->get_bolRetMonitora(&refused)), "get bolRetMonitora");
  Demand(SUCCEEDED(tremvik->get_NroLinha(&line.raw())) && line.raw().vt == VT_I2, "NroLinha");
  Demand(SUCCEEDED(tremvik->get_Mensagem(&message.raw())) && message.raw().vt == VT_BSTR, "Mensagem");
  Demand(SUCCEEDED(point->Unadvise(cookie)), "Unadvise");
  diario.Call(L"Fim", std::int16_t{refused}, line.raw().iVal, std::string_view(AsText(message)));
}

}  // namespace

int main(int, char** arguments) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  {
    LateBound diario = LateBound::Create(L"TesteHost.Diario");
    std::ifstream list(arguments[1]);
    for (std::string line; std::getline(list, line);) {
      std::array<std::string, 4> story;
      std::size_t begin = 0;
      for (std::string& part : story) {
        const auto end = line.find('|', begin);
        part = line.substr(begin, end - begin);
        begin = end + 1;
      }
      diario.Call(L"Iniciar", std::string_view(story[3]), std::string_view(story[1]),
                  std::string_view(story[2]));
      Import(story[0], diario);
    }
    diario.Call(L"Encerrar");
  }
  CoUninitialize();
  std::cout << "DONE\n";
}
