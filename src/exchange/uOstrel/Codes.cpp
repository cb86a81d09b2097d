#include "uOstrel/Codes.h"

#include <limits>

#include "QuillonNumbers.h"
#include "uPlandaten/Basis.h"

namespace uOstrel {

namespace {

std::string WithNumber(const std::string& ACode, std::int64_t ANumber) {
  std::string Text = ACode + "-";
  QuillonNumbers::AppendInteger(Text, ANumber);
  return Text;
}

}  // namespace

/// Done for the first code: not every list has any.
void TCodes::Count() {
  if (!FIsCounted) {
    for (const TVELStammobjekt* Item : *FList) {
      ++FCounts[Item->FKuerzel];
    }
    FIsCounted = true;
  }
}

bool TCodes::IsTaken(const std::string& ACode) const {
  const auto Found = FCounts.find(ACode);
  return Found != FCounts.end() && Found->second > 0;
}

void TCodes::LetGo(const std::string& ACode) {
  const auto Found = FCounts.find(ACode);
  if (Found == FCounts.end() || --Found->second > 0) {
    return;
  }
  const auto Hyphen = ACode.rfind('-');
  const auto Numbers = Hyphen != std::string::npos ? FNumbers.find(ACode.substr(0, Hyphen)) : FNumbers.end();
  if (Numbers == FNumbers.end()) {
    return;
  }
  try {
    const std::int64_t Number = QuillonNumbers::ParseInteger(std::string_view(ACode).substr(Hyphen + 1), 1,
                                                             std::numeric_limits<std::int64_t>::max());
    if (Number < Numbers->second.Next && WithNumber(Numbers->first, Number) == ACode) {
      Numbers->second.Free.push(Number);
    }
  } catch (const EQuillonConvertError&) {
    return;  // ends in no number
  }
}

std::string TCodes::Numbered(const std::string& ACode) {
  TNumbers& Numbers = FNumbers[ACode];
  for (; !Numbers.Free.empty(); Numbers.Free.pop()) {
    if (std::string Code = WithNumber(ACode, Numbers.Free.top()); !IsTaken(Code)) {
      return Code;
    }
  }
  for (;; ++Numbers.Next) {
    if (std::string Code = WithNumber(ACode, Numbers.Next); !IsTaken(Code)) {
      return Code;
    }
  }
}

void TCodes::Assign(TVELStammobjekt& AnObject, bool AnIsNew, const std::string& ACode) {
  Count();
  if (!AnIsNew) {
    LetGo(AnObject.FKuerzel);
  }
  const std::string Code = IsTaken(ACode) ? Numbered(ACode) : ACode;
  ++FCounts[Code];
  AnObject.Set(AnObject.FKuerzel, Code);
}

}  // namespace uOstrel
