#include "platform/Errors.h"

#include "platform/windows/WindowsCalls.h"

namespace Platform {

std::string ErrorText(int AnErrorCode) {
  wchar_t* Found = nullptr;
  // The system stores the address of the text that it makes where it expects the text.
  const DWORD Length =
      ::FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                       nullptr, static_cast<DWORD>(AnErrorCode), 0, reinterpret_cast<wchar_t*>(&Found), 0, nullptr);
  const std::unique_ptr<wchar_t, WindowsCalls::TLocalFree> Owner(Found);
  std::string Text = Length > 0 ? WindowsCalls::FromWide({Found, Length}) : "Unknown error";
  Text.resize(Text.find_last_not_of("\r\n .") + 1);
  return Text;
}

const int InvalidArgumentError = ERROR_INVALID_PARAMETER;
const int NotPermittedError = ERROR_NOT_OWNER;
const int TooManyError = ERROR_TOO_MANY_POSTS;
const int AlreadyDoneError = ERROR_ALREADY_INITIALIZED;

}  // namespace Platform
