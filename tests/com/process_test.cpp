// A whole process: apartments, cycles of use, unloading, registration without the administrator's right.
#include <malloc.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <fstream>
#include <functional>
#include <future>
#include <mutex>
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
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the run-time gives its heap as a number
  std::size_t library_heap = InUse(reinterpret_cast<HANDLE>(_get_heap_handle()));
  DWORD handles = [] {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
  }();
  long host_objects = [] {
    auto* const host = GetModuleHandleW(L"TesteHost.dll");
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

int boxes = 0;
std::vector<UINT> styles;

int WINAPI AnsweredAtOnce(HWND, LPCWSTR, LPCWSTR, UINT style) {
  ++boxes;
  styles.push_back(style & (MB_TYPEMASK | MB_ICONMASK | MB_DEFMASK));
  return (style & MB_TYPEMASK) == MB_YESNO ? IDYES : IDOK;
}

// A library whose boxes need no screen, for as long as it stays loaded.
class WithoutScreen : public Process {
 protected:
  WithoutScreen() {
    styles.clear();
    ReplaceImport(GetModuleHandleW(L"DllTremvik.dll"), "MessageBoxW",
                  reinterpret_cast<void*>(&AnsweredAtOnce));
  }
  ComPtr<_Tremvik> kept_ = Make();
};

// What the library asks of the system; what then stands on the screen has no icon in every run-time.
TEST_F(WithoutScreen, BoxesHaveTheirStyles) {
  Monitora(Make(), Sample("recusado-vazio"));
  Monitora(Make(), Sample("recusado-versao"));
  Monitora(Make(), Sample("pergunta"));
  EXPECT_EQ(styles,
            (std::vector<UINT>{MB_OK | MB_ICONHAND, MB_OK | MB_ICONINFORMATION,
                               MB_YESNO | MB_ICONINFORMATION | MB_DEFBUTTON2, MB_OK | MB_ICONINFORMATION}));
}

// Makes, runs and releases `count` objects, and expects that nothing of them stays.
void ExpectNothingStays(std::string_view sample, int warm_up, int count) {
  const std::string path = Sample(sample);
  const auto cycles = [&path](int times) {
    for (int i = 0; i < times; ++i)
      ASSERT_EQ(Monitora(Make(), path), S_OK);
    styles = {};
  };
  boxes = 0;
  cycles(warm_up);  // whatever is made once is made by then
  const Usage before;
  cycles(count);
  const Usage after;
  constexpr std::size_t kSlack = 16384;
  EXPECT_LT(after.system_heap, before.system_heap + kSlack) << sample;
  EXPECT_LT(after.library_heap, before.library_heap + kSlack) << sample;
  EXPECT_LE(after.handles, before.handles + 3) << sample;
  EXPECT_EQ(after.host_objects, before.host_objects) << sample;
  EXPECT_EQ(boxes, warm_up + count) << "every run came to its box";
}

TEST_F(WithoutScreen, AThousandCyclesLeaveNothingBehind) {
  ExpectNothingStays("recusado-versao", 100, 1000);  // files, events, the host's database, a box
  ExpectNothingStays("aceito", 10, 100);             // and the engine, the look-ups, all that is written
}

// The journal of one whole import in an apartment of its own; `at_event` is called at each event.
std::vector<std::string> Imported(std::string_view sample, const std::function<void()>& at_event) {
  const std::string file = Folder() + "\\" + std::string(sample) + ".diario";
  DeleteFileW(com::Wide(file).c_str());
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  {
    LateBound diario = LateBound::Create(L"TesteHost.Diario");
    diario.Call(L"Iniciar", std::string_view(file), std::string_view("6"), std::string_view("1"));
    const auto tremvik = Make();
    ComPtr<IConnectionPoint> point;
    As<IConnectionPointContainer>(tremvik)->FindConnectionPoint(DIID___Tremvik, point.Receive());
    Sink sink(at_event);
    DWORD cookie = 0;
    EXPECT_EQ(point->Advise(&sink, &cookie), S_OK);
    EXPECT_EQ(Monitora(tremvik, Sample(sample)), S_OK);
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
  }
  CoUninitialize();
  std::ifstream journal(file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(journal, line);)
    lines.push_back(line);
  return lines;
}

// Where two threads wait for each other, again and again; not for ever, lest a failure of one hang the other.
class Meeting {
 public:
  void Wait() {
    std::unique_lock lock(mutex_);
    const int mine = ++arrivals_;
    arrived_.notify_all();
    if (mine % 2 == 0) {
      ++pairs_;
    } else {
      arrived_.wait_for(lock, std::chrono::seconds(10), [&] { return arrivals_ > mine; });
    }
  }
  int Pairs() {
    const std::lock_guard lock(mutex_);
    return pairs_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable arrived_;
  int arrivals_ = 0;
  int pairs_ = 0;
};

// The second import begins when the first one has its temporary database, which is one file for both. From
// there on they go in step: at each of its next events an import waits until the other one is at as many.
TEST_F(Process, TwoApartmentsImportAtOnce) {
  constexpr int kWithDatabase = 3;
  constexpr int kMeetings = 20;
  const auto accepted = Imported("aceito", [] {});
  const auto asking = Imported("pergunta", [] {});
  ASSERT_NE(accepted, asking);
  for (int round = 0; round < 5; ++round) {
    Meeting meeting;
    const auto import = [&meeting](std::string_view sample, const std::function<void()>& at_database) {
      int events = 0;
      return Imported(sample, [&] {
        ++events;
        if (events == kWithDatabase) at_database();
        if (events >= kWithDatabase && events < kWithDatabase + kMeetings) meeting.Wait();
      });
    };
    std::future<std::vector<std::string>> other;
    const auto start_other = [&] { other = std::async(std::launch::async, import, "pergunta", [] {}); };
    EXPECT_EQ(import("aceito", start_other), accepted);
    EXPECT_EQ(other.get(), asking);
    EXPECT_EQ(meeting.Pairs(), kMeetings);
  }
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
  auto* const library = GetModuleHandleW(L"DllTremvik.dll");
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
  {
    ComPtr<IEnumConnections> connections;
    {
      ComPtr<IConnectionPoint> point;
      As<IConnectionPointContainer>(Make())->FindConnectionPoint(DIID___Tremvik, point.Receive());
      ASSERT_EQ(point->EnumConnections(connections.Receive()), S_OK);
    }
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_NE(GetModuleHandleW(L"DllTremvik.dll"), nullptr) << "its enumerator is in use";
  }
  CoFreeUnusedLibrariesEx(0, 0);
  CoFreeUnusedLibrariesEx(0, 0);
  EXPECT_EQ(GetModuleHandleW(L"DllTremvik.dll"), nullptr);
}

}  // namespace
}  // namespace tremvik::com_test
