#include "adapters/com/tremvik_object.h"

#include "adapters/com/dispatch.h"
#include "adapters/com/errors.h"
#include "adapters/com/module.h"
#include "adapters/com/text.h"

namespace tremvik::com {
namespace {

constexpr ULONG kEnding = 0x40000000;  // references of an object that is being destroyed
constexpr std::string_view kStillRunning =
    "Este objeto ainda está executando Monitora, CompararTotais ou ErroSair; espere que termine ou use outro";

// The border of one member: what came in and what goes out.
std::string In(BSTR value) { return Utf8(View(value)); }
std::string In(const BSTR* value) { return value ? In(*value) : std::string(); }
bool In(VARIANT_BOOL value) { return value != VARIANT_FALSE; }
bool In(const VARIANT_BOOL* value) { return value && In(*value); }

// Runs `make` and puts what it makes into `result`. The place is looked at first: what is made for nobody
// would never be released.
template <class Type, class Make>
HRESULT Put(Type* result, Make&& make) {
  if (!result) return E_POINTER;
  return Guarded([&] { *result = make(); });
}
VARIANT_BOOL Truth(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }
BSTR Text(std::string_view value) { return Bstr(value).Detach(); }

// Hands out one more reference to the object that `found` is an interface of.
template <class Interface>
HRESULT Give(Interface* found, void** object) {
  *object = found;
  found->AddRef();
  return S_OK;
}

}  // namespace

TremvikObject::TremvikObject()
    : type_(TypeOf(IID__Tremvik)),
      component_({screen_, events_, log_, files_, application_, engine_, components_}) {}

ULONG TremvikObject::Release() {
  const ULONG left = --references_;
  if (left != 0) return left;
  // What the object lets go of may still take and give back a reference; that must not end it twice.
  references_ = kEnding;
  delete this;
  return 0;
}

HRESULT TremvikObject::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch) || IsEqualIID(iid, IID__Tremvik))
    return Give(static_cast<_Tremvik*>(this), object);
  if (IsEqualIID(iid, IID_IConnectionPointContainer))
    return Give(static_cast<IConnectionPointContainer*>(this), object);
  if (IsEqualIID(iid, IID_IProvideClassInfo) || IsEqualIID(iid, IID_IProvideClassInfo2))
    return Give(static_cast<IProvideClassInfo2*>(this), object);
  if (IsEqualIID(iid, IID_ISupportErrorInfo)) return Give(static_cast<ISupportErrorInfo*>(this), object);
  return E_NOINTERFACE;
}

HRESULT TremvikObject::GetTypeInfoCount(UINT* count) {
  if (!count) return E_POINTER;
  *count = 1;
  return S_OK;
}

HRESULT TremvikObject::GetTypeInfo(UINT index, LCID, ITypeInfo** type) {
  if (!type) return E_POINTER;
  *type = index == 0 ? ComPtr(type_).Detach() : nullptr;
  return *type ? S_OK : DISP_E_BADINDEX;
}

