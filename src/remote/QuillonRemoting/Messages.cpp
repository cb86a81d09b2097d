#include "QuillonRemoting/Messages.h"

#include <utility>

void TQuillonRemoteResponse::WriteProperties(TQuillonObjectWriter& AWriter) const {
  AWriter.WriteWord(FErrorCode);
  if (HasError()) {
    AWriter.WriteString(FErrorMessage);
  }
  FParamsQueue.WriteProperties(AWriter);
}

void TQuillonRemoteResponse::ReadProperties(TQuillonObjectReader& AReader) {
  const std::uint16_t ErrorCode = AReader.ReadWord();
  std::string ErrorMessage = ErrorCode == 0 ? std::string() : AReader.ReadString();
  FParamsQueue.ReadProperties(AReader);
  FErrorCode = ErrorCode;
  FErrorMessage = std::move(ErrorMessage);
}

void TQuillonRemoteResponse::Clear() {
  FErrorCode = 0;
  FErrorMessage.clear();
  FParamsQueue.Clear();
}
