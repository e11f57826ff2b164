// What the tests of the library share: one apartment, the pretended host's journal, the sample files.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

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

/// A test with an apartment of its own and a journal that answers message boxes.
class ComTest : public testing::Test {
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
