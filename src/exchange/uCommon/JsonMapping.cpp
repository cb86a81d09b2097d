#include "JsonMapping.h"

#include <limits>

namespace JsonMapping {

namespace {

template <class TInteger>
void ReadWhole(const nlohmann::json& AValue, TInteger& ATarget, const TPlace& APlace) {
  constexpr auto Min = std::numeric_limits<TInteger>::min();
  constexpr auto Max = std::numeric_limits<TInteger>::max();
  // Numbers that are not negative are what the parser holds as unsigned; it holds no others that are.
  const bool IsWithin = AValue.is_number_unsigned() ? AValue.get<std::uint64_t>() <= std::uint64_t{Max}
                                                    : AValue.is_number_integer() && AValue.get<std::int64_t>() >= Min;
  if (!IsWithin) {
    ThrowWrongType(APlace, "a whole number from " + std::to_string(Min) + " to " + std::to_string(Max));
  }
  ATarget = AValue.get<TInteger>();
}

}  // namespace

void ThrowWrongType(const TPlace& APlace, std::string_view AWanted) {
  throw EQuillonException("Key \"" + APlace.KeyPath + "\" in file \"" + APlace.FileName + "\" must be " +
                          std::string(AWanted) + ".");
}

void Read(const nlohmann::json& AValue, std::string& ATarget, const TPlace& APlace) {
  if (!AValue.is_string()) {
    ThrowWrongType(APlace, "a string");
  }
  ATarget = AValue.get_ref<const std::string&>();
  if (ATarget.find('\0') != std::string::npos) {
    ThrowWrongType(APlace, "a string without NUL characters");
  }
}

void Read(const nlohmann::json& AValue, bool& ATarget, const TPlace& APlace) {
  if (!AValue.is_boolean()) {
    ThrowWrongType(APlace, "true or false");
  }
  ATarget = AValue.get<bool>();
}

void Read(const nlohmann::json& AValue, std::uint16_t& ATarget, const TPlace& APlace) {
  ReadWhole(AValue, ATarget, APlace);
}

void Read(const nlohmann::json& AValue, std::int32_t& ATarget, const TPlace& APlace) {
  ReadWhole(AValue, ATarget, APlace);
}

}  // namespace JsonMapping
