// The automation object: the published members over the component.
#pragma once

#include <atomic>

#include "adapters/com/brunsel_components.h"
#include "adapters/com/connection_point.h"
#include "adapters/com/desktop.h"
#include "adapters/com/module.h"
#include "adapters/com/tables_engine.h"
#include "adapters/com/tremvik_idl.h"
#include "adapters/com/win_files.h"
#include "adapters/com/windows_api.h"
#include "component/tremvik.h"

namespace tremvik::com {

/// One instance of the class `Tremvik`, made with one reference.
class TremvikObject final : public _Tremvik,
                            public IConnectionPointContainer,
                            public IProvideClassInfo2,
                            public ISupportErrorInfo {
 public:
  TremvikObject();
  TremvikObject(const TremvikObject&) = delete;
  TremvikObject& operator=(const TremvikObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** type) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT* wrong_argument) override;

  HRESULT STDMETHODCALLTYPE get_bolRetMonitora(VARIANT_BOOL* result) override;
  HRESULT STDMETHODCALLTYPE put_bolRetMonitora(VARIANT_BOOL value) override;
  HRESULT STDMETHODCALLTYPE get_idxBanco(short* result) override;
  HRESULT STDMETHODCALLTYPE put_idxBanco(short value) override;
  HRESULT STDMETHODCALLTYPE get_database_name(BSTR* result) override;
  HRESULT STDMETHODCALLTYPE put_database_name(BSTR value) override;
  HRESULT STDMETHODCALLTYPE CompararTotais(BSTR* TextLine, VARIANT_BOOL* result) override;
  HRESULT STDMETHODCALLTYPE FomataValor(BSTR* a, VARIANT* result) override;
  HRESULT STDMETHODCALLTYPE TiraZeros(BSTR* a, BSTR* result) override;
  HRESULT STDMETHODCALLTYPE LefRigNumChr(BSTR* a, VARIANT_BOOL* b, VARIANT_BOOL* c,
                                         VARIANT_BOOL* result) override;
  HRESULT STDMETHODCALLTYPE get_linha(VARIANT* result) override;
  HRESULT STDMETHODCALLTYPE get_Mensagem(VARIANT* result) override;
  HRESULT STDMETHODCALLTYPE ErroSair() override;
  HRESULT STDMETHODCALLTYPE Monitora(BSTR* NArq) override;
  HRESULT STDMETHODCALLTYPE get_NroLinha(VARIANT* result) override;
  HRESULT STDMETHODCALLTYPE Validar_Cod_CredAcumulado(VARIANT_BOOL* result) override;

  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override;
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** type) override;
  HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* guid) override;

  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override;

 private:
  // Ends a run, however it ends.
  class Ending {
   public:
    explicit Ending(TremvikObject& object) : object_(object) {}
    ~Ending() {
      object_.files_.LetGo();
      object_.engine_.EndRun();
      object_.running_ = false;
    }
    Ending(const Ending&) = delete;
    Ending& operator=(const Ending&) = delete;

   private:
    TremvikObject& object_;
  };

  ~TremvikObject() = default;
  // Runs `body`, work that raises events and shows boxes. A handler that lets the user in may come back here
  // before it is over, and is refused; other objects are free.
  template <class Body>
  HRESULT Run(Body&& body);

  Use use_;
  std::atomic<ULONG> references_{1};
  bool running_ = false;
  WinFiles files_;
  DesktopScreen screen_{files_};
  EventSource events_{*this};
  DebuggerLog log_;
  DesktopApplication application_;
  TablesEngine engine_;
  BrunselComponents components_{application_.AppPath()};
  ComPtr<ITypeInfo> type_;  ///< of the default interface
  Tremvik component_;       ///< last: it reaches all the others
};

}  // namespace tremvik::com
