#include "uColors.h"

#include <algorithm>
#include <array>

#include "QuillonDataObjects/DataClass.h"
#include "uOptions/ProgramPaths.h"
#include "uOptions/SettingsFile.h"
#include "uOstrel/SystemColours.h"

namespace {

constexpr TColor AdditionalLesson = 0xFF6600;
constexpr int HeaderSteps = 50;
/// Beyond the release that a file of colours has: read for ever, or never.
constexpr std::string_view NoRelease = "65536";

constexpr int RgbMax = 255;
constexpr int HlsMax = 240;
constexpr int HueOfGrey = HlsMax * 2 / 3;

struct THls {
  int Hue;
  int Luminance;
  int Saturation;
};

using TRgb = std::array<int, 3>;

THls ToHls(const TRgb& ARgb) {
  const int Max = *std::max_element(ARgb.begin(), ARgb.end());
  const int Min = *std::min_element(ARgb.begin(), ARgb.end());
  const int Sum = Max + Min;
  const int Difference = Max - Min;
  const int Luminance = (Sum * HlsMax + RgbMax) / (2 * RgbMax);
  if (Difference == 0) {
    return {HueOfGrey, Luminance, 0};
  }
  const int Divisor = Luminance <= HlsMax / 2 ? Sum : 2 * RgbMax - Sum;
  const int Saturation = (Difference * HlsMax + Divisor / 2) / Divisor;
  const auto Delta = [&](std::size_t AIndex) {
    return ((Max - ARgb[AIndex]) * (HlsMax / 6) + Difference / 2) / Difference;
  };
  int Hue = 0;
  if (ARgb[0] == Max) {
    Hue = Delta(2) - Delta(1);
  } else if (ARgb[1] == Max) {
    Hue = HlsMax / 3 + Delta(0) - Delta(2);
  } else {
    Hue = 2 * HlsMax / 3 + Delta(1) - Delta(0);
  }
  return {(Hue + HlsMax) % HlsMax, Luminance, Saturation};
}

int PartOf(int ALow, int AHigh, int AHue) {
  constexpr int Sixth = HlsMax / 6;
  const int Hue = (AHue + HlsMax) % HlsMax;
  if (Hue < Sixth) {
    return ALow + ((AHigh - ALow) * Hue + Sixth / 2) / Sixth;
  }
  if (Hue < HlsMax / 2) {
    return AHigh;
  }
  if (Hue < HlsMax * 2 / 3) {
    return ALow + ((AHigh - ALow) * (HlsMax * 2 / 3 - Hue) + Sixth / 2) / Sixth;
  }
  return ALow;
}

TRgb ToRgb(const THls& AHls) {
  const int L = AHls.Luminance;
  const int S = AHls.Saturation;
  if (S == 0) {
    const int Grey = L * RgbMax / HlsMax;
    return {Grey, Grey, Grey};
  }
  constexpr int Half = HlsMax / 2;
  const int High = L <= Half ? (L * (HlsMax + S) + Half) / HlsMax : L + S - (L * S + Half) / HlsMax;
  const int Low = 2 * L - High;
  const auto Part = [&](int AHue) { return (PartOf(Low, High, AHue) * RgbMax + Half) / HlsMax; };
  return {Part(AHls.Hue + HlsMax / 3), Part(AHls.Hue), Part(AHls.Hue - HlsMax / 3)};
}

}  // namespace

const TQuillonDataClass& TVELColors::Class() {
  using T = TVELColors;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TQuillonDataStorage>("TVELColors")
      .LongInt<&T::FBackgroundColor>("backgroundColor", 0xF1DBCD)
      .LongInt<&T::FEventColor>("eventColor", 0xFFFFFF)
      .LongInt<&T::FSupervisionColor>("supervisionColor", 0x567821)
      .LongInt<&T::FSupervisionChangeColor>("supervisionChangeColor", 0x3C14DC)
      .LongInt<&T::FLessonChangeColor>("lessonChangeColor", 0x3C14DC)
      .Hook<&T::DeriveHeader>()
      .LongInt<&T::FHeaderBgColor>("headerBgColor").KeepsCurrent().AlwaysWritten()
      .LongInt<&T::FRoomChangeColor>("roomChangeColor", 0x578B2E)
      .LongInt<&T::FMessageColor>("messageColor", 0x80FFFF)
      .LongInt<&T::FAdditionalLessonColor>("tag_additionalLessonColor", AdditionalLesson).Until(NoRelease)
      .LongInt<&T::FAdditionalLessonColor>("additionalLessonColor", AdditionalLesson).Since(NoRelease).KeepsCurrent()
      .LongInt<&T::FAbsenceColor>("absenceColor", 0x3C14DC)
      .LongInt<&T::FTodayColor>("todayColor", 0x8FCCFF)
      .LongInt<&T::FTodayHeaderColor>("todayHeaderColor", 0xC26B01);
  // clang-format on
  return Class;
}

void TVELColors::InitProperties() {
  TQuillonDataStorage::InitProperties();
  QuillonDataObjects::ResetRows(*this);
  DeriveHeader();
}

void TVELColors::DeriveHeader() { FHeaderBgColor = uColors::Darker(FBackgroundColor, HeaderSteps); }

namespace uColors {

TColor Darker(TColor AColour, int ASteps) {
  constexpr unsigned Byte = 0xFF;
  const std::uint32_t Plain = uOstrel::ResolveColour(AColour);
  THls Hls = ToHls(
      {static_cast<int>(Plain & Byte), static_cast<int>(Plain >> 8 & Byte), static_cast<int>(Plain >> 16 & Byte)});
  Hls.Luminance = std::max(Hls.Luminance - ASteps, 0);
  const TRgb Rgb = ToRgb(Hls);
  return Rgb[0] | Rgb[1] << 8 | Rgb[2] << 16;
}

const TVELColors& Colors() { return uOptions::SettingsOf<TVELColors>(uOptions::ProgramPaths().FColorsFile); }

}  // namespace uColors
