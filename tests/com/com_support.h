// What the clients of the library share: one apartment, the pretended host's journal, a listener, the
// samples.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "adapters/com/desktop.h"
#include "adapters/com/late_bound.h"
#include "adapters/com/tremvik_idl.h"

namespace tremvik::com_test {

using com::As;
using com::Bstr;
using com::ComPtr;
using com::LateBound;
using com::Variant;

/// The status that run-time error `number` leaves a member with.
constexpr HRESULT Status(unsigned number) { return static_cast<HRESULT>(0x800A0000U | number); }

inline ComPtr<_Tremvik> Make() {
  ComPtr<_Tremvik> made;
  EXPECT_EQ(CoCreateInstance(CLSID_Tremvik, nullptr, CLSCTX_INPROC_SERVER, IID__Tremvik, made.ReceiveVoid()),
            S_OK);
  return made;
}

template <class Interface, class Other>
ComPtr<Interface> Cast(const ComPtr<Other>& object) {
  ComPtr<Interface> other;
  EXPECT_EQ(object->QueryInterface(__uuidof(Interface), other.ReceiveVoid()), S_OK);
  return other;
}

inline ComPtr<IConnectionPoint> EventsOf(const ComPtr<_Tremvik>& tremvik) {
  ComPtr<IConnectionPoint> point;
  EXPECT_EQ(Cast<IConnectionPointContainer>(tremvik)->FindConnectionPoint(DIID___Tremvik, point.Receive()),
            S_OK);
  return point;
}

/// The same object for callers by name.
inline LateBound Late(const ComPtr<_Tremvik>& tremvik) {
  return LateBound(ComPtr<IDispatch>(tremvik.get()), L"Tremvik");
}

/// The folder of the test program, where the library lies too, without a separator at its end.
inline std::string Folder() {
  const std::wstring program = com::LibraryPath();
  return com::Utf8(program.substr(0, program.find_last_of(L'\\')));
}

/// A sample file; run.py copies those in use to the program's folder.
inline std::string Sample(std::string_view name) { return Folder() + "\\" + std::string(name) + ".txt"; }

/// Runs `Monitora` on `file`; what the status of the call is.
inline HRESULT Monitora(const ComPtr<_Tremvik>& tremvik, std::string_view file) {
  Bstr path(file);
  BSTR given = path.get();
  return tremvik->Monitora(&given);
}

inline std::string Mensagem(const ComPtr<_Tremvik>& tremvik) {
  Variant message;
  EXPECT_EQ(tremvik->get_Mensagem(&message.raw()), S_OK);
  return As<std::string>(message);
}

/// The words of the error that a failed call left, once.
inline std::string ErrorWords() {
  ComPtr<IErrorInfo> info;
  Bstr words;
  if (GetErrorInfo(0, info.Receive()) == S_OK) info->GetDescription(words.Receive());
  return com::Utf8(com::View(words.get()));
}

/// A listener of the events that does what `then` says at each, and fails. Lives on the stack.
class Sink final : public IDispatch {
 public:
  explicit Sink(std::function<void(DISPID)> then = {}) : then_(std::move(then)) {}
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch);
    *object = known ? static_cast<IDispatch*>(this) : nullptr;
    references += known ? 1 : 0;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
  ULONG STDMETHODCALLTYPE Release() override {
    if (--references == 1 && when_let_go) std::exchange(when_let_go, {})();
    return static_cast<ULONG>(references);
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    events.push_back(event);
    if (then_) then_(event);
    return E_FAIL;
  }
  /// Listens to `tremvik` from here on.
  DWORD Hear(const ComPtr<_Tremvik>& tremvik) {
    DWORD cookie = 0;
    EXPECT_EQ(EventsOf(tremvik)->Advise(this, &cookie), S_OK);
    return cookie;
  }

  long references = 1;
  std::vector<DISPID> events;
  std::function<void()> when_let_go;  ///< called once, when the source has no reference to it any more

 private:
  std::function<void(DISPID)> then_;
};

/// An apartment with a journal that answers message boxes.
class Apartment {
 public:
  Apartment() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    journal_ = LateBound::Create(L"TestHost.Journal");
  }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
  ~Apartment() {
    journal_.reset();
    CoUninitialize();
  }

  /// Starts the journal `file`, the answering of boxes with `answer` and the host's fault `fault`.
  void Begin(std::string_view file = {}, std::string_view answer = "6", std::string_view fault = {}) {
    journal_->Call(L"Begin", file, answer, fault);
  }
  LateBound& journal() { return *journal_; }

 private:
  std::optional<LateBound> journal_;
};

/// A test in an apartment of its own.
class ComTest : public testing::Test {
 public:
  ComTest(const ComTest&) = delete;
  ComTest& operator=(const ComTest&) = delete;

 protected:
  ComTest() { apartment_.Begin(); }
  ~ComTest() override { apartment_.journal().Call(L"Stop"); }

  Apartment apartment_;
};

}  // namespace tremvik::com_test