HRESULT TremvikObject::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (!IsEqualIID(iid, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
  return type_->GetIDsOfNames(names, count, ids);
}

HRESULT TremvikObject::Invoke(DISPID member, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                              VARIANT* result, EXCEPINFO* exception, UINT* wrong_argument) {
  if (!IsEqualIID(iid, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
  const ComPtr<IUnknown> kept(static_cast<_Tremvik*>(this));  // the last reference may go in an event
  HRESULT status = S_OK;
  const HRESULT guarded = Guarded([&] {
    status = InvokeMember(*type_.get(), static_cast<_Tremvik*>(this),
                          {member, locale, flags, parameters, result, exception, wrong_argument});
  });
  return FAILED(guarded) ? guarded : status;
}

template <class Body>
HRESULT TremvikObject::Run(Body&& body) {
  const ComPtr<IUnknown> kept(static_cast<_Tremvik*>(this));  // a sink may release the host's last reference
  return Guarded([&] {
    if (running_) throw RuntimeError(erro::kArgumentoInvalido, kStillRunning);
    running_ = true;
    const Ending ending{*this};
    body();
  });
}

HRESULT TremvikObject::get_bolRetMonitora(VARIANT_BOOL* result) {
  return Put(result, [&] { return Truth(component_.bolRetMonitora()); });
}
HRESULT TremvikObject::put_bolRetMonitora(VARIANT_BOOL value) {
  return Guarded([&] { component_.set_bolRetMonitora(In(value)); });
}
HRESULT TremvikObject::get_idxBanco(short* result) {
  return Put(result, [&] { return component_.idxBanco(); });
}
HRESULT TremvikObject::put_idxBanco(short value) {
  return Guarded([&] { component_.set_idxBanco(value); });
}
HRESULT TremvikObject::get_database_name(BSTR* result) {
  return Put(result, [&] { return Text(component_.database_name()); });
}
HRESULT TremvikObject::put_database_name(BSTR value) {
  return Guarded([&] { component_.set_database_name(In(value)); });
}
HRESULT TremvikObject::CompararTotais(BSTR* TextLine, VARIANT_BOOL* result) {
  if (!result) return E_POINTER;
  return Run([&] { *result = Truth(component_.CompararTotais(In(TextLine))); });
}
HRESULT TremvikObject::FomataValor(BSTR* a, VARIANT* result) {
  return Put(result, [&] { return Variant(component_.FomataValor(In(a))).Detach(); });
}
HRESULT TremvikObject::TiraZeros(BSTR* a, BSTR* result) {
  return Put(result, [&] { return Text(component_.TiraZeros(In(a))); });
}
HRESULT TremvikObject::LefRigNumChr(BSTR* a, VARIANT_BOOL* b, VARIANT_BOOL* c, VARIANT_BOOL* result) {
  return Put(result, [&] { return Truth(component_.LefRigNumChr(In(a), In(b), In(c))); });
}
HRESULT TremvikObject::get_linha(VARIANT* result) {
  return Put(result, [&] { return Variant(component_.linha()).Detach(); });
}
HRESULT TremvikObject::get_Mensagem(VARIANT* result) {
  return Put(result, [&] { return Variant(component_.Mensagem()).Detach(); });
}
HRESULT TremvikObject::ErroSair() {
  return Run([&] { component_.ErroSair(); });
}
HRESULT TremvikObject::Monitora(BSTR* NArq) {
  return Run([&] { component_.Monitora(In(NArq)); });
}
HRESULT TremvikObject::get_NroLinha(VARIANT* result) {
  return Put(result, [&] { return Variant(component_.NroLinha()).Detach(); });
}
HRESULT TremvikObject::Validar_Cod_CredAcumulado(VARIANT_BOOL* result) {
  return Put(result, [&] { return Truth(component_.Validar_Cod_CredAcumulado()); });
}

HRESULT TremvikObject::EnumConnectionPoints(IEnumConnectionPoints** points) {
  return Put(points, [&] { return EnumerateOne(events_); });
}

HRESULT TremvikObject::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
  if (!point) return E_POINTER;
  *point = nullptr;
  if (!IsEqualIID(iid, DIID___Tremvik)) return CONNECT_E_NOCONNECTION;
  return events_.QueryInterface(IID_IConnectionPoint, reinterpret_cast<void**>(point));
}

HRESULT TremvikObject::GetClassInfo(ITypeInfo** type) {
  return Put(type, [&] { return TypeOf(CLSID_Tremvik).Detach(); });
}

HRESULT TremvikObject::GetGUID(DWORD kind, GUID* guid) {
  if (!guid) return E_POINTER;
  if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
  *guid = DIID___Tremvik;
  return S_OK;
}

HRESULT TremvikObject::InterfaceSupportsErrorInfo(REFIID iid) {
  return IsEqualIID(iid, IID__Tremvik) || IsEqualIID(iid, IID_IDispatch) ? S_OK : S_FALSE;
}

}  // namespace tremvik::com
