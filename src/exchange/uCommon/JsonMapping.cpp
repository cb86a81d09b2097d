#include "JsonMapping.h"

#include <limits>

namespace JsonMapping {

void ThrowWrongType(const TPlace& APlace, std::string_view AWanted) {
  throw EQuillonException("Key \"" + APlace.KeyPath + "\" in file \"" + APlace.FileName + "\" must be " +
                          std::string(AWanted) + ".");
}

void Read(const nlohmann::json& AValue, std::string& ATarget, const TPlace& APlace) {
  if (!AValue.is_string()) {
    ThrowWrongType(APlace, "a string");
  }
  ATarget = AValue.get_ref<const std::string&>();
}

void Read(const nlohmann::json& AValue, bool& ATarget, const TPlace& APlace) {
  if (!AValue.is_boolean()) {
    ThrowWrongType(APlace, "true or false");
  }
  ATarget = AValue.get<bool>();
}

void Read(const nlohmann::json& AValue, std::uint16_t& ATarget, const TPlace& APlace) {
  constexpr std::uint64_t Max = std::numeric_limits<std::uint16_t>::max();
  // Whole numbers that are not negative are what the parser holds as unsigned.
  if (!AValue.is_number_unsigned() || AValue.get<std::uint64_t>() > Max) {
    ThrowWrongType(APlace, "a whole number from 0 to " + std::to_string(Max));
  }
  ATarget = static_cast<std::uint16_t>(AValue.get<std::uint64_t>());
}

}  // namespace JsonMapping
