#pragma once

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>
#include <system_error>

/// Reads numbers and words from the front of a text that it does not own. What is not there is not passed over.
class TQuillonTextScanner {
 public:
  explicit TQuillonTextScanner(std::string_view AText) : FLeft(AText) {}

  std::string_view Left() const { return FLeft; }
  bool IsAtEnd() const { return FLeft.empty(); }
  void Skip(std::size_t ACount) { FLeft.remove_prefix(std::min(ACount, FLeft.size())); }
  void PassBlanks() { Skip(FLeft.find_first_not_of(' ')); }

  bool TryPass(std::string_view AWord) {
    const bool IsThere = FLeft.starts_with(AWord);
    Skip(IsThere ? AWord.size() : 0);
    return IsThere;
  }
  bool TryPass(char AChar) { return TryPass(std::string_view(&AChar, 1)); }

  /// How many digits come next.
  std::size_t CountDigits() const {
    const auto IsDigit = [](char C) { return C >= '0' && C <= '9'; };
    return static_cast<std::size_t>(std::find_if_not(FLeft.begin(), FLeft.end(), IsDigit) - FLeft.begin());
  }

  /// The number that the next digits are, however many; nothing also for one that is too large.
  std::optional<std::uint64_t> Number() {
    std::uint64_t Value = 0;
    const auto [End, Error] = std::from_chars(FLeft.data(), FLeft.data() + FLeft.size(), Value);
    if (Error != std::errc{}) {
      return std::nullopt;
    }
    FLeft.remove_prefix(static_cast<std::size_t>(End - FLeft.data()));
    return Value;
  }

  /// As Number, for one below a limit.
  std::optional<std::uint64_t> NumberBelow(std::uint64_t ALimit) {
    const auto Value = Number();
    return Value && *Value < ALimit ? Value : std::nullopt;
  }

  /// The number in the next ACount characters, or in as many as are left; nothing unless these are 1 to 9 digits.
  std::optional<int> Field(std::size_t ACount) {
    constexpr std::size_t MostDigits = 9;
    const std::string_view Digits = FLeft.substr(0, ACount);
    if (Digits.empty() || Digits.size() > MostDigits) {
      return std::nullopt;
    }
    int Value = 0;
    bool HasOther = false;
    for (const char C : Digits) {
      HasOther = HasOther || C < '0' || C > '9';
      Value = Value * 10 + (C - '0');
    }
    FLeft.remove_prefix(HasOther ? 0 : Digits.size());
    return HasOther ? std::nullopt : std::optional(Value);
  }

 private:
  std::string_view FLeft;
};
