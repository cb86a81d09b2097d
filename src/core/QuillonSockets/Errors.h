#pragma once

#include <cstdint>
#include <string>

#include "QuillonTypes.h"

/// A failed call of the socket layer; the message is the layer's English text for the code.
class EQuillonSocketError : public EQuillonException {
 public:
  /// The last error of this thread.
  EQuillonSocketError();
  explicit EQuillonSocketError(std::uint32_t AnErrorCode);

  std::uint32_t ErrorCode() const { return FErrorCode; }
  const std::string& ErrorMsg() const { return FErrorMsg; }

 private:
  std::uint32_t FErrorCode;
  std::string FErrorMsg;
};
