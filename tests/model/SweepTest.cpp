#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonIO.h"
#include "model/PlanDocument.h"
#include "uPlandaten/Bloecke.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Kalender.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace {

/// A place from which an object of each class can be freed.
struct TVictim {
  TQuillonDataList* List;
  TQuillonDataObject* Object;
};

void CollectVictims(TQuillonDataAbstractObject& AnObject, std::map<std::string_view, TVictim>& AFound) {
  for (const TQuillonDataRow& Row : AnObject.DataClass().Rows()) {
    if (Row.Kind == TQuillonRowKind::Object) {
      if (TQuillonDataObject* const Part = Row.As<TQuillonDataRow::TPointer>().Get(AnObject)) {
        CollectVictims(*Part, AFound);
      }
    } else if (Row.Kind == TQuillonRowKind::List && Row.As<TQuillonDataRow::TItems>().Field(AnObject).IsItemOwner()) {
      TQuillonDataList& List = Row.As<TQuillonDataRow::TItems>().Field(AnObject);
      for (TQuillonDataObject* Item : List.Items()) {
        AFound.try_emplace(Item->DataClass().Tag(), TVictim{&List, Item});
        CollectVictims(*Item, AFound);
      }
    }
  }
}

// Whatever is freed, nothing that is saved afterwards speaks of it.
TEST(Sweeps, NothingRefersToWhatWasFreed) {
  uPlandaten::RegisterClasses(TQuillonDataClassRegistry::Instance());
  const auto Plan = CreateStorage<TVELPlan>();
  Plan->LoadFromXML(QuillonIO::ReadWholeFile(VELMORA_SOURCE_DIR "/samples/schule.velmora"), "school");
  std::map<std::string_view, TVictim> Victims;
  CollectVictims(*Plan, Victims);
  std::string Before = Plan->SaveToXML();
  int Freed = 0;
  int Referred = 0;
  for (const auto& [Class, AtFirst] : std::map(Victims)) {
    Victims.clear();
    CollectVictims(*Plan, Victims);
    const auto Victim = Victims.find(Class);
    if (Victim == Victims.end()) {
      continue;  // went with another
    }
    const std::string ID = QuillonGuid::Braced(Victim->second.Object->ID());
    Referred += Before.find(ID) != Before.rfind(ID) ? 1 : 0;
    Victim->second.List->Remove(Victim->second.Object);
    std::string After = Plan->SaveToXML();
    EXPECT_EQ(After.find(ID), std::string::npos) << Class;
    EXPECT_GT(After.size(), Before.size() / 10 * 9) << Class << " took too much with it";
    Before = std::move(After);
    ++Freed;
  }
  EXPECT_GT(Freed, 30);
  EXPECT_GT(Referred, 20);
  Plan->LoadFromXML(Before, "what is left");
  EXPECT_EQ(Plan->SaveToXML().size(), Before.size());
}

TEST(Sweeps, TakeAlongWhatHasNoSenseWithoutTheObject) {
  const auto Demand = [](const std::string& AClass, int AnID, int ACategory) {
    return Item(AClass, AnID, "<Count>1</Count>" + Element("ResourceCategory", "ResourceCategory", ACategory));
  };
  const auto Category = [](int AnID) { return Item("ResourceCategory", AnID, "<Code>c</Code>"); };
  const TPlan Plan = Load(
      "6.0.172",
      List("Rooms", Item("Room", 1,
                         "<Code>r</Code>" + List("equipments", Demand("equipment", 11, 5) + Demand("equipment", 12, 5) +
                                                                   Demand("equipment", 13, 6)))) +
          List("Events",
               Item("Event", 2,
                    List("SpecifiedResources", Demand("SpecifiedResource", 21, 5) + Demand("SpecifiedResource", 22, 6) +
                                                   Demand("SpecifiedResource", 23, 5)))) +
          Element("Directories", "Directories", 3, List("ResourceCategories", Category(5) + Category(6))));
  Plan->FVerzeichnisse->FRessourcenkategorien.Delete(0);
  const auto IDsOf = [](const TQuillonDataList& AList) {
    std::string IDs;
    for (const TQuillonDataObject* Item : AList.Items()) {
      IDs += QuillonGuid::Braced(Item->ID());
    }
    return IDs;
  };
  EXPECT_EQ(IDsOf(Find<TVELRaum>(*Plan, 1).FAusstattungen), ID(13));
  EXPECT_EQ(IDsOf(Find<TVELVeranstaltung>(*Plan, 2).FRessourcenvorgaben), ID(22));
}

