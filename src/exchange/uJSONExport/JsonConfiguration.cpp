#include "uJSONExport/JsonConfiguration.h"

#include <array>
#include <string_view>
#include <utility>

#include "JsonMapping.h"
#include "QuillonDateTime.h"

namespace JsonMapping {

namespace {

template <class TValue, std::size_t ACount>
using TNames = std::array<std::pair<std::string_view, TValue>, ACount>;

constexpr TNames<TJsonForm, 2> Forms = {{{"dated", TJsonForm::Dated}, {"undated", TJsonForm::Undated}}};

constexpr TNames<TJsonObjectKind, 6> Kinds = {{{"teacher", TJsonObjectKind::Teacher},
                                               {"class", TJsonObjectKind::Class},
                                               {"room", TJsonObjectKind::Room},
                                               {"subject", TJsonObjectKind::Subject},
                                               {"student", TJsonObjectKind::Student},
                                               {"resource", TJsonObjectKind::Resource}}};

constexpr TNames<TVELXMLType, 5> XmlTypes = {{{"xmlIndex", xmlIndex},
                                              {"xmlLessons", xmlLessons},
                                              {"xmlChanges", xmlChanges},
                                              {"xmlCalEvents", xmlCalEvents},
                                              {"xmlAbsences", xmlAbsences}}};

constexpr TNames<TVELDataType, 7> DataTypes = {{{"dtAlle", dtAlle},
                                                {"dtKlassen", dtKlassen},
                                                {"dtLehrer", dtLehrer},
                                                {"dtRaeume", dtRaeume},
                                                {"dtFaecher", dtFaecher},
                                                {"dtSchueler", dtSchueler},
                                                {"dtRessourcen", dtRessourcen}}};

template <class TValue, std::size_t ACount>
TValue ReadName(const nlohmann::json& AValue, const TNames<TValue, ACount>& ANames, const TPlace& APlace) {
  std::string Wanted;
  for (const auto& [Name, Value] : ANames) {
    if (AValue.is_string() && QuillonText::EqualsIgnoreCase(AValue.get_ref<const std::string&>(), Name)) {
      return Value;
    }
    Wanted.append(Wanted.empty() ? "one of " : ", ").append(Name);
  }
  ThrowWrongType(APlace, Wanted);
}

template <class TSet, class TValue, std::size_t ACount>
void ReadSet(const nlohmann::json& AValue, TSet& ATarget, const TNames<TValue, ACount>& ANames, const TPlace& APlace) {
  if (!AValue.is_array()) {
    ThrowWrongType(APlace, "a list");
  }
  ATarget = {};
  for (std::size_t I = 0; I < AValue.size(); ++I) {
    ATarget.Include(ReadName(AValue[I], ANames, APlace.Item(I)));
  }
}

}  // namespace

// Found by argument where the rows below are read.

void Read(const nlohmann::json& AValue, TJsonForm& ATarget, const TPlace& APlace) {
  ATarget = ReadName(AValue, Forms, APlace);
}

void Read(const nlohmann::json& AValue, TJsonObjectKind& ATarget, const TPlace& APlace) {
  ATarget = ReadName(AValue, Kinds, APlace);
}

void Read(const nlohmann::json& AValue, TVELXMLTypes& ATarget, const TPlace& APlace) {
  ReadSet(AValue, ATarget, XmlTypes, APlace);
}

void Read(const nlohmann::json& AValue, TVELDataTypes& ATarget, const TPlace& APlace) {
  ReadSet(AValue, ATarget, DataTypes, APlace);
}

/// A day, of which a time of day behind it is no part.
void Read(const nlohmann::json& AValue, TVELDateTime& ATarget, const TPlace& APlace) {
  constexpr std::size_t DateLength = 10;
  constexpr std::string_view Wanted = "a date such as \"2026-08-03\"";
  std::string Text;
  if (AValue.is_string()) {
    Text = AValue.get<std::string>();
  }
  if (Text.size() < DateLength || (Text.size() > DateLength && Text[DateLength] != 'T')) {
    ThrowWrongType(APlace, Wanted);
  }
  try {
    static_cast<void>(QuillonDateTime::ParseDateTime(Text));
    ATarget = QuillonDateTime::ParseDate(Text.substr(0, DateLength));
  } catch (const EQuillonConvertError&) {
    ThrowWrongType(APlace, Wanted);
  }
}

template <class TObject>
constexpr std::array ObjectFields{
    Field<TObject, &TObject::FId>("FId"),
    Field<TObject, &TObject::FKind>("FKind"),
    Field<TObject, &TObject::FCode>("FCode"),
};

template <>
constexpr auto Fields<TJsonObjectName> = ObjectFields<TJsonObjectName>;

template <>
constexpr auto Fields<TJsonProfile> = Join(ObjectFields<TJsonProfile>,
                                           std::array{Field<TJsonProfile, &TJsonProfile::FPolicy>("FPolicy")});

template <>
constexpr auto Fields<TJsonExportOptions> =
    Join(SourceFields<TJsonExportOptions>,
         std::array{
             Field<TJsonExportOptions, &TJsonExportOptions::FTargetFileName>("FTargetFileName"),
             Field<TJsonExportOptions, &TJsonExportOptions::FForm>("FForm"),
             Field<TJsonExportOptions, &TJsonExportOptions::FStart>("FStart"),
             Field<TJsonExportOptions, &TJsonExportOptions::FFinish>("FFinish"),
             Field<TJsonExportOptions, &TJsonExportOptions::FXmlTypes>("FXmlTypes"),
             Field<TJsonExportOptions, &TJsonExportOptions::FDataTypes>("FDataTypes"),
             Field<TJsonExportOptions, &TJsonExportOptions::FFiltering>("FFiltering"),
             Field<TJsonExportOptions, &TJsonExportOptions::FAdmin>("FAdmin"),
             Field<TJsonExportOptions, &TJsonExportOptions::FNoTeacher>("FNoTeacher"),
             Field<TJsonExportOptions, &TJsonExportOptions::FStudentNames>("FStudentNames"),
             Field<TJsonExportOptions, &TJsonExportOptions::FOffeneFehlzeiten>("FOffeneFehlzeiten"),
             Field<TJsonExportOptions, &TJsonExportOptions::FAllSubstitutions>("FAllSubstitutions"),
             Field<TJsonExportOptions, &TJsonExportOptions::FSubstitutionsOnly>("FSubstitutionsOnly"),
             Field<TJsonExportOptions, &TJsonExportOptions::FAllLessons>("FAllLessons"),
             Field<TJsonExportOptions, &TJsonExportOptions::FAlleWochen>("FAlleWochen"),
             Field<TJsonExportOptions, &TJsonExportOptions::FArt>("FArt"),
             Field<TJsonExportOptions, &TJsonExportOptions::FInformation>("FInformation"),
             Field<TJsonExportOptions, &TJsonExportOptions::FMitteilung>("FMitteilung"),
             Field<TJsonExportOptions, &TJsonExportOptions::FPlanobjekt>("FPlanobjekt"),
             Field<TJsonExportOptions, &TJsonExportOptions::FKategorie>("FKategorie"),
             Field<TJsonExportOptions, &TJsonExportOptions::FAuswahl>("FAuswahl"),
             Field<TJsonExportOptions, &TJsonExportOptions::FProfiles>("FProfiles"),
             Field<TJsonExportOptions, &TJsonExportOptions::FLogButtonPolicy>("FLogButtonPolicy"),
             Field<TJsonExportOptions, &TJsonExportOptions::FTeacherNamesPolicy>("FTeacherNamesPolicy"),
         });

template <>
constexpr std::array Fields<TJsonConfiguration>{
    Field<TJsonConfiguration, &TJsonConfiguration::FJsonExport>("FJsonExport")};

}  // namespace JsonMapping

template std::unique_ptr<TJsonConfiguration> LoadConfiguration(const std::string& AFileName);
