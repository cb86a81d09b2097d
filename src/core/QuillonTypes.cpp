#include "QuillonTypes.h"

#include <system_error>

namespace {

std::string SystemText(int AnErrorCode, std::string_view ASubject) {
  std::string Text = std::system_category().message(AnErrorCode);
  if (!ASubject.empty()) {
    Text.append(": ").append(ASubject);
  }
  return Text;
}

}  // namespace

EQuillonWin32Error::EQuillonWin32Error(int AnErrorCode, std::string_view ASubject)
    : EQuillonException("Systemfehler (Fehlercode: " + std::to_string(AnErrorCode) + ").\r\n" +
                        SystemText(AnErrorCode, ASubject)),
      FErrorCode(AnErrorCode),
      FErrorMsg(SystemText(AnErrorCode, ASubject)) {}

void TQuillonObject::Assign(const TQuillonObject& /*AnObject*/) {
  throw EQuillonAssignError("Inhaltszweisung wird nicht unterstützt.");
}

int TQuillonObject::Compare(const TQuillonObject& /*AnObject*/) const { return 0; }
