#include "uJSONExport/Publisher.h"

#include <array>

#include "QuillonFileReplacement.h"
#include "QuillonFileSystem.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Ressourcen.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Teams.h"
#include "uSchluessel/Verzeichnisse.h"

namespace {

/// The identity that a text is, with or without braces; the all-zero one for any other text.
TGUID GuidIn(const std::string& AText) {
  const auto Guid = QuillonGuid::TryParse(AText.size() == QuillonGuid::PlainLength ? "{" + AText + "}" : AText);
  return Guid.value_or(TGUID{});
}

/// Takes the exact abbreviation, or the identifier. The first one of a list counts.
template <class TList>
auto* FindCode(const TList& AList, const std::string& AText) {
  using TItem = typename TList::TItemClass;
  const TGUID Guid = GuidIn(AText);
  for (TItem* Item : AList) {
    if (Item->FKuerzel == AText || (!Guid.IsZero() && Item->ID() == Guid)) {
      return Item;
    }
  }
  return static_cast<TItem*>(nullptr);
}

/// The lists of the objects that settings can name, by TJsonObjectKind.
std::array<const TVELPlanobjektliste*, 6> ObjectLists(const TVELPlan& APlan) {
  return {&APlan.FLehrer, &APlan.FKlassen, &APlan.FRaeume, &APlan.FFaecher, &APlan.FSchueler, &APlan.FRessourcen};
}

}  // namespace

TVELJSONPublisher::TVELJSONPublisher(TVELGlobals& AGlobals, const std::string& ACfgFileName)
    : TVELSynchronizer(AGlobals, ACfgFileName), FCfgFileName(ACfgFileName) {
  BeginReport(Settings().FTargetFileName);
  if (Settings().FTargetFileName.empty()) {
    ThrowWrong("targetFileName", "the name of the file to write");
  }
  for (const std::string& Input : {Settings().FSourceFileName, ACfgFileName}) {
    if (TQuillonFileSystem::SameFile(Settings().FTargetFileName, Input)) {
      ThrowWrong("targetFileName", "another file than the data file and that of the settings");
    }
  }
}

void TVELJSONPublisher::ThrowWrong(const std::string& AKey, std::string_view AWanted) const {
  throw EQuillonException("Key \"jsonExport." + AKey + "\" in file \"" + FCfgFileName + "\" must be " +
                          std::string(AWanted) + ".");
}

TVELPlanobjekt* TVELJSONPublisher::FindObject(const TJsonObjectName& AName, const std::string& AKey) const {
  // A kind alone is no object, but a name that was forgotten: the document would be for all.
  const bool IsNamed = !AName.FId.empty() || !AName.FCode.empty();
  if (!IsNamed && AName.FKind == TJsonObjectKind::Any) {
    return nullptr;
  }
  const auto Lists = ObjectLists(FPlan);
  const TGUID Guid = GuidIn(AName.FId);
  for (std::size_t I = 0; IsNamed && I < Lists.size(); ++I) {
    const bool IsOfKind = AName.FKind == static_cast<TJsonObjectKind>(I);
    if (!IsOfKind && AName.FKind != TJsonObjectKind::Any) {
      continue;
    }
    TQuillonDataObject* Found = nullptr;
    if (!AName.FId.empty()) {
      Found = Guid.IsZero() ? nullptr : Lists.at(I)->Find(Guid);
    } else if (AName.FKind == TJsonObjectKind::Student) {
      Found = FPlan.FSchueler.FindSchuelerNr(AName.FCode);
    } else if (IsOfKind) {
      Found = Lists.at(I)->Find(AName.FCode, false, true);
    }
    if (Found != nullptr) {
      return static_cast<TVELPlanobjekt*>(Found);
    }
  }
  ThrowWrong(AKey, "the \"id\", or \"kind\" and \"code\", of an object of the data file");
}

void TVELJSONPublisher::TakeObjects(TVELJSONExport& AnExport, TVELJSONUserData& AUser) const {
  const TJsonExportOptions& From = Settings();
  AnExport.Planobjekt = FindObject(From.FPlanobjekt, "planobjekt");
  if (!From.FKategorie.empty()) {
    AnExport.Kategorie = FindCode(FPlan.FVerzeichnisse->FKalendereintragKategorien, From.FKategorie);
    if (AnExport.Kategorie == nullptr) {
      ThrowWrong("kategorie", "the code or identifier of a category of events in the data file");
    }
  }
  for (std::size_t I = 0; I < From.FAuswahl.size(); ++I) {
    TVELTeam* const Team = FindCode(FPlan.FTeams, From.FAuswahl[I]);
    if (Team == nullptr) {
      ThrowWrong("auswahl[" + std::to_string(I) + "]", "the code or identifier of a team in the data file");
    }
    AnExport.Auswahl.Append(Team);
  }
  for (std::size_t I = 0; I < From.FProfiles.size(); ++I) {
    AUser.UserPolicies.push_back(From.FProfiles[I].FPolicy);
    AUser.UserProfils.push_back(FindObject(From.FProfiles[I], "profiles[" + std::to_string(I) + "]"));
  }
}

void TVELJSONPublisher::TakeSettings(TVELJSONExport& AnExport, TVELJSONUserData& AUser) const {
  const TJsonExportOptions& From = Settings();
  AnExport.XMLTypes = From.FXmlTypes;
  AnExport.DataTypes = From.FDataTypes;
  AnExport.Filtering = From.FFiltering;
  AnExport.Admin = From.FAdmin;
  AnExport.NoTeacher = From.FNoTeacher;
  AnExport.StudentNames = From.FStudentNames;
  AnExport.OffeneFehlzeiten = From.FOffeneFehlzeiten;
  AnExport.AllSubstitutions = From.FAllSubstitutions;
  AnExport.SubstitutionsOnly = From.FSubstitutionsOnly;
  AnExport.AllLessons = From.FAllLessons;
  AnExport.AlleWochen = From.FAlleWochen;
  AnExport.Art = From.FArt;
  AnExport.Information = From.FInformation;
  AnExport.Mitteilung = From.FMitteilung;
  AUser.LogButtonPolicy = From.FLogButtonPolicy;
  AUser.TeacherNamesPolicy = From.FTeacherNamesPolicy;
  TakeObjects(AnExport, AUser);
  if (!AUser.UserPolicies.empty()) {
    AnExport.UserData = &AUser;
  }
}

std::string TVELJSONPublisher::Document() const {
  TVELJSONExport Export(FPlan);
  TVELJSONUserData User;
  TakeSettings(Export, User);
  if (Settings().FForm == TJsonForm::Dated) {
    Export.CreateJSONData(Settings().FStart, Settings().FFinish);
    return uJSONExport::FileText(*Export.JSONData);
  }
  const TVELEinstellungen& Plan = *FPlan.FEinstellungen;
  Export.AlleWochen = true;
  Export.Start = Settings().FStart != 0 ? Settings().FStart : Plan.FGueltigVon;
  Export.Finish = Settings().FFinish != 0 ? Settings().FFinish : Plan.FGueltigBis;
  TQuillonMemoryStream Stream;
  Export.SaveJSONToStream(Stream);
  return Stream.TakeContent();
}

void TVELJSONPublisher::Publish() {
  if (!FAborted) {
    QuillonIO::ReplaceFile(Settings().FTargetFileName, Document());
  }
}
