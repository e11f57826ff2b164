#include "sql_process.h"

#include <array>
#include <vector>

#include "host/runtime_error.h"

namespace tremvik::com_test {
namespace {

std::vector<std::string> Split(const std::string& line) {
  std::vector<std::string> parts(1);
  for (const char c : line) {
    if (c == '\t') {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

// A pipe whose end `theirs` a child process inherits and whose other end it does not.
void MakePipe(HANDLE& reading, HANDLE& writing, HANDLE& ours) {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  CreatePipe(&reading, &writing, &inherited, 0);
  SetHandleInformation(ours, HANDLE_FLAG_INHERIT, 0);
}

}  // namespace

SqlProcess::SqlProcess(const std::wstring& program) {
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESTDHANDLES;
  MakePipe(startup.hStdInput, questions_, questions_);
  MakePipe(answers_, startup.hStdOutput, answers_);
  startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  std::wstring command = L"\"" + program + L"\"";
  PROCESS_INFORMATION made{};
  const BOOL started = CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW,
                                      nullptr, nullptr, &startup, &made);
  CloseHandle(startup.hStdInput);
  CloseHandle(startup.hStdOutput);
  if (!started) throw RuntimeError(erro::kComponenteNaoCriado);
  CloseHandle(made.hThread);
  process_ = made.hProcess;
}

SqlProcess::~SqlProcess() {
  CloseHandle(questions_);  // the end of its input ends it
  WaitForSingleObject(process_, INFINITE);
  CloseHandle(answers_);
  CloseHandle(process_);
}

std::string SqlProcess::ReadLine() {
  for (;;) {
    if (const auto end = read_.find('\n'); end != std::string::npos) {
      std::string line = read_.substr(0, end);
      read_.erase(0, end + 1);
      return line;
    }
    std::array<char, 4096> buffer{};
    DWORD got = 0;
    if (!ReadFile(answers_, buffer.data(), buffer.size(), &got, nullptr) || got == 0)
      throw RuntimeError(erro::kEntradaSaida);
    read_.append(buffer.data(), got);
  }
}

FirstRow SqlProcess::Run(const std::string& path, const std::string& sql) {
  const std::lock_guard lock(mutex_);
  const std::string question = path + "\t" + sql + "\n";
  DWORD written = 0;
  WriteFile(questions_, question.data(), static_cast<DWORD>(question.size()), &written, nullptr);
  const auto parts = Split(ReadLine());
  if (parts[0] == "erro") {
    const bool table = parts[1].find("no such table") != std::string::npos;
    throw RuntimeError(table ? erro::kTabelaNaoEncontrada : erro::kSintaxeDaConsulta, parts[1]);
  }
  FirstRow row;
  row.found = parts[0] == "linha";
  for (std::size_t i = 1; i + 1 < parts.size(); i += 2)
    row.texts[parts[i]] = parts[i + 1];
  return row;
}

}  // namespace tremvik::com_test
