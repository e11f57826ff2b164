// A whole process: apartments, cycles of use, unloading, registration without the administrator's right.
#include <malloc.h>

#include <atomic>
#include <thread>

#include "adapters/com/registry.h"
#include "com_support.h"

namespace tremvik::com_test {
namespace {

using Process = ComTest;

// Bytes in use on `heap`.
std::size_t InUse(HANDLE heap) {
  std::size_t bytes = 0;
  PROCESS_HEAP_ENTRY entry{};
  HeapLock(heap);
  while (HeapWalk(heap, &entry))
    if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
  HeapUnlock(heap);
  return bytes;
}

struct Usage {
  std::size_t system_heap = InUse(GetProcessHeap());
  std::size_t library_heap = InUse(reinterpret_cast<HANDLE>(_get_heap_handle()));
  DWORD handles = [] {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
  }();
  long host_objects = [] {
    const HMODULE host = GetModuleHandleW(L"TesteHost.dll");
    return reinterpret_cast<long(WINAPI*)()>(reinterpret_cast<void*>(GetProcAddress(host, "AliveObjects")))();
  }();
};

// Puts `replacement` in the place of `function` among what `module` imports.
void ReplaceImport(HMODULE module, std::string_view function, void* replacement) {
  auto* const base = reinterpret_cast<BYTE*>(module);
  const auto at = [base](auto* type, std::size_t offset) {
    return reinterpret_cast<decltype(type)>(reinterpret_cast<void*>(base + offset));
  };
  const auto* const dos = at(static_cast<IMAGE_DOS_HEADER*>(nullptr), 0);
  const auto* const nt = at(static_cast<IMAGE_NT_HEADERS*>(nullptr), static_cast<std::size_t>(dos->e_lfanew));
  const auto& directory = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  const auto* import = at(static_cast<IMAGE_IMPORT_DESCRIPTOR*>(nullptr), directory.VirtualAddress);
  for (; import->Name != 0; ++import) {
    const auto* name = at(static_cast<IMAGE_THUNK_DATA*>(nullptr), import->OriginalFirstThunk);
    auto* slot = at(static_cast<IMAGE_THUNK_DATA*>(nullptr), import->FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++slot) {
      if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
      const auto offset = static_cast<std::size_t>(name->u1.AddressOfData);
      if (function != at(static_cast<IMAGE_IMPORT_BY_NAME*>(nullptr), offset)->Name) continue;
      DWORD former = 0;
      VirtualProtect(slot, sizeof(*slot), PAGE_READWRITE, &former);
      slot->u1.Function = reinterpret_cast<std::uintptr_t>(replacement);
    }
  }
}

std::atomic<int> boxes{0};

int WINAPI AnsweredAtOnce(HWND, LPCWSTR, LPCWSTR, UINT) {
  ++boxes;
  return IDOK;
}

// A run up to the first fault: it makes the host's objects, renames files, tells events and shows a box.
TEST_F(Process, AThousandCyclesLeaveNothingBehind) {
  const std::string path = Sample("recusado-versao");
  const auto kept = Make();  // the library stays, and with it the box that needs no screen
  ReplaceImport(GetModuleHandleW(L"DllTremvik.dll"), "MessageBoxW", reinterpret_cast<void*>(&AnsweredAtOnce));
  const auto cycles = [&](int count) {
    for (int i = 0; i < count; ++i)
      ASSERT_EQ(Monitora(Make(), path), S_OK);
  };
  cycles(100);  // whatever is made once is made by then
  const Usage before;
  cycles(1000);
  const Usage after;
  constexpr std::size_t kSlack = 16 * 1024;  // 16 bytes a cycle
  EXPECT_LT(after.system_heap, before.system_heap + kSlack);
  EXPECT_LT(after.library_heap, before.library_heap + kSlack);
  EXPECT_LE(after.handles, before.handles + 3);
  EXPECT_EQ(after.host_objects, before.host_objects);
  EXPECT_EQ(boxes, 1100) << "every run came to its box";
}

TEST_F(Process, TwoApartmentsRunAtOnce) {
  const auto run = [](std::string_view sample, std::string_view expected, std::atomic<int>& right) {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    for (int i = 0; i < 25; ++i) {
      const auto tremvik = Make();
      Bstr path(Sample(sample));
      BSTR given = path.get();
      VARIANT_BOOL refused = VARIANT_FALSE;
      Variant line;
      const HRESULT status = tremvik->CompararTotais(&given, &refused);
      tremvik->get_NroLinha(&line.raw());
      if (status == S_OK && std::to_string(line.raw().iVal) + (refused ? " sim" : " nao") == expected)
        ++right;
    }
    CoUninitialize();
  };
  std::atomic<int> first{0};
  std::atomic<int> second{0};
  std::thread other([&] { run("recusado-segundo-mestre", "20 sim", second); });
  run("recusado-quantidades", "114 sim", first);
  other.join();
  EXPECT_EQ(first, 25);
  EXPECT_EQ(second, 25);
}

// The object stays in its apartment: a call from another one comes through the registered type library.
TEST_F(Process, AnotherApartmentCallsThroughTheTypeLibrary) {
  const auto tremvik = Make();
  ASSERT_EQ(tremvik->put_idxBanco(42), S_OK);
  ComPtr<IStream> stream;
  ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID__Tremvik, tremvik.get(), stream.Receive()), S_OK);
  short seen = 0;
  std::atomic<bool> done{false};
  std::thread other([&] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    {
      ComPtr<_Tremvik> proxy;
      EXPECT_EQ(CoGetInterfaceAndReleaseStream(stream.Detach(), IID__Tremvik, proxy.ReceiveVoid()), S_OK);
      EXPECT_NE(proxy.get(), tremvik.get());
      EXPECT_EQ(proxy ? proxy->get_idxBanco(&seen) : E_FAIL, S_OK);
    }
    CoUninitialize();
    done = true;
  });
  MSG message{};
  while (!done) {
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
      DispatchMessageW(&message);
    Sleep(1);
  }
  other.join();
  EXPECT_EQ(seen, 42);
}

