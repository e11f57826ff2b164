// A whole process: apartments, cycles of use, unloading, registration without the administrator's right.
#include <malloc.h>

#include <atomic>
#include <thread>

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

TEST_F(Process, AThousandCyclesLeaveNothingBehind) {
  const std::string path = Sample("recusado-versao");
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
