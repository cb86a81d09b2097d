#include "TestPlatform.h"

#include <windows.h>

#include <cstdint>
#include <string_view>

bool TestPlatform::SetLocalZone(const char* AName) {
  constexpr LONG EastOfUtc = -60;
  constexpr WORD March = 3;
  constexpr WORD October = 10;
  TIME_ZONE_INFORMATION Present{};
  ::GetTimeZoneInformation(&Present);
  const bool IsOfBerlin =
      Present.Bias == EastOfUtc && Present.DaylightDate.wMonth == March && Present.StandardDate.wMonth == October;
  return std::string_view(AName) == "Europe/Berlin" && IsOfBerlin;
}

double TestPlatform::ProcessorTime() {
  constexpr double TicksPerSecond = 1e7;
  FILETIME Created{};
  FILETIME Ended{};
  FILETIME Kernel{};
  FILETIME User{};
  ::GetProcessTimes(::GetCurrentProcess(), &Created, &Ended, &Kernel, &User);
  const auto Ticks = [](const FILETIME& ATime) {
    return std::uint64_t{ATime.dwHighDateTime} << 32 | ATime.dwLowDateTime;
  };
  return static_cast<double>(Ticks(Kernel) + Ticks(User)) / TicksPerSecond;
}

const double TestPlatform::ProcessorTimeStep = 0.016;

const int TestPlatform::UnsupportedError = ERROR_NOT_SUPPORTED;
