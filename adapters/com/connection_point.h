// The source of the component's events for hosts that subscribe to them.
#pragma once

#include <map>
#include <vector>

#include "adapters/com/owners.h"
#include "adapters/com/windows_api.h"
#include "host/events.h"

namespace tremvik::com {

/// The connection point of `__Tremvik`. Lives inside the object that owns it and counts its references there.
class EventSource final : public IConnectionPoint, public Events {
 public:
  explicit EventSource(IConnectionPointContainer& owner) : owner_(owner) {}
  EventSource(const EventSource&) = delete;
  EventSource& operator=(const EventSource&) = delete;
  ~EventSource() override;

  void Progresso() override;
  void Fechar() override;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return owner_.AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return owner_.Release(); }

  HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override;
  HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** container) override;
  HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
  HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override;

 private:
  void Fire(DISPID event);

  IConnectionPointContainer& owner_;
  std::map<DWORD, ComPtr<IDispatch>> sinks_;
  DWORD last_cookie_ = 0;
};

/// An enumerator over the one connection point `point`.
[[nodiscard]] IEnumConnectionPoints* EnumerateOne(IConnectionPoint& point);

}  // namespace tremvik::com
