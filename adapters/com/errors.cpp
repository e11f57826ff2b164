#include "adapters/com/errors.h"

#include <algorithm>
#include <array>
#include <string>

#include "adapters/com/owners.h"
#include "adapters/com/tremvik_idl.h"

namespace tremvik::com {
namespace {

// Run-time errors travel as statuses of the control facility, whose low word is the number.
constexpr unsigned kControlErrors = 0x800A0000U;
constexpr unsigned kFacility = 0xFFFF0000U;
constexpr int kMaxNumber = 0xFFFF;

constexpr int kMembroDesconhecido = 438;
constexpr int kErroDeAutomacao = 440;

HRESULT Status(int number) {
  if (number < 0) return number;  // a foreign status that became a number on its way in
  const int known = number > 0 && number <= kMaxNumber ? number : erro::kArgumentoInvalido;
  return static_cast<HRESULT>(kControlErrors | static_cast<unsigned>(known));
}

int Number(HRESULT status) {
  const auto bits = static_cast<unsigned>(status);
  return (bits & kFacility) == kControlErrors ? static_cast<int>(bits & ~kFacility) : status;
}

void SetErrorObject(const RuntimeError& error) {
  ComPtr<ICreateErrorInfo> creator;
  if (FAILED(CreateErrorInfo(creator.Receive()))) return;
  Bstr description(error.description());
  Bstr source(L"DllTremvik.Tremvik");
  creator->SetGUID(IID__Tremvik);
  creator->SetDescription(description.get());
  creator->SetSource(source.get());
  ComPtr<IErrorInfo> info;
  if (SUCCEEDED(creator->QueryInterface(IID_IErrorInfo, info.ReceiveVoid()))) SetErrorInfo(0, info.get());
}

struct SystemError {
  DWORD code;
  int number;
};
constexpr std::array kSystemErrors{
    SystemError{ERROR_FILE_NOT_FOUND, erro::kArquivoNaoEncontrado},
    SystemError{ERROR_PATH_NOT_FOUND, erro::kCaminhoNaoEncontrado},
    SystemError{ERROR_INVALID_DRIVE, erro::kCaminhoNaoEncontrado},
    SystemError{ERROR_BAD_NETPATH, erro::kCaminhoNaoEncontrado},
    SystemError{ERROR_BAD_NET_NAME, erro::kCaminhoNaoEncontrado},
    SystemError{ERROR_INVALID_NAME, erro::kNumeroDeArquivoInvalido},
    SystemError{ERROR_BAD_PATHNAME, erro::kNumeroDeArquivoInvalido},
    SystemError{ERROR_FILENAME_EXCED_RANGE, erro::kNumeroDeArquivoInvalido},
    SystemError{ERROR_ACCESS_DENIED, erro::kAcessoAoCaminho},
    SystemError{ERROR_WRITE_PROTECT, erro::kAcessoAoCaminho},
    SystemError{ERROR_SHARING_VIOLATION, erro::kPermissaoNegada},
    SystemError{ERROR_LOCK_VIOLATION, erro::kPermissaoNegada},
    SystemError{ERROR_ALREADY_EXISTS, erro::kArquivoJaExiste},
    SystemError{ERROR_FILE_EXISTS, erro::kArquivoJaExiste},
    SystemError{ERROR_TOO_MANY_OPEN_FILES, erro::kExcessoDeArquivos},
    SystemError{ERROR_DISK_FULL, erro::kDiscoCheio},
    SystemError{ERROR_HANDLE_DISK_FULL, erro::kDiscoCheio},
    SystemError{ERROR_NOT_ENOUGH_MEMORY, erro::kMemoriaInsuficiente},
    SystemError{ERROR_OUTOFMEMORY, erro::kMemoriaInsuficiente},
};

std::string AutomationError(std::wstring_view member) { return "Erro de automação em " + Utf8(member); }

RuntimeError ErrorOfException(EXCEPINFO& exception, std::wstring_view member) {
  if (exception.pfnDeferredFillIn) exception.pfnDeferredFillIn(&exception);
  int number = exception.wCode != 0 ? exception.wCode : Number(exception.scode);
  if (number == 0) number = kErroDeAutomacao;  // it told of an error, but not of which
  std::string description = Utf8(View(exception.bstrDescription));
  for (BSTR text : {exception.bstrDescription, exception.bstrSource, exception.bstrHelpFile})
    SysFreeString(text);
  if (description.empty()) description = AutomationError(member);
  return {number, description};
}

}  // namespace

HRESULT ReportCurrentError() noexcept {
  try {
    const RuntimeError error = CurrentRuntimeError();
    SetErrorObject(error);
    return Status(error.number());
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

RuntimeError ErrorOfCall(HRESULT status, EXCEPINFO& exception, std::wstring_view member) {
  switch (status) {
    case DISP_E_EXCEPTION:
      return ErrorOfException(exception, member);
    case DISP_E_TYPEMISMATCH:
      return RuntimeError(erro::kTiposIncompativeis);
    case DISP_E_OVERFLOW:
      return RuntimeError(erro::kEstouro);
    case E_OUTOFMEMORY:
      return RuntimeError(erro::kMemoriaInsuficiente);
    case DISP_E_UNKNOWNNAME:
    case DISP_E_MEMBERNOTFOUND:
      return {kMembroDesconhecido, "O objeto não aceita a propriedade ou o método " + Utf8(member)};
    default:
      break;
  }
  const int number = Number(status);
  return {number == E_FAIL ? kErroDeAutomacao : number, AutomationError(member)};
}

RuntimeError ErrorOfSystem(DWORD code, int otherwise) {
  const auto* const known = std::ranges::find(kSystemErrors, code, &SystemError::code);
  return RuntimeError(known == kSystemErrors.end() ? otherwise : known->number);
}

}  // namespace tremvik::com
