#include "platform/Errors.h"

#include <cerrno>
#include <system_error>

namespace Platform {

std::string ErrorText(int AnErrorCode) { return std::system_category().message(AnErrorCode); }

const int InvalidArgumentError = EINVAL;
const int NotPermittedError = EPERM;
const int TooManyError = EOVERFLOW;
const int AlreadyDoneError = EALREADY;

}  // namespace Platform
