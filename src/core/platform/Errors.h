#pragma once

#include <string>

namespace Platform {

/// The system's own text for one of its error codes, in UTF-8.
std::string ErrorText(int AnErrorCode);

/// The system's codes for what this library refuses itself.
extern const int InvalidArgumentError;
extern const int NotPermittedError;
extern const int TooManyError;      ///< more was given back than was taken
extern const int AlreadyDoneError;  ///< what can be done once only was done before

}  // namespace Platform
