#include "uOstrel/Values.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "QuillonDateTime.h"
#include "QuillonNumbers.h"
#include "uDataObjects/DataObjects.h"
#include "uOstrel/SystemColours.h"

namespace {

constexpr std::string_view HexDigits = "0123456789abcdef";

/// The namespace for ISO OIDs of RFC 4122, appendix C.
constexpr TGUID OidNamespace{
    {0x6b, 0xa7, 0xb8, 0x12, 0x9d, 0xad, 0x11, 0xd1, 0x80, 0xb4, 0x00, 0xc0, 0x4f, 0xd4, 0x30, 0xc8}};

/// Tells the identifier of an additional lesson's substitute from that of its gap.
constexpr std::string_view ExtraLessonSuffix = "-1f3a9c52-7b10-4e6d-9a2e-5c0d8f42b771";

/// How many identifiers of a list are searched one by one.
constexpr std::size_t FewIdentifiers = 32;

void AppendMember(std::string& ATarget, std::string_view AName, double ATimepoint) {
  ATarget.append(",\"").append(AName).append("\":\"");
  uOstrel::AppendTimepoint(ATarget, ATimepoint);
  ATarget.push_back('"');
}

}  // namespace

namespace uOstrel {

void AppendDate(std::string& ATarget, double AValue) {
  if (std::trunc(AValue) != 0) {
    QuillonDateTime::AppendDate(ATarget, AValue);
  }
}

void AppendTimepoint(std::string& ATarget, double AValue) {
  if (AValue > 0) {
    QuillonDateTime::AppendDateTimeWithOffset(ATarget, AValue);
  }
}

void AppendColour(std::string& ATarget, TColor AValue) {
  if (AValue == NoColour) {
    return;
  }
  const std::uint32_t Plain = ResolveColour(AValue);
  ATarget.push_back('#');
  for (int Shift = 0; Shift < 24; Shift += 8) {
    const std::uint32_t Byte = (Plain >> Shift) & 0xFF;
    ATarget.push_back(HexDigits[Byte >> 4]);
    ATarget.push_back(HexDigits[Byte & 0xF]);
  }
}

void AppendIdentifier(std::string& ATarget, const TGUID& AGuid) {
  if (!AGuid.IsZero()) {
    QuillonGuid::AppendPlain(ATarget, AGuid);
  }
}

void AppendJsonString(std::string& ATarget, std::string_view AText) {
  ATarget.push_back('"');
  for (const char C : AText) {
    const auto Byte = static_cast<unsigned char>(C);
    switch (C) {
      case '"':
      case '\\':
        ATarget.push_back('\\');
        ATarget.push_back(C);
        break;
      case '\b':
        ATarget.append("\\b");
        break;
      case '\f':
        ATarget.append("\\f");
        break;
      case '\n':
        ATarget.append("\\n");
        break;
      case '\r':
        ATarget.append("\\r");
        break;
      case '\t':
        ATarget.append("\\t");
        break;
      default:
        if (Byte < ' ') {
          ATarget.append({'\\', 'u', '0', '0', HexDigits[Byte >> 4], HexDigits[Byte & 0xF]});
        } else {
          ATarget.push_back(C);
        }
    }
  }
  ATarget.push_back('"');
}

TGUID PairGuid(const TVELDataObject& A, const TVELDataObject& B) {
  std::string Name;
  QuillonGuid::AppendBraced(Name, A.ID());
  QuillonGuid::AppendBraced(Name, B.ID());
  return QuillonGuid::FromName(OidNamespace, Name);
}

TGUID GapGuid(const TVELDataObject& AChange) {
  std::string Name;
  QuillonGuid::AppendBraced(Name, AChange.ID());
  return QuillonGuid::FromName(OidNamespace, Name);
}

TGUID ExtraLessonGuid(const TVELDataObject& AChange) {
  std::string Name;
  QuillonGuid::AppendBraced(Name, AChange.ID());
  return QuillonGuid::FromName(OidNamespace, Name.append(ExtraLessonSuffix));
}

std::string_view DayName(TVELDay ADay) {
  static constexpr std::array<std::string_view, 8> Names = {"",         "Monday", "Tuesday",  "Wednesday",
                                                            "Thursday", "Friday", "Saturday", "Sunday"};
  return ADay < Names.size() ? Names[ADay] : std::string_view();
}

bool TIdList::IsNew(const TGUID& AGuid) {
  if (FAll.empty()) {
    if (std::find(FFirst.begin(), FFirst.end(), AGuid) != FFirst.end()) {
      return false;
    }
    if (FFirst.size() < FewIdentifiers) {
      FFirst.push_back(AGuid);
      return true;
    }
    for (const TGUID& Guid : FFirst) {
      FAll.insert(QuillonGuid::Plain(Guid));
    }
  }
  return FAll.insert(QuillonGuid::Plain(AGuid)).second;
}

void TIdList::Add(const TGUID& AGuid) {
  if (AGuid.IsZero() || (FDoubles == TDoubles::Dropped && !IsNew(AGuid))) {
    return;
  }
  FText.append(FText.empty() ? "[\"" : ",\"");
  QuillonGuid::AppendPlain(FText, AGuid);
  FText.push_back('"');
}

const std::string& TIdList::Text() {
  if (!FText.empty() && !FIsClosed) {
    FText.push_back(']');
    FIsClosed = true;
  }
  return FText;
}

void AppendOccurrence(std::string& ATarget, double AStart, double AFinish) {
  ATarget.append(R"({"_type":"OneTime","Operation":"Include")");
  AppendMember(ATarget, "StartTimepoint", AStart);
  AppendMember(ATarget, "EndTimepoint", AFinish);
  ATarget.push_back('}');
}

std::string OneTime(double AStart, double AFinish) {
  std::string Text = "[";
  AppendOccurrence(Text, AStart, AFinish);
  return Text + "]";
}

}  // namespace uOstrel
