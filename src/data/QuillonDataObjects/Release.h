#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <string_view>

/// Release of a data format: up to four numbers parted by dots, compared from the left.
/// A missing or unreadable number counts 0, so an empty text is older than every other release.
class TQuillonRelease {
 public:
  constexpr TQuillonRelease() = default;
  constexpr TQuillonRelease(std::string_view AText) {
    for (std::int64_t& Number : FNumbers) {
      const std::size_t Dot = AText.find('.');
      Number = ToNumber(AText.substr(0, Dot));
      if (Dot == std::string_view::npos) {
        break;
      }
      AText.remove_prefix(Dot + 1);
    }
  }
  constexpr TQuillonRelease(const char* AText) : TQuillonRelease(std::string_view(AText)) {}

  friend constexpr auto operator<=>(const TQuillonRelease&, const TQuillonRelease&) = default;

 private:
  static constexpr std::int64_t ToNumber(std::string_view AText) {
    constexpr std::int64_t Limit = INT32_MAX;
    std::int64_t Number = 0;
    for (char C : AText) {
      if (C < '0' || C > '9' || Number > Limit) {
        return 0;
      }
      Number = Number * 10 + (C - '0');
    }
    return Number > Limit ? 0 : Number;
  }

  std::array<std::int64_t, 4> FNumbers{};
};
