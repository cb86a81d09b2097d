#include "TestPlatform.h"

#include <windows.h>

#include <string_view>

bool TestPlatform::SetLocalZone(const char* AName) {
  constexpr LONG EastOfUtc = -60;
  constexpr WORD March = 3;
  constexpr WORD October = 10;
  TIME_ZONE_INFORMATION Present{};
  ::GetTimeZoneInformation(&Present);
  const bool IsOfBerlin = Present.Bias == EastOfUtc && Present.DaylightDate.wMonth == March &&
                          Present.StandardDate.wMonth == October;
  return std::string_view(AName) == "Europe/Berlin" && IsOfBerlin;
}

const int TestPlatform::UnsupportedError = ERROR_NOT_SUPPORTED;