TEST(Sweeps, ReachWhatOnlyOldFilesTell) {
  const TPlan Plan =
      Load("6.0.130",
           List("Blocks", Item("Block", 1,
                               "<Band>1</Band><Name>b</Name>" + Element("Class", "Class", 2) +
                                   Element("LessonType", "LessonType", 4))) +
               List("Classes", Item("Class", 2, "<Code>5a</Code>") + Item("Class", 3, "<Code>5b</Code>")) +
               Element("Directories", "Directories", 5, List("LessonTypes", Item("LessonType", 4, "<Code>LK</Code>"))));
  const auto& Block = Find<TVELBlock>(*Plan, 1);
  EXPECT_NE(Block.FKlasse, nullptr);
  EXPECT_NE(Block.FKursart, nullptr);
  Plan->FKlassen.Remove(Block.FKlasse);
  Plan->FVerzeichnisse->FUnterrichtsarten.Clear();
  EXPECT_EQ(Block.FKlasse, nullptr);
  EXPECT_EQ(Block.FKursart, nullptr);
}

TEST(Sweeps, WhatGoesMayTakeNeighboursAlong) {
  // Two participants that stand for one another, and a third for itself.
  const auto Member = [](int AnID, int AnOther) {
    return Item("Member", AnID, "<Name>n</Name>" + Element("DataObject", "Member", AnOther));
  };
  const auto Make = [&] {
    return Load(
        "6.0.172",
        Element("Calendar", "Calendar", 1,
                List("Entries", Item("CalendarEvent", 2, List("Member", Member(3, 4) + Member(4, 3) + Member(5, 5))))));
  };
  const auto Members = [](TVELPlan& APlan) -> TVELTeilnehmerListe& {
    return APlan.FKalender->FEintraege.GetItem(0)->FTeilnehmer;
  };
  const TPlan Plan = Make();
  Members(*Plan).Delete(0);
  EXPECT_EQ(Members(*Plan).Count(), 1);
  Members(*Plan).Clear();
  EXPECT_TRUE(Members(*Plan).IsEmpty());
  const TPlan Other = Make();
  const TVELTeilnehmerListe Nobody;
  EXPECT_TRUE(Members(*Other).RetainAll(Nobody));
  EXPECT_TRUE(Members(*Other).IsEmpty());
}

/// Where an object of the plan, or a molecule, points to something that does not live any more; empty if nowhere.
std::string FindDangling(TVELPlan& APlan) {
  std::vector<TQuillonDataAbstractObject*> Objects = APlan.Registry().Objects();
  Objects.push_back(&APlan);
  const std::unordered_set<const TQuillonDataAbstractObject*> Live(Objects.begin(), Objects.end());
  for (TQuillonDataAbstractObject* Object : Objects) {
    for (const TQuillonDataRow& Row : Object->DataClass().Rows()) {
      const bool IsPointer = Row.Kind == TQuillonRowKind::Reference || Row.Kind == TQuillonRowKind::Object;
      if (const auto* const Target = IsPointer ? Row.As<TQuillonDataRow::TPointer>().Get(*Object) : nullptr;
          Target != nullptr && !Live.contains(Target)) {
        return std::string(Object->DataClass().Tag()) + "." + std::string(Row.Name);
      }
      if (Row.Kind == TQuillonRowKind::List) {
        for (const TQuillonDataObject* Item : Row.As<TQuillonDataRow::TItems>().Field(*Object).Items()) {
          if (!Live.contains(Item)) {
            return std::string(Object->DataClass().Tag()) + "." + std::string(Row.Name) + "[]";
          }
        }
      }
    }
  }
  for (const auto& Molecule : APlan.FMolecules.Items()) {
    for (const TQuillonDataList* List : {static_cast<const TQuillonDataList*>(&Molecule->Atoms),
                                         static_cast<const TQuillonDataList*>(&Molecule->Members()),
                                         static_cast<const TQuillonDataList*>(&Molecule->Resources())}) {
      if (!std::ranges::all_of(List->Items(), [&](const auto* AnItem) { return Live.contains(AnItem); })) {
        return "molecule";
      }
    }
  }
  return {};
}

/// The lines of a document, but for the times of changes: a list takes those of the object it lies in when it is read.
/// In any order: a lesson moves when its classes or its subject go, which a load sees first.
std::vector<std::string> LinesOf(const std::string& ADocument) {
  std::vector<std::string> Lines;
  std::istringstream Text(ADocument);
  for (std::string Line; std::getline(Text, Line);) {
    if (Line.find("<Changed>") == std::string::npos) {
      Lines.push_back(Line);
    }
  }
  std::ranges::sort(Lines);
  return Lines;
}

