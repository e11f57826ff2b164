// What the tests of the library share: one apartment, the pretended host's journal, the sample files.
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
ComPtr<Interface> As(const ComPtr<Other>& object) {
  ComPtr<Interface> other;
  EXPECT_EQ(object->QueryInterface(__uuidof(Interface), other.ReceiveVoid()), S_OK);
  return other;
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
  return com::AsText(message);
}

/// A listener of the events that does what `then` says at each, and fails. Lives on the stack.
class Sink final : public IDispatch {
 public:
  explicit Sink(std::function<void()> then = {}) : then_(std::move(then)) {}
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
    if (then_) then_();
    return E_FAIL;
  }

  long references = 1;
  std::vector<DISPID> events;
  std::function<void()> when_let_go;  ///< called once, when the source has no reference to it any more

 private:
  std::function<void()> then_;
};

/// A test with an apartment of its own and a journal that answers message boxes.
class ComTest : public testing::Test {
 public:
  ComTest(const ComTest&) = delete;
  ComTest& operator=(const ComTest&) = delete;

 protected:
  ComTest() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    diario_ = LateBound::Create(L"TesteHost.Diario");
    Begin(std::string_view());
  }
  ~ComTest() override {
    diario_->Call(L"Encerrar");
    diario_.reset();
    CoUninitialize();
  }

  /// Starts the journal `file` and the answering of boxes with Yes.
  void Begin(std::string_view file) {
    diario_->Call(L"Iniciar", file, std::string_view("6"), std::string_view("1"));
  }

  std::optional<LateBound> diario_;
};

}  // namespace tremvik::com_test
