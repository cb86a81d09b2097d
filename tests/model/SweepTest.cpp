#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonIO.h"
#include "model/PlanDocument.h"
#include "uPlandaten/Kalender.h"

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

}  // namespace
