#include "QuillonTypes.h"

#include <functional>
#include <utility>

#include "platform/Errors.h"

namespace {

std::string SystemText(int AnErrorCode, std::string_view ASubject) {
  std::string Text = Platform::ErrorText(AnErrorCode);
  if (!ASubject.empty()) {
    Text.append(": ").append(ASubject);
  }
  return Text;
}

}  // namespace

EQuillonWin32Error::EQuillonWin32Error(int AnErrorCode, std::string_view ASubject)
    : EQuillonWin32Error(AnErrorCode, TText{SystemText(AnErrorCode, ASubject)}) {}

EQuillonWin32Error::EQuillonWin32Error(int AnErrorCode, TText AText)
    : EQuillonException("Systemfehler (Fehlercode: " + std::to_string(AnErrorCode) + ").\r\n" + AText.Text),
      FErrorCode(AnErrorCode),
      FErrorMsg(std::move(AText.Text)) {}

void TQuillonObject::Assign(const TQuillonObject& /*AnObject*/) {
  throw EQuillonAssignError("Inhaltszweisung wird nicht unterstützt.");
}

int TQuillonObject::Compare(const TQuillonObject& /*AnObject*/) const { return 0; }

std::int32_t TQuillonObject::GetHashCode() const {
  return static_cast<std::int32_t>(std::hash<const TQuillonObject*>()(this));
}
