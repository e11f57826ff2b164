#include "adapters/com/registration.h"

#include <array>
#include <string>
#include <string_view>

#include "adapters/com/desktop.h"
#include "adapters/com/errors.h"
#include "adapters/com/registry.h"
#include "adapters/com/tremvik_idl.h"

namespace tremvik::com {
namespace {

#ifdef _WIN64
constexpr std::wstring_view kPlatform = L"win64";
#else
constexpr std::wstring_view kPlatform = L"win32";
#endif
constexpr std::wstring_view kProgId = L"DllTremvik.Tremvik";
constexpr std::wstring_view kClassName = L"Tremvik";
constexpr std::wstring_view kLibraryName = L"Tremvik 1.0";
constexpr std::wstring_view kVersion = L"1.0";
// The runtime's own marshalers, which work from the type library.
constexpr std::wstring_view kDualMarshaler = L"{00020424-0000-0000-C000-000000000046}";
constexpr std::wstring_view kDispatchMarshaler = L"{00020420-0000-0000-C000-000000000046}";

std::wstring Braced(REFGUID guid) {
  std::array<wchar_t, 39> text{};
  StringFromGUID2(guid, text.data(), static_cast<int>(text.size()));
  return text.data();
}

std::wstring Joined(std::wstring_view first, std::wstring_view second) {
  return std::wstring(first) + L"\\" + std::wstring(second);
}

// The keys of one registration; the paths start below `root`.
struct Keys {
  HKEY root;
  std::wstring prog_id = Classes(kProgId);
  std::wstring clsid = Classes(L"CLSID\\" + Braced(CLSID_Tremvik));
  std::wstring library = Classes(L"TypeLib\\" + Braced(LIBID_DllTremvik));
  std::wstring version = Joined(library, kVersion);
  std::wstring language = Joined(version, L"0");
  std::wstring platform = Joined(language, kPlatform);
  std::wstring dual = Classes(L"Interface\\" + Braced(IID__Tremvik));
  std::wstring events = Classes(L"Interface\\" + Braced(DIID___Tremvik));

  static std::wstring Classes(std::wstring_view path) { return Joined(L"Software\\Classes", path); }
};

// Writes default and named values and remembers the first failure.
class Writer {
 public:
  explicit Writer(HKEY root) : root_(root) {}
  void Set(const std::wstring& path, std::wstring_view text, const std::wstring& name = {}) {
    if (status_ != ERROR_SUCCESS) return;
    status_ = WriteText(root_, path, name, std::wstring(text));
    if (status_ == ERROR_SUCCESS) wrote_ = true;
  }
  [[nodiscard]] LSTATUS status() const { return status_; }
  [[nodiscard]] bool wrote() const { return wrote_; }

 private:
  HKEY root_;
  LSTATUS status_ = ERROR_SUCCESS;
  bool wrote_ = false;
};

void WriteClass(Writer& writer, const Keys& keys, const std::wstring& file) {
  writer.Set(keys.prog_id, kClassName);
  writer.Set(Joined(keys.prog_id, L"CLSID"), Braced(CLSID_Tremvik));
  writer.Set(keys.clsid, kClassName);
  writer.Set(Joined(keys.clsid, L"ProgID"), kProgId);
  writer.Set(Joined(keys.clsid, L"InprocServer32"), file);
  writer.Set(Joined(keys.clsid, L"InprocServer32"), L"Apartment", L"ThreadingModel");
  writer.Set(Joined(keys.clsid, L"TypeLib"), Braced(LIBID_DllTremvik));
  writer.Set(Joined(keys.clsid, L"Version"), kVersion);
  writer.Set(Joined(keys.clsid, L"Programmable"), L"");
}

void WriteInterface(Writer& writer, const std::wstring& path, std::wstring_view name,
                    std::wstring_view marshaler) {
  writer.Set(path, name);
  writer.Set(Joined(path, L"ProxyStubClsid32"), marshaler);
  writer.Set(Joined(path, L"TypeLib"), Braced(LIBID_DllTremvik));
  writer.Set(Joined(path, L"TypeLib"), kVersion, L"Version");
}

void WriteLibrary(Writer& writer, const Keys& keys, const std::wstring& file) {
  writer.Set(keys.version, kLibraryName);
  writer.Set(keys.platform, file);
  writer.Set(Joined(keys.version, L"FLAGS"), L"0");
  writer.Set(Joined(keys.version, L"HELPDIR"), file.substr(0, file.find_last_of(L'\\')));
  WriteInterface(writer, keys.dual, L"_Tremvik", kDualMarshaler);
  WriteInterface(writer, keys.events, L"__Tremvik", kDispatchMarshaler);
}

// Deletes keys with all below them and remembers the first failure.
class Remover {
 public:
  explicit Remover(HKEY root) : root_(root) {}
  void Remove(const std::wstring& path, REGSAM view = 0) {
    const LSTATUS removed = DeleteTree(root_, path, view);
    if (status_ == ERROR_SUCCESS) status_ = removed;
  }
  [[nodiscard]] LSTATUS status() const { return status_; }

 private:
  HKEY root_;
  LSTATUS status_ = ERROR_SUCCESS;
};

// What both architectures have in common; it goes with the last of them.
void RemoveShared(Remover& remover, const Keys& keys) {
  remover.Remove(keys.prog_id);
  remover.Remove(keys.library);
  for (const REGSAM view : {REGSAM{KEY_WOW64_64KEY}, REGSAM{KEY_WOW64_32KEY}}) {
    remover.Remove(keys.dual, view);
    remover.Remove(keys.events, view);
  }
}

// The user's part often holds nothing else, and then the registration made these keys.
void RemoveEmpty(HKEY root) {
  for (const wchar_t* shared : {L"CLSID", L"TypeLib", L"Interface"})
    DeleteIfEmpty(root, Keys::Classes(shared));
}

HKEY Root(Scope scope) { return scope == Scope::kMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER; }

HRESULT Result(LSTATUS status) {
  return status == ERROR_SUCCESS ? S_OK : HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

}  // namespace

HRESULT Register(Scope scope) {
  LSTATUS status = ERROR_SUCCESS;
  const HRESULT guarded = Guarded([&] {
    const Keys keys{Root(scope)};
    const std::wstring file = LibraryPath();
    Writer writer(keys.root);
    WriteClass(writer, keys, file);
    WriteLibrary(writer, keys, file);
    status = writer.status();
    // What an earlier registration wrote stays where this one could write nothing at all.
    if (status != ERROR_SUCCESS && writer.wrote()) static_cast<void>(Unregister(scope));
  });
  if (FAILED(guarded)) return guarded;
  return Result(status);
}

HRESULT Unregister(Scope scope) {
  LSTATUS status = ERROR_SUCCESS;
  const HRESULT guarded = Guarded([&] {
    const Keys keys{Root(scope)};
    Remover remover(keys.root);
    remover.Remove(keys.clsid);
    remover.Remove(keys.platform);
    if (HasNoSubkeys(keys.root, keys.language)) RemoveShared(remover, keys);
    if (scope == Scope::kUser) RemoveEmpty(keys.root);
    status = remover.status();
  });
  return FAILED(guarded) ? guarded : Result(status);
}

}  // namespace tremvik::com
