#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "Configuration.h"
#include "JsonUtils.h"
#include "QuillonText.h"
#include "QuillonTypes.h"

/// Settings classes from JSON objects, by one table per class. Only the sources that define such tables include this.
///
/// A key stands for the field of that name, with or without the field's leading "F", in any case. Unknown keys are
/// ignored, and a field without a key keeps its value.
namespace JsonMapping {

/// Where a value stands, for error messages.
struct TPlace {
  std::string FileName;
  std::string KeyPath;

  TPlace Member(std::string_view AKey) const {
    return {FileName, KeyPath.empty() ? std::string(AKey) : KeyPath + "." + std::string(AKey)};
  }
  TPlace Item(std::size_t AnIndex) const { return {FileName, KeyPath + "[" + std::to_string(AnIndex) + "]"}; }
};

/// @throws EQuillonException naming the key, the file and the type of value that the key takes
[[noreturn]] void ThrowWrongType(const TPlace& APlace, std::string_view AWanted);

void Read(const nlohmann::json& AValue, std::string& ATarget, const TPlace& APlace);
void Read(const nlohmann::json& AValue, bool& ATarget, const TPlace& APlace);
void Read(const nlohmann::json& AValue, std::uint16_t& ATarget, const TPlace& APlace);
void Read(const nlohmann::json& AValue, std::int32_t& ATarget, const TPlace& APlace);

/// Row of a class's table: the field's name and the reader of its value.
template <class TObject>
struct TField {
  std::string_view Name;
  void (*ReadInto)(const nlohmann::json& AValue, TObject& AnObject, const TPlace& APlace);
};

/// The table of a class; each class that is read specialises it, the classes of its fields first.
template <class TObject>
constexpr std::array<TField<TObject>, 0> Fields{};

template <class TObject>
void Read(const nlohmann::json& AValue, TObject& ATarget, const TPlace& APlace) {
  if (!AValue.is_object()) {
    ThrowWrongType(APlace, "an object");
  }
  for (const auto& [Key, Value] : AValue.items()) {
    const auto FindField = [](const std::string& AName) -> const TField<TObject>* {
      for (const auto& Field : Fields<TObject>) {
        if (QuillonText::EqualsIgnoreCase(Field.Name, AName)) {
          return &Field;
        }
      }
      return nullptr;
    };
    const auto* Field = FindField("F" + Key);
    Field = Field != nullptr ? Field : FindField(Key);
    if (Field != nullptr) {
      Field->ReadInto(Value, ATarget, APlace.Member(Key));
    }
  }
}

template <class TItem>
void Read(const nlohmann::json& AValue, std::vector<TItem>& ATarget, const TPlace& APlace) {
  if (!AValue.is_array()) {
    ThrowWrongType(APlace, "a list");
  }
  ATarget.clear();
  for (const auto& Value : AValue) {
    const TPlace Place = APlace.Item(ATarget.size());
    Read(Value, ATarget.emplace_back(), Place);
  }
}

/// A row for a member of the class or of its base; the member's type decides which type of value the key takes.
template <class TObject, auto Member>
constexpr TField<TObject> Field(std::string_view AName) {
  return {AName, [](const nlohmann::json& AValue, TObject& AnObject, const TPlace& APlace) {
            Read(AValue, AnObject.*Member, APlace);
          }};
}

/// The rows of a base's table followed by those that the class adds.
template <class TObject, std::size_t BaseCount, std::size_t OwnCount>
constexpr auto Join(const std::array<TField<TObject>, BaseCount>& ABase,
                    const std::array<TField<TObject>, OwnCount>& AnOwn) {
  std::array<TField<TObject>, BaseCount + OwnCount> Joined{};
  std::copy(ABase.begin(), ABase.end(), Joined.begin());
  std::copy(AnOwn.begin(), AnOwn.end(), Joined.begin() + BaseCount);
  return Joined;
}

/// The rows of TVELServerOptions, for a class on top of it.
template <class TObject>
constexpr std::array ServerFields{
    Field<TObject, &TObject::FServerName>("FServerName"),
    Field<TObject, &TObject::FServerPort>("FServerPort"),
    Field<TObject, &TObject::FServerUserName>("FServerUserName"),
    Field<TObject, &TObject::FServerPassword>("FServerPassword"),
    Field<TObject, &TObject::FServerFileId>("FServerFileId"),
    Field<TObject, &TObject::FFileName>("FFileName"),
    Field<TObject, &TObject::FReportFileName>("FReportFileName"),
};

/// The rows of TVELSourceOptions, for a class on top of it.
template <class TObject>
constexpr auto SourceFields = Join(ServerFields<TObject>,
                                   std::array{
                                       Field<TObject, &TObject::FSourceFileName>("FSourceFileName"),
                                       Field<TObject, &TObject::FSourceProvider>("FSourceProvider"),
                                   });

}  // namespace JsonMapping

template <class TConfiguration>
std::unique_ptr<TConfiguration> LoadConfiguration(const std::string& AFileName) {
  const auto Settings = TJsonUtils::LoadSettings(AFileName);
  auto Configuration = std::make_unique<TConfiguration>();
  JsonMapping::Read(Settings, *Configuration, {AFileName, ""});
  return Configuration;
}
