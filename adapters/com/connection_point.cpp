#include "adapters/com/connection_point.h"

#include "adapters/com/enumerator.h"
#include "adapters/com/errors.h"
#include "adapters/com/tremvik_idl.h"
#include "adapters/com/windows_api.h"

namespace tremvik::com {
namespace {

constexpr DISPID kProgresso = 1;
constexpr DISPID kFechar = 2;

}  // namespace

// A sink that ends may ask to be disconnected, so each is out of the map before it is let go.
EventSource::~EventSource() {
  while (!sinks_.empty())
    sinks_.extract(sinks_.begin());
}

void EventSource::Progresso() { Fire(kProgresso); }
void EventSource::Fechar() { Fire(kFechar); }

// A sink may come, go or fail while the others are told: those connected at the start are told if they still
// are connected at their turn, and what they answer is theirs.
void EventSource::Fire(DISPID event) {
  const auto connected = sinks_;
  for (const auto& [cookie, sink] : connected) {
    if (!sinks_.contains(cookie)) continue;
    DISPPARAMS none{};
    Variant ignored;
    sink->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, &ignored.raw(), nullptr,
                 nullptr);
  }
}

HRESULT EventSource::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IConnectionPoint)) return E_NOINTERFACE;
  *object = static_cast<IConnectionPoint*>(this);
  AddRef();
  return S_OK;
}

HRESULT EventSource::GetConnectionInterface(IID* iid) {
  if (!iid) return E_POINTER;
  *iid = DIID___Tremvik;
  return S_OK;
}

HRESULT EventSource::GetConnectionPointContainer(IConnectionPointContainer** container) {
  if (!container) return E_POINTER;
  *container = &owner_;
  owner_.AddRef();
  return S_OK;
}

HRESULT EventSource::Advise(IUnknown* sink, DWORD* cookie) {
  if (!sink || !cookie) return E_POINTER;
  *cookie = 0;
  ComPtr<IDispatch> dispatch;
  if (FAILED(sink->QueryInterface(DIID___Tremvik, dispatch.ReceiveVoid())) &&
      FAILED(sink->QueryInterface(IID_IDispatch, dispatch.ReceiveVoid())))
    return CONNECT_E_CANNOTCONNECT;
  return Guarded([&] {
    sinks_.emplace(last_cookie_ + 1, std::move(dispatch));
    *cookie = ++last_cookie_;
  });
}

HRESULT EventSource::Unadvise(DWORD cookie) {
  // The sink's release may call back in here, so it is out of the map before.
  const auto gone = sinks_.extract(cookie);
  return gone.empty() ? CONNECT_E_NOCONNECTION : S_OK;
}

HRESULT EventSource::EnumConnections(IEnumConnections** connections) {
  if (!connections) return E_POINTER;
  *connections = nullptr;
  return Guarded([&] {
    std::vector<CONNECTDATA> items;
    for (const auto& [cookie, sink] : sinks_)
      items.push_back({sink.get(), cookie});
    *connections = new Enumerator<IEnumConnections, CONNECTDATA>(std::move(items));
  });
}

IEnumConnectionPoints* EnumerateOne(IConnectionPoint& point) {
  return new Enumerator<IEnumConnectionPoints, IConnectionPoint*>({&point});
}

}  // namespace tremvik::com
