#include "adapters/com/win_files.h"

#include <algorithm>
#include <limits>
#include <string>

#include "adapters/com/errors.h"
#include "adapters/com/text.h"
#include "adapters/com/windows_api.h"

namespace tremvik::com {
namespace {

constexpr int kLastFileNumber = 511;
constexpr std::size_t kLongestPlainPath = 240;

// Long paths need the prefix that turns the name's interpretation off, and so a full path.
std::wstring SystemPath(std::string_view utf8) {
  std::wstring path = Wide(utf8);
  if (path.find(L'\0') != std::wstring::npos) throw RuntimeError(erro::kNumeroDeArquivoInvalido);
  if (path.size() < kLongestPlainPath || path.starts_with(LR"(\\?\)")) return path;
  std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
  full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
  if (full.empty()) throw ErrorOfSystem(GetLastError());
  return full.starts_with(LR"(\\)") ? LR"(\\?\UNC)" + full.substr(1) : LR"(\\?\)" + full;
}

bool IsFile(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool IsReadOnly(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

// The run-time error of `code`, which the change of the file `path` ended in, with what the user can mend.
RuntimeError ErrorOfChange(DWORD code, std::string_view path) {
  const RuntimeError plain = ErrorOfSystem(code);
  const std::string folder(path.substr(0, path.find_last_of('\\')));
  std::string words = plain.description() + ": '" + std::string(path) + "'";
  if (plain.number() == erro::kPermissaoNegada) {
    words += " está em uso por outro programa";
  } else if (IsReadOnly(SystemPath(path))) {
    words += " é somente leitura";
  } else if (!MayWrite(folder)) {
    words += "; " + Unwritable(folder);
  }
  return {plain.number(), words};
}

}  // namespace

bool MayWrite(std::string_view folder) {
  const std::wstring name =
      SystemPath(std::string(folder) + "\\tremvik-" + std::to_string(GetCurrentProcessId()) + ".tmp");
  auto* const file = CreateFileW(name.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                                 FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  if (file == INVALID_HANDLE_VALUE) return GetLastError() == ERROR_FILE_EXISTS;
  CloseHandle(file);
  return true;
}

std::string Unwritable(std::string_view folder) {
  return "a pasta '" + std::string(folder) + "' não permite gravar";
}

std::optional<std::string> BeginningOf(std::string_view path, std::size_t most) {
  auto* const file = CreateFileW(SystemPath(path).c_str(), GENERIC_READ,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                 OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
  if (file == INVALID_HANDLE_VALUE) return std::nullopt;
  std::string bytes;
  std::vector<char> piece(std::size_t{64} * 1024);
  const auto wanted = [&] { return static_cast<DWORD>(std::min(piece.size(), most - bytes.size())); };
  DWORD got = 0;
  bool read = true;
  while ((read = ReadFile(file, piece.data(), wanted(), &got, nullptr) != FALSE) && got > 0)
    bytes.append(piece.data(), got);
  CloseHandle(file);
  return read ? std::optional(bytes) : std::nullopt;
}

WinFiles::~WinFiles() {
  LetGo();
  for (const auto& [number, file] : open_)
    CloseHandle(file.handle);
}

bool WinFiles::Exists(std::string_view path) { return IsFile(SystemPath(path)); }

void WinFiles::Delete(std::string_view path) {
  if (!DeleteFileW(SystemPath(path).c_str())) throw ErrorOfChange(GetLastError(), path);
}

void WinFiles::Rename(std::string_view from, std::string_view to) {
  if (MoveFileExW(SystemPath(from).c_str(), SystemPath(to).c_str(), 0)) return;
  const DWORD code = GetLastError();
  const bool target = code == ERROR_ALREADY_EXISTS || code == ERROR_FILE_EXISTS;
  throw ErrorOfChange(code, target ? to : from);
}

int WinFiles::FreeFile() {
  int number = 1;
  while (open_.contains(number))
    ++number;
  if (number > kLastFileNumber) throw RuntimeError(erro::kExcessoDeArquivos);
  return number;
}

void WinFiles::Open(int number, std::string_view path) {
  if (number < 1 || number > kLastFileNumber) throw RuntimeError(erro::kNumeroDeArquivoInvalido);
  if (open_.contains(number)) throw RuntimeError(erro::kArquivoJaAberto);
  std::wstring name = SystemPath(path);
  const auto kept = std::ranges::find(kept_, name, &File::path);
  if (kept != kept_.end()) {
    if (!SetFilePointerEx(kept->handle, {}, nullptr, FILE_BEGIN)) throw ErrorOfSystem(GetLastError());
    open_.emplace(number, std::move(*kept));
    kept_.erase(kept);
    return;
  }
  // Others may read the file meanwhile, but a file that is still being written must not be imported.
  auto* const handle = CreateFileW(name.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                   FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
  if (handle == INVALID_HANDLE_VALUE) throw ErrorOfSystem(GetLastError());
  open_.emplace(number, File{std::move(name), handle});
}

std::size_t WinFiles::Read(int number, char* buffer, std::size_t count) {
  const auto file = open_.find(number);
  if (file == open_.end()) throw RuntimeError(erro::kNumeroDeArquivoInvalido);
  const auto most = static_cast<DWORD>(std::min<std::size_t>(count, std::numeric_limits<DWORD>::max()));
  DWORD got = 0;
  if (!ReadFile(file->second.handle, buffer, most, &got, nullptr)) throw ErrorOfSystem(GetLastError());
  return got;
}

void WinFiles::Close(int number) {
  const auto file = open_.find(number);
  if (file == open_.end()) return;
  kept_.push_back(std::move(file->second));
  open_.erase(file);
}

void WinFiles::LetGo() {
  for (const File& file : kept_)
    CloseHandle(file.handle);
  kept_.clear();
}

}  // namespace tremvik::com
