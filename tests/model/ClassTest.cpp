#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>

#include "PlanDocument.h"
#include "PlanRows.h"
#include "ReferencePage.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlandaten/Zeitrahmen.h"

namespace {

using PlanRows::TDetail;
using QuillonDataObjects::CreateStorage;
using TRow = TQuillonDataRow;

/// A storage of one list, for objects that have no place in a plan of their own.
class TAnyList : public TQuillonDataList {
 public:
  using TQuillonDataList::TQuillonDataList;
  const TQuillonDataClass& ItemClass() const override { return *FItemClass; }
  const TQuillonDataClass* FItemClass = &TQuillonDataObject::Class();
};

class TAnyStorage : public TVELDataStorage {
 public:
  static const TQuillonDataClass& Class() {
    static const TQuillonDataClass Description =
        DescribeClass<TAnyStorage, TVELDataStorage>("TAnyStorage").List<&TAnyStorage::FObjects>("Objects");
    return Description;
  }
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TAnyList FObjects{this, TQuillonDataList::TItems::Owned};
};

// The page is the golden list of the format as well: a change of a row shows here. After a change that is meant, run
// this test once with VELMORA_UPDATE=1 in the environment, which writes the page, and look at the difference.
TEST(Classes, ReferencePageShowsEveryRow) {
  const std::string FileName = std::string(VELMORA_SOURCE_DIR) + "/docs/data-file-reference.md";
  const std::string Expected = ReferencePage::Text();
  if (std::getenv("VELMORA_UPDATE") != nullptr) {
    std::ofstream(FileName, std::ios::binary) << Expected;
  }
  std::ostringstream Page;
  Page << std::ifstream(FileName, std::ios::binary).rdbuf();
  EXPECT_EQ(Page.str(), Expected) << "docs/data-file-reference.md is out of date";
}

TEST(Classes, NamesAndTagsStandTwiceOnlyWhereTheFormatHasThemSo) {
  std::set<std::string> TwiceInClass;
  std::set<std::string> TwiceAsTag;
  std::set<std::string_view> Tags;
  std::vector<const TQuillonDataClass*> Classes = PlanRows::Classes();
  for (const TQuillonDataClass* Class : Classes) {
    EXPECT_FALSE(Class->IsAbstract()) << Class->Tag();
    if (!Tags.insert(Class->Tag()).second) {
      TwiceAsTag.emplace(Class->Tag());
    }
  }
  Classes.push_back(&TVELPlan::Class());
  for (const TQuillonDataClass* Class : Classes) {
    const auto Rows = Class->Rows();
    for (std::size_t I = 0; I < Rows.size(); ++I) {
      if (Rows[I].Kind != TQuillonRowKind::Hook && Rows[I].FirstOfName != I && !Rows[I].IsRetired() &&
          !Rows[Rows[I].FirstOfName].IsRetired()) {
        TwiceInClass.insert(std::string(Class->Tag()) + "." + std::string(Rows[I].Name));
      }
    }
  }
  EXPECT_EQ(TwiceAsTag, std::set<std::string>{"SchoolType"});
  EXPECT_EQ(TwiceInClass,
            (std::set<std::string>{"Class.ProfessionalTrainingCourse", "Owner.Site", "Teacher.NoSupervision"}));
}

TEST(Classes, EveryClassThatAPlanCanReachIsRegistered) {
  const auto Plan = CreateStorage<TVELPlan>();
  const auto Classes = PlanRows::Classes();
  EXPECT_EQ(Classes.size(), 85U);
  const auto CheckRows = [&](TQuillonDataAbstractObject& AnObject) {
    for (const TRow& Row : AnObject.DataClass().Rows()) {
      const TQuillonDataClass* Wanted = nullptr;
      if (const auto* const Pointer = std::get_if<TRow::TPointer>(&Row.Access)) {
        Wanted = &Pointer->Class();
      } else if (Row.Kind == TQuillonRowKind::List) {
        Wanted = &Row.As<TRow::TItems>().Field(AnObject).ItemClass();
      }
      EXPECT_TRUE(Wanted == nullptr || !PlanRows::Descendants(*Wanted).empty())
          << AnObject.GetPublicClassName() << "." << Row.Name;
    }
  };
  CheckRows(*Plan);
  for (const TQuillonDataClass* Class : Classes) {
    CheckRows(*Class->Create(Plan.get(), QuillonGuid::New()));
  }
}

// What a file can nest is bounded by the classes, so that no file drives the recursion of readers and writers.
TEST(Classes, NoClassCanContainItself) {
  const auto Plan = CreateStorage<TVELPlan>();
  std::vector<const TQuillonDataClass*> Path;
  const auto Visit = [&](const TQuillonDataClass& AClass, const auto& AnItself) -> void {
    ASSERT_EQ(std::ranges::count(Path, &AClass), 0) << AClass.Tag();
    Path.push_back(&AClass);
    TQuillonDataObject* const Object = AClass.Create(Plan.get(), QuillonGuid::New());
    for (const TRow& Row : AClass.Rows()) {
      const TQuillonDataClass* Part = nullptr;
      if (Row.Kind == TQuillonRowKind::Object) {
        Part = &Row.As<TRow::TPointer>().Class();
      } else if (Row.Kind == TQuillonRowKind::List && Row.As<TRow::TItems>().Field(*Object).IsItemOwner()) {
        Part = &Row.As<TRow::TItems>().Field(*Object).ItemClass();
      }
      for (const TQuillonDataClass* Class : Part != nullptr ? PlanRows::Descendants(*Part) : decltype(Path){}) {
        AnItself(*Class, AnItself);
      }
    }
    Path.pop_back();
  };
  for (const TQuillonDataClass* Class : PlanRows::Classes()) {
    Visit(*Class, Visit);
  }
}

TEST(Classes, EveryRowOfEveryClassSurvivesAFile) {
  for (const TQuillonDataClass* Class : PlanRows::Classes()) {
    for (unsigned Seed = 1; Seed <= 3; ++Seed) {
      const auto Source = CreateStorage<TAnyStorage>();
      const TQuillonChangeTrackingLock Lock(*Source);
      Source->FObjects.FItemClass = Class;
      TQuillonDataObject* const Object = Class->Create(Source.get(), QuillonGuid::New());
      PlanRows::TFiller(Seed).Fill(*Object);
      Source->FObjects.Append(Object);
      const std::string First = Source->SaveToXML();

      const auto Target = CreateStorage<TAnyStorage>();
      Target->FObjects.FItemClass = Class;
      Target->LoadFromXML(First, "test");
      ASSERT_EQ(Target->FObjects.Count(), 1) << Class->Tag();
      EXPECT_EQ(PlanRows::Snapshot(*Target->FObjects.GetItem(0), TDetail::All),
                PlanRows::Snapshot(*Object, TDetail::All));
      const std::string Second = Target->SaveToXML();
      Source->LoadFromXML(Second, "test");
      EXPECT_EQ(Source->SaveToXML(), Second) << Class->Tag();
      EXPECT_EQ(First.substr(First.find("<Item ")), Second.substr(Second.find("<Item "))) << Class->Tag();
    }
  }
}

TEST(Classes, AWholePlanWithEveryRowSurvivesAFileByteForByte) {
  const auto Source = CreateStorage<TVELPlan>();
  const TQuillonChangeTrackingLock Lock(*Source);
  PlanRows::TFiller(7).Fill(*Source);
  Source->SortLists();
  const std::string First = Source->SaveToXML();
  for (const TQuillonDataClass* Class : PlanRows::Classes()) {
    if (Class->Tag().starts_with("SubjectCombination")) {
      continue;  // no list of a plan holds them
    }
    EXPECT_NE(First.find("Class=\"" + std::string(Class->Tag()) + "\""), std::string::npos)
        << Class->Tag() << " stands nowhere";
  }

  const auto Target = CreateStorage<TVELPlan>();
  Target->LoadFromXML(First, "test");
  EXPECT_EQ(PlanRows::Snapshot(*Target, TDetail::All), PlanRows::Snapshot(*Source, TDetail::All));
  EXPECT_TRUE(Target->SaveToXML() == First);
  // Twice into the same plan: what was there before leaves no trace.
  Target->LoadFromXML(First, "test");
  EXPECT_TRUE(Target->SaveToXML() == First);
}

TEST(Classes, ListsKnowTheirNamesAndWhatTheyHold) {
  uPlandaten::RegisterClasses(TQuillonDataClassRegistry::Instance());
  const TPlan Plan = CreateStorage<TVELPlan>();
  const auto& Registry = TQuillonDataClassRegistry::Instance();
  int Known = 0;
  for (const TQuillonDataClass::TListField List : TVELPlan::Class().Lists()) {
    const TQuillonDataList& Own = List(*Plan);
    EXPECT_EQ(Registry.ItemClassOf(Own.DataClass()), &Own.ItemClass()) << Own.GetPublicClassName();
    ++Known;
  }
  EXPECT_EQ(Known, 20);
  EXPECT_EQ(Plan->FKlassen.GetDisplayName(), "TVELKlassenliste (ID: " + QuillonGuid::Braced(Plan->FKlassen.ID()) + ")");
}

TEST(Classes, AssignKeepsTheRulesOfFields) {
  const TPlan Plan = Load(
      "6.0.172",
      List("Classes", Item("Class", 1, "<Code>a</Code>" + List("Students", Item("Student", 3))) +
                          Item("Class", 2, "<Code>b</Code>")) +
          List("Students",
               Item("Student", 3,
                    "<Code/><Gender>0</Gender>" + Element("Class", "Class", 1) +
                        List("CourseSelection",
                             Item("CourseSelection", 31, "<CourseNo>7</CourseNo>" + Element("Subject", "Subject", 8)) +
                                 Item("CourseSelection", 32,
                                      "<CourseNo>7</CourseNo>" + Element("Subject", "Subject", 9)))) +
                   Item("Student", 4, "<Code/><Gender>0</Gender>" + Element("Class", "Class", 2))) +
          List("Subjects", Item("Subject", 8, "<Code>M</Code>") + Item("Subject", 9, "<Code>B</Code>")) +
          List("Events",
               Item("Event", 5,
                    "<CourseNo>7</CourseNo>" + Element("Subject", "Subject", 8) + List("Student", Item("Student", 3))) +
                   Item("Event", 6, "<CourseNo>8</CourseNo>" + Element("Subject", "Subject", 9))));
  Find<TVELVeranstaltung>(*Plan, 5).Assign(Find<TVELVeranstaltung>(*Plan, 6));
  EXPECT_EQ(Find<TVELKurswahl>(*Plan, 31).FKursNr, 8) << "that of the subject and the students of before";
  EXPECT_EQ(Find<TVELKurswahl>(*Plan, 32).FKursNr, 7) << "of another subject";
  Find<TVELSchueler>(*Plan, 3).Assign(Find<TVELSchueler>(*Plan, 4));
  EXPECT_TRUE(Find<TVELKlasse>(*Plan, 1).FSchueler.IsEmpty());
  EXPECT_TRUE(Find<TVELKlasse>(*Plan, 2).FSchueler.Holds(&Find<TVELSchueler>(*Plan, 3)));
}

TEST(Classes, AssignCopiesEveryRow) {
  for (const TQuillonDataClass* Class : PlanRows::Classes()) {
    const auto Store = CreateStorage<TAnyStorage>();
    const TQuillonChangeTrackingLock Lock(*Store);
    TQuillonDataObject* const Source = Class->Create(Store.get(), QuillonGuid::New());
    TQuillonDataObject* const Target = Class->Create(Store.get(), QuillonGuid::New());
    PlanRows::TFiller(11).Fill(*Source);
    Target->Assign(*Source);
    EXPECT_EQ(PlanRows::Snapshot(*Target, TDetail::Content), PlanRows::Snapshot(*Source, TDetail::Content));
    EXPECT_NE(Target->ID(), Source->ID());
    EXPECT_THROW(Target->Assign(*Store), EQuillonException) << Class->Tag();
  }
}

TEST(Classes, SettingsGoBackToTheValuesOfANewPlan) {
  const auto Plan = CreateStorage<TVELPlan>();
  TVELEinstellungen& Settings = *Plan->FEinstellungen;
  EXPECT_FALSE(Settings.FLineWrap);
  const TVELTermininhalte* const Parts = Settings.FTerminInhalte.Get();
  const TVELZeitrahmen* const Timeframe = Settings.FZeitrahmen.Get();
  PlanRows::TFiller(3).Fill(Settings);
  Settings.FAutomWochenfaktor = false;
  Settings.FStandardKursartLowerCase = Settings.FNonStandardKursartUpperCase = false;
  Settings.FAenderungenFreigeben = Settings.FShowAlwaysTime = Settings.FNoMessage = true;
  Settings.Clear();
  EXPECT_FALSE(Settings.FAutomWochenfaktor);  // not touched
  EXPECT_TRUE(Settings.FLineWrap);
  EXPECT_EQ(Settings.FTerminInhalte.Get(), Parts);
  EXPECT_EQ(Settings.FZeitrahmen.Get(), Timeframe);
  EXPECT_TRUE(Settings.FStandardKursartLowerCase && Settings.FNonStandardKursartUpperCase);
  EXPECT_FALSE(Settings.FAenderungenFreigeben || Settings.FShowAlwaysTime || Settings.FNoMessage);
  EXPECT_EQ(Settings.FWochenAusgenommen, TVELWeeks::All());
  EXPECT_EQ(Settings.FMinProDefaultStd, 45);
  EXPECT_EQ(Settings.FMinLKSchuelerAnzahl + Settings.FMinGKSchuelerAnzahl, 10);
  EXPECT_EQ(Settings.FMaxLKSchuelerAnzahl + Settings.FMaxGKSchuelerAnzahl, 50);
  EXPECT_EQ(Settings.FStatistikWochenAnzahl, 1);
  EXPECT_EQ(Settings.FStdAnzeige, dtStdPosUndZeit);
  EXPECT_EQ(Settings.FStundenplanID, -1);
  EXPECT_EQ(Settings.FWochenende, velFriday);
  EXPECT_EQ(Settings.FWochenstart, velMonday);
  EXPECT_TRUE(Settings.FZeigeAufsichten && Settings.FZeigeLehrersymbole);
  EXPECT_EQ(Settings.FZeigeWochen, "W");
  EXPECT_EQ(Settings.FWochenPrefix, "[KW %s]");
}

}  // namespace
