// A whole process: boxes that fail, cycles of use, apartments, registration without the right, unloading.
#include <malloc.h>

#include <atomic>
#include <barrier>
#include <fstream>
#include <future>
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

template <class Function>
Function Entry(const wchar_t* library, const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(library), name)));
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
  long host_objects = Entry<long(WINAPI*)()>(L"TestHost.dll", "AliveObjects")();
};

// A thread without a screen: no box can be made on it.
class WithoutScreen : public Process {
 public:
  static inline int refused = 0;
  WithoutScreen() = default;
  WithoutScreen(const WithoutScreen&) = delete;
  WithoutScreen& operator=(const WithoutScreen&) = delete;

 protected:
  ~WithoutScreen() override { UnhookWindowsHookEx(hook_); }

  // Makes, runs and releases `count` objects, and expects that nothing of them stays.
  static void ExpectNothingStays(std::string_view sample, int warm_up, int count) {
    const auto cycles = [&sample](int times) {
      for (int i = 0; i < times; ++i)
        ASSERT_EQ(Monitora(Make(), Sample(sample)), S_OK);
    };
    refused = 0;
    cycles(warm_up);  // whatever is made once is made by then
    const Usage before;
    cycles(count);
    const Usage after;
    constexpr std::size_t kSlack = 16384;
    EXPECT_LT(after.system_heap, before.system_heap + kSlack) << sample;
    EXPECT_LT(after.library_heap, before.library_heap + kSlack) << sample;
    EXPECT_LE(after.handles, before.handles + 3) << sample;
    EXPECT_EQ(after.host_objects, before.host_objects) << sample;
    EXPECT_EQ(refused, warm_up + count) << "every run came to its box";
  }

 private:
  static LRESULT CALLBACK Refuse(int code, WPARAM window, LPARAM made) {
    if (code != HCBT_CREATEWND) return CallNextHookEx(nullptr, code, window, made);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a hook is handed the pointer as a number
    const auto* const create = reinterpret_cast<CBT_CREATEWNDW*>(made)->lpcs;
    const bool box = reinterpret_cast<std::uintptr_t>(create->lpszClass) == 32770;  // the class of dialogs
    refused += box ? 1 : 0;
    return box ? 1 : 0;
  }
  HHOOK hook_ = SetWindowsHookExW(WH_CBT, Refuse, nullptr, GetCurrentThreadId());
};

TEST_F(WithoutScreen, AFaultIsToldAllTheSame) {
  for (const auto& [sample, message] : std::vector<std::pair<std::string_view, std::string_view>>{
           {"recusado-versao", "Versão"}, {"pergunta", "Deseja continuar Sim/Não ? "}}) {
    const auto tremvik = Make();
    Sink sink;
    sink.Hear(tremvik);
    EXPECT_EQ(Monitora(tremvik, Sample(sample)), S_OK);
    VARIANT_BOOL failed = VARIANT_FALSE;
    tremvik->get_bolRetMonitora(&failed);
    EXPECT_EQ(failed, VARIANT_TRUE) << sample;
    EXPECT_NE(Mensagem(tremvik).find(message), std::string::npos) << Mensagem(tremvik);
    EXPECT_EQ(sink.events.back(), sample == "pergunta" ? 1 : 2) << sample;
  }
}

TEST_F(WithoutScreen, AThousandCyclesLeaveNothingBehind) {
  const auto kept = Make();
  ExpectNothingStays("recusado-versao", 100, 1000);  // files, events, the host's database, a box
  ExpectNothingStays("aceito", 10, 100);             // and the engine, the look-ups, all that is written
}

// The journal of one whole import in an apartment of its own; `at_event` is called at each event.
std::vector<std::string> Imported(std::string_view sample, const std::function<void()>& at_event) {
  const std::string file = Folder() + "\\" + std::string(sample) + ".journal";
  DeleteFileW(com::Wide(file).c_str());
  {
    Apartment apartment;
    apartment.Begin(file);
    const auto tremvik = Make();
    Sink sink([&](DISPID) { at_event(); });
    const DWORD cookie = sink.Hear(tremvik);
    EXPECT_EQ(Monitora(tremvik, Sample(sample)), S_OK);
    EXPECT_EQ(EventsOf(tremvik)->Unadvise(cookie), S_OK);
  }
  std::ifstream journal(file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(journal, line);)
    lines.push_back(line);
  return lines;
}

// The second import begins when the first one has its temporary database, which is one file for both. From
// there on they go in step: at each of its next events an import waits until the other one is at as many.
TEST_F(Process, TwoApartmentsImportAtOnce) {
  constexpr int kWithDatabase = 3;
  constexpr int kMeetings = 20;
  const auto accepted = Imported("aceito", [] {});
  const auto asking = Imported("pergunta", [] {});
  ASSERT_NE(accepted, asking);
  for (int round = 0; round < 5; ++round) {
    std::barrier<> meeting(2);
    const auto import = [&meeting](std::string_view sample, const std::function<void()>& at_database) {
      int events = 0;
      return Imported(sample, [&] {
        if (++events == kWithDatabase) at_database();
        if (events >= kWithDatabase && events < kWithDatabase + kMeetings) meeting.arrive_and_wait();
      });
    };
    std::future<std::vector<std::string>> other;
    EXPECT_EQ(import("aceito", [&] { other = std::async(std::launch::async, import, "pergunta", [] {}); }),
              accepted);
    EXPECT_EQ(other.get(), asking);
  }
}

// The path of the temporary database is the library's: a new object knows it from the run before it.
TEST_F(Process, ANewObjectKnowsTheTemporaryDatabase) {
  const std::string file = Folder() + "\\depois.journal";
  DeleteFileW(com::Wide(file).c_str());
  EXPECT_EQ(Monitora(Make(), Sample("aceito")), S_OK);
  apartment_.Begin(file);
  EXPECT_EQ(Make()->ErroSair(), S_OK);
  std::ifstream journal(file);
  const std::string told{std::istreambuf_iterator<char>(journal), {}};
  const auto end = told.find("\"Encerrar\"");
  ASSERT_NE(end, std::string::npos) << told;
  EXPECT_NE(told.find("BDTempPrf.fix", end), std::string::npos) << told;
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
  const auto enter = Entry<HRESULT(WINAPI*)()>(L"DllTremvik.dll", "DllRegisterServer");
  const auto install = Entry<HRESULT(WINAPI*)(BOOL, LPCWSTR)>(L"DllTremvik.dll", "DllInstall");
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
  const auto loaded = [] {
    CoFreeUnusedLibrariesEx(0, 0);
    CoFreeUnusedLibrariesEx(0, 0);
    return GetModuleHandleW(L"DllTremvik.dll") != nullptr;
  };
  {
    ComPtr<IEnumConnections> connections;
    {
      const auto tremvik = Make();
      EXPECT_TRUE(loaded()) << "in use";
      ASSERT_EQ(EventsOf(tremvik)->EnumConnections(connections.Receive()), S_OK);
      EXPECT_EQ(Cast<IConnectionPointContainer>(tremvik)->EnumConnectionPoints(nullptr), E_POINTER);
    }
    EXPECT_TRUE(loaded()) << "its enumerator is in use";
  }
  EXPECT_FALSE(loaded()) << "an enumerator that nobody took does not keep it";
}

}  // namespace
}  // namespace tremvik::com_test