// Any object may go at any time, in any order.
TEST(Sweeps, APlanStaysWholeWhateverGoes) {
  uPlandaten::RegisterClasses(TQuillonDataClassRegistry::Instance());
  for (const unsigned Seed : {1U, 2U, 3U}) {
    std::minstd_rand Random(Seed);
    const auto Plan = CreateStorage<TVELPlan>();
    Plan->LoadFromXML(QuillonIO::ReadWholeFile(VELMORA_SOURCE_DIR "/samples/schule.velmora"), "school");
    for (int Step = 0; Step < 60; ++Step) {
      std::vector<TVictim> Victims;
      for (TQuillonDataAbstractObject* Object : Plan->Registry().Objects()) {
        if (auto* const List = dynamic_cast<TQuillonDataList*>(Object->FOwner);
            List != nullptr && List->IsItemOwner()) {
          Victims.push_back({List, static_cast<TQuillonDataObject*>(Object)});
        }
      }
      std::ranges::sort(Victims, {}, [](const TVictim& AVictim) { return QuillonGuid::Plain(AVictim.Object->ID()); });
      const TVictim Victim = Victims[Random() % Victims.size()];
      const std::string Tag(Victim.Object->DataClass().Tag());
      Victim.List->Remove(Victim.Object);
      ASSERT_EQ(FindDangling(*Plan), "") << "after a " << Tag << ", seed " << Seed;
      if (Step % 20 == 19) {
        const std::string Saved = Plan->SaveToXML();
        const auto Copy = CreateStorage<TVELPlan>();
        Copy->LoadFromXML(Saved, "what is left");
        // Told by a word: the texts are long.
        ASSERT_TRUE(LinesOf(Copy->SaveToXML()) == LinesOf(Saved)) << "after a " << Tag << ", seed " << Seed;
      }
    }
  }
}

TEST(Conflicts, AreTwoEqualCodesInAListOrAbsencesThatOverlap) {
  using enum TQuillonDataOperationKind;
  const TPlan Plan =
      Load("6.0.172", List("Rooms", Item("Room", 1, "<Code>A</Code>") + Item("Room", 2, "<Code>a</Code>") +
                                        Item("Room", 3, "<Code>A</Code>")));
  const auto Conflict = [](const TVELDataObject& AnObject, TQuillonDataOperationKind AKind,
                           const TQuillonDataList* AList) -> std::string {
    try {
      AnObject.CheckConflict(AKind, AList);
      return {};
    } catch (const EQuillonDataConflict& Found) {
      EXPECT_EQ(Found.FConflictType, ctSemanticConflict);
      return Found.what();
    }
  };
  const std::string Text = "Das Kürzel \"A\" ist bereits vorhanden.";
  const auto& Room = Find<TVELRaum>(*Plan, 1);
  EXPECT_EQ(Conflict(Room, Modification, nullptr), Text);
  EXPECT_EQ(Conflict(Room, Insertion, &Plan->FRaeume), Text);
  EXPECT_EQ(Conflict(Room, Move, nullptr), "");
  EXPECT_EQ(Conflict(Room, Insertion, &Plan->FLehrer), "");
  EXPECT_EQ(Conflict(Room, Insertion, &Plan->FAenderungen), "");
  EXPECT_EQ(Conflict(Find<TVELRaum>(*Plan, 2), Modification, nullptr), "");

  TVELFehlzeitenliste Own(Plan.get(), TQuillonDataList::TItems::Owned);
  for (TVELFehlzeitenliste* const Absences : {&Own, &Plan->FFehlzeiten}) {
    for (const double Start : {1.0, 2.0, 2.5}) {
      auto* const Absence = Create<TVELRaumfehlzeit>(Plan.get());
      Absence->FStart = Start;
      Absence->FEnde = Start + 1;
      Absences->Append(Absence);
    }
  }
  EXPECT_EQ(Conflict(*Own.GetItem(0), Insertion, nullptr), "") << "touching";
  EXPECT_NE(Conflict(*Own.GetItem(2), Insertion, nullptr), "");
  EXPECT_EQ(Conflict(*Plan->FFehlzeiten.GetItem(2), Insertion, nullptr), "")
      << "the plan's own list holds those of all";
  Own.Clear();
}

}  // namespace
