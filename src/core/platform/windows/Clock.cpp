#include "platform/Clock.h"

#include <windows.h>

#include <chrono>
#include <map>
#include <mutex>
#include <optional>

namespace {

constexpr std::int64_t TicksPerSecond = 10'000'000;
/// Seconds from 1601, where the system's count of time begins, to 1970.
constexpr std::int64_t SecondsTo1970 = 11'644'473'600;
/// The calendar repeats itself, days of the week included.
constexpr std::int64_t SecondsOf400Years = std::int64_t{146'097} * 86'400;
/// The last instant that the system's calendar fields can hold lies some years behind.
constexpr std::int64_t LastSecond = std::int64_t{29'000} * 31'556'952;

/// Seconds since 1601 in calendar fields and back.
SYSTEMTIME FieldsOf(std::int64_t ASeconds) {
  const std::int64_t Ticks = ASeconds * TicksPerSecond;
  const FILETIME Time = {static_cast<DWORD>(Ticks), static_cast<DWORD>(Ticks >> 32)};
  SYSTEMTIME Fields{};
  return ::FileTimeToSystemTime(&Time, &Fields) != 0 ? Fields : SYSTEMTIME{};
}

std::int64_t SecondsOf(const SYSTEMTIME& AFields) {
  FILETIME Time{};
  ::SystemTimeToFileTime(&AFields, &Time);
  return static_cast<std::int64_t>(std::uint64_t{Time.dwHighDateTime} << 32 | Time.dwLowDateTime) / TicksPerSecond;
}

/// The rules of the local time zone for a year; nothing where the system has none to tell.
const TIME_ZONE_INFORMATION* RulesOf(WORD AYear) {
  // For all threads: what is a thread's own is freed here ahead of the destructors that run at its end.
  static std::mutex Lock;
  static auto& Known = *new std::map<WORD, std::optional<TIME_ZONE_INFORMATION>>;
  const std::lock_guard<std::mutex> Guard(Lock);
  const auto [Place, IsNew] = Known.try_emplace(AYear);
  TIME_ZONE_INFORMATION Rules{};
  if (IsNew && ::GetTimeZoneInformationForYear(AYear, nullptr, &Rules) != 0) {
    Place->second = Rules;
  }
  return Place->second ? &*Place->second : nullptr;
}

SYSTEMTIME ToLocal(const SYSTEMTIME& AUtc, WORD AYear) {
  SYSTEMTIME Local{};
  // Without rules of their own, all years have those of today.
  const bool IsKnown = ::SystemTimeToTzSpecificLocalTime(RulesOf(AYear), &AUtc, &Local) != 0 ||
                       ::SystemTimeToTzSpecificLocalTime(nullptr, &AUtc, &Local) != 0;
  return IsKnown ? Local : AUtc;
}

class SystemClock final : public Platform::Clock {
 public:
  std::int64_t UtcMilliseconds() override {
    const auto Time = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(Time).count();
  }

  int OffsetAt(std::int64_t AnInstant) override {
    std::int64_t Seconds = AnInstant + SecondsTo1970;
    // A day on both sides is left for the offset.
    constexpr std::int64_t Margin = 86'400;
    if (Seconds < Margin || Seconds > LastSecond) {
      const std::int64_t InCycle = (Seconds - Margin) % SecondsOf400Years;
      Seconds = Margin + InCycle + (InCycle < 0 ? SecondsOf400Years : 0);
    }
    const SYSTEMTIME Utc = FieldsOf(Seconds);
    SYSTEMTIME Local = ToLocal(Utc, Utc.wYear);
    if (Local.wYear != Utc.wYear) {
      Local = ToLocal(Utc, Local.wYear);
    }
    return static_cast<int>(SecondsOf(Local) - SecondsOf(Utc));
  }
};

Platform::Clock& System() {
  static SystemClock Clock;
  return Clock;
}

}  // namespace

namespace Platform {

Clock& TheClock() { return ClockReplacement::Current(System); }

}  // namespace Platform