// What DllRegisterServer does for somebody who may not write for the machine.
TEST_F(Process, WithoutTheMachinesRightTheUserAloneIsRegistered) {
  const auto kept = Make();
  const HMODULE library = GetModuleHandleW(L"DllTremvik.dll");
  const auto entry = [library](const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(library, name));
  };
  const auto enter = reinterpret_cast<HRESULT(WINAPI*)()>(entry("DllRegisterServer"));
  const auto install = reinterpret_cast<HRESULT(WINAPI*)(BOOL, LPCWSTR)>(entry("DllInstall"));
  const std::wstring prog_id = LR"(Software\Classes\DllTremvik.Tremvik)";
  com::RegistryKey key;
  ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, prog_id.c_str(), 0, KEY_READ | WRITE_DAC, key.Receive()), 0);
  SECURITY_DESCRIPTOR everybody{};
  SECURITY_DESCRIPTOR nobody{};
  ACL empty{};
  InitializeAcl(&empty, sizeof(empty), ACL_REVISION);
  InitializeSecurityDescriptor(&everybody, SECURITY_DESCRIPTOR_REVISION);
  SetSecurityDescriptorDacl(&everybody, TRUE, nullptr, FALSE);
  InitializeSecurityDescriptor(&nobody, SECURITY_DESCRIPTOR_REVISION);
  SetSecurityDescriptorDacl(&nobody, TRUE, &empty, FALSE);
  ASSERT_EQ(RegSetKeySecurity(key.get(), DACL_SECURITY_INFORMATION, &nobody), 0);
  const HRESULT registered = enter();
  EXPECT_EQ(RegSetKeySecurity(key.get(), DACL_SECURITY_INFORMATION, &everybody), 0);
  EXPECT_EQ(registered, S_OK);
  EXPECT_TRUE(com::ReadText(HKEY_CURRENT_USER, prog_id + L"\\CLSID", L"")) << "registered for the user";
  EXPECT_EQ(install(FALSE, L"user"), S_OK);
  EXPECT_FALSE(com::ReadText(HKEY_CURRENT_USER, prog_id + L"\\CLSID", L""));
}

TEST_F(Process, TheLibraryUnloads) {
  {
    const auto tremvik = Make();
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_NE(GetModuleHandleW(L"DllTremvik.dll"), nullptr) << "in use";
  }
  CoFreeUnusedLibrariesEx(0, 0);
  CoFreeUnusedLibrariesEx(0, 0);
  EXPECT_EQ(GetModuleHandleW(L"DllTremvik.dll"), nullptr);
}

}  // namespace
}  // namespace tremvik::com_test
