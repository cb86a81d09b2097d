#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "Growth.h"
#include "model/PlanDocument.h"
#include "uPlandaten/Aenderungen.h"
#include "uPlandaten/Blockketten.h"
#include "uPlandaten/Bloecke.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlandaten/Vertretungen.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using uPlandaten::SetBlockID;

namespace {

std::string Appointment(int AnID, const std::string& ABlock = "", const std::string& AMore = "") {
  return Item("Time", AnID,
              "<SetDuration>1</SetDuration>" + (ABlock.empty() ? "" : "<Block>" + ABlock + "</Block>") + AMore);
}

/// A lesson with the appointments AnID * 10 + 1 and + 2 in places 1 and 2 of the block.
std::string Lesson(int AnID, const std::string& ABlock, const std::string& AMore = "") {
  return Item("Event", AnID,
              AMore + "<BlockID>" + ABlock + "</BlockID>" +
                  List("Times", Appointment(AnID * 10 + 1, ABlock + ".1") + Appointment(AnID * 10 + 2, ABlock + ".2")));
}

int Number(const TQuillonDataObject& AnObject) { return std::stoi(QuillonGuid::Braced(AnObject.ID()).substr(25, 12)); }

/// The lessons of a ring from one on; each stands in it once.
std::vector<int> Ring(TVELPlan& APlan, int AnID) {
  std::vector<int> Found;
  const TVELVeranstaltung* const First = &Find<TVELVeranstaltung>(APlan, AnID);
  for (const TVELVeranstaltung* Next = First; Next != nullptr && (Found.empty() || Next != First);
       Next = Next->FBlockNext) {
    Found.push_back(Number(*Next));
  }
  return Found;
}

std::vector<std::string> BlockIDs(const TVELVeranstaltung& ALesson) {
  std::vector<std::string> Found;
  for (const TVELTermin* Termin : ALesson.FTermine) {
    Found.push_back(Termin->FBlockID);
  }
  return Found;
}

TEST(Blocks, AnOldFileGetsItsRingsAnew) {
  // The subjects' numbers make the order 4, 2, 1; lesson 3 is alone in its block, and 5 points where it should not.
  const std::string Lessons = Lesson(1, "A", "<CourseNo>3</CourseNo>") + Lesson(2, "A", "<CourseNo>2</CourseNo>") +
                              Lesson(3, "B") + Lesson(4, "A", "<CourseNo>1</CourseNo>") +
                              Item("Event", 5, Element("BlockNext", "Event", 1) + List("Times", Appointment(51)));
  const TPlan Plan = Load("6.0.104", List("Events", Lessons));
  EXPECT_THAT(Ring(*Plan, 1), ElementsAre(1, 4, 2));
  EXPECT_EQ(Find<TVELVeranstaltung>(*Plan, 3).FBlockNext, nullptr);
  EXPECT_EQ(Find<TVELVeranstaltung>(*Plan, 5).FBlockNext, nullptr);
  EXPECT_THAT(BlockIDs(Find<TVELVeranstaltung>(*Plan, 1)), ElementsAre("A.1", "A.2"));
  // A file of a later release tells its rings itself.
  const TPlan Later = Load("6.0.105", List("Events", Lessons));
  EXPECT_EQ(Find<TVELVeranstaltung>(*Later, 1).FBlockNext, nullptr);
  EXPECT_EQ(Find<TVELVeranstaltung>(*Later, 5).FBlockNext, &Find<TVELVeranstaltung>(*Later, 1));
}

TEST(Blocks, AnIdentifierIsPassedOnToTheAppointmentsOfTheBlockOrToAll) {
  const TPlan Plan =
      Load("6.0.172",
           List("Events", Item("Event", 1,
                               "<BlockID>A</BlockID>" +
                                   List("Times", Appointment(11, "A.7") + Appointment(12, "AB.2") + Appointment(13)))));
  auto& Lesson = Find<TVELVeranstaltung>(*Plan, 1);
  SetBlockID(Lesson, "A", false);
  EXPECT_THAT(BlockIDs(Lesson), ElementsAre("A.7", "AB.2", "")) << "it is there already";
  SetBlockID(Lesson, "C", false);
  EXPECT_THAT(BlockIDs(Lesson), ElementsAre("C.1", "AB.2", ""));
  SetBlockID(Lesson, "C", true);
  EXPECT_THAT(BlockIDs(Lesson), ElementsAre("C.1", "C.2", "C.3"));
  SetBlockID(Lesson, "", false);
  EXPECT_THAT(BlockIDs(Lesson), ElementsAre("", "", ""));
  EXPECT_EQ(Lesson.FBlockID, "");
}

TEST(Blocks, BlocksOfOldFilesGetBandsAndLevels) {
  const auto Block = [](int AnID, const std::string& AName, const std::string& AMore) {
    return Item("Block", AnID, "<Band>0</Band><Name>" + AName + "</Name>" + AMore);
  };
  const std::string Type = Element("LessonType", "LessonType", 81);
  const std::string Body =
      List("Blocks", Block(71, "A", Element("Class", "Class", 91)) + Block(72, "B", Type + "<Level>5</Level>") +
                         Block(73, "C", Type + Element("Class", "Class", 92)) +
                         Block(74, "D", Element("Class", "Class", 93) + "<Level>7</Level>")) +
      List("Classes", Item("Class", 91, "<Code>Q12</Code><Level>0</Level>") +
                          Item("Class", 92, "<Code>11</Code><Level>6</Level>") +
                          Item("Class", 93, "<Code>E</Code><Level>0</Level>")) +
      List("Events", Lesson(1, "B", Element("Block", "Block", 72)) + Lesson(2, "D", Element("Block", "Block", 74)) +
                         Lesson(3, "X", "<Band>9</Band>")) +
      "<Directories Class=\"Directories\" ID=\"" + ID(80) + "\">" +
      List("LessonTypes", Item("LessonType", 81, "<Code>LK</Code>")) + "</Directories>";
  const TPlan Plan = Load("6.0.134", Body);
  std::vector<std::pair<int, int>> Blocks;
  for (const TVELBlock* Found : Plan->FBlockungen) {
    Blocks.emplace_back(Found->FBand, Found->FStufe);
  }
  EXPECT_THAT(Blocks, ElementsAre(std::pair(1, 12), std::pair(2, 6), std::pair(1, 7)));
  EXPECT_EQ(Find<TVELVeranstaltung>(*Plan, 1).FBand, 2) << "from a block that went";
  EXPECT_EQ(Find<TVELVeranstaltung>(*Plan, 1).FBlock, nullptr);
  EXPECT_EQ(Find<TVELVeranstaltung>(*Plan, 2).FBand, 1);
  EXPECT_EQ(Find<TVELVeranstaltung>(*Plan, 3).FBand, 9);
  EXPECT_EQ(Load("6.0.135", Body)->FBlockungen.Count(), 4);
}

TEST(Blocks, StudentsOfOldLessonsAreSortedByName) {
  const auto Student = [](int AnID, const std::string& ASurname, const std::string& AName) {
    return Item("Student", AnID,
                "<Code>" + std::to_string(AnID) + "</Code><Gender>0</Gender><Surname>" + ASurname +
                    "</Surname><Name1>" + AName + "</Name1>");
  };
  const std::string Body =
      List("Students", Student(61, "b", "") + Student(62, "A", "") + Student(63, "C", "")) +
      List("Events",
           Item("Event", 1, List("Student", Item("Student", 63) + Item("Student", 61) + Item("Student", 62))));
  const auto Order = [](const TPlan& APlan) {
    std::string Text;
    for (const TVELSchueler* Found : Find<TVELVeranstaltung>(*APlan, 1).FSchueler) {
      Text += Found->FNachname;
    }
    return Text;
  };
  EXPECT_EQ(Order(Load("6.0.102", Body)), "AbC");
  EXPECT_EQ(Order(Load("6.0.103", Body)), "CbA");
}

TEST(Molecules, FollowTheBlocksAndWhatTheirAppointmentsHold) {
  const std::string Teachers = List("Teacher", Item("Teacher", 61, "<Code>T</Code><Gender>0</Gender>"));
  const std::string Rooms = List("Rooms", Item("Room", 62, "<Code>R</Code>"));
  const TPlan Plan =
      Load("6.0.104", Teachers + Rooms + List("Classes", Item("Class", 63, "<Code>K</Code>")) +
                          List("Events", Lesson(1, "A", List("Classes", Item("Class", 63))) + Lesson(2, "A") +
                                             Lesson(3, "B") + Item("Event", 4, List("Times", Appointment(41)))));
  const auto Molecule = [&](int AnID) { return Find<TVELTermin>(*Plan, AnID).Molecule(); };
  EXPECT_EQ(Plan->FMolecules.Items().size(), 5U);
  EXPECT_EQ(Molecule(11), Molecule(21));
  EXPECT_NE(Molecule(11), Molecule(12));
  EXPECT_EQ(Molecule(31)->Atoms.Count(), 1);
  EXPECT_THAT(Molecule(21)->Members().Items(), ElementsAre(&Find<TVELKlasse>(*Plan, 63)));

  auto& Shared = Find<TVELTermin>(*Plan, 21);
  Shared.FLehrer.Add(&Find<TVELLehrer>(*Plan, 61));
  Shared.FRaeume.Add(&Find<TVELRaum>(*Plan, 62));
  EXPECT_EQ(Molecule(11)->Members().Count(), 2);
  EXPECT_EQ(Molecule(11)->Resources().Count(), 3);

  SetBlockID(Find<TVELVeranstaltung>(*Plan, 2), "B", false);
  uPlandaten::RebuildBlocks(*Plan);
  EXPECT_EQ(Molecule(21), Molecule(31));
  EXPECT_EQ(Molecule(11)->Atoms.Count(), 1);

  Plan->FMolecules.LockUpdate = true;
  Find<TVELVeranstaltung>(*Plan, 3).FTermine.Delete(0);
  EXPECT_THAT(Molecule(21)->Atoms.Items(), ElementsAre(&Shared)) << "a freed appointment goes at once";
  Plan->Clear();
  EXPECT_THAT(Plan->FMolecules.Items(), IsEmpty());
}

TEST(Blocks, PartnersAreThoseOfTheRingElseThoseOfTheName) {
  // 1 and 2 are a ring, 3 points into it, 4 has the name only; 5 names a block that is not its own.
  const TPlan Plan =
      Load("6.0.172", List("Events", Lesson(1, "A", Element("BlockNext", "Event", 2)) +
                                         Lesson(2, "A", Element("BlockNext", "Event", 1)) +
                                         Lesson(3, "A", Element("BlockNext", "Event", 1)) + Lesson(4, "A") +
                                         Item("Event", 5, List("Times", Appointment(51, "A.1")))));
  const uPlandaten::TBlockIndex Blocks(*Plan);
  const auto Partners = [&](int AnID) {
    std::vector<int> Found;
    for (const TVELTermin* Termin : Blocks.Partners(Find<TVELTermin>(*Plan, AnID))) {
      Found.push_back(Number(*Termin));
    }
    return Found;
  };
  EXPECT_THAT(Partners(11), ElementsAre(11, 21));
  EXPECT_THAT(Partners(22), ElementsAre(22, 12));
  EXPECT_EQ(Partners(31).front(), 31);
  EXPECT_THAT(Partners(31), UnorderedElementsAre(11, 21, 31, 41, 51));
  EXPECT_EQ(Partners(51).front(), 51);
  EXPECT_THAT(Partners(51), UnorderedElementsAre(11, 21, 31, 41, 51));
  Plan->FVeranstaltungen.Remove(&Find<TVELVeranstaltung>(*Plan, 2));
  EXPECT_EQ(Find<TVELVeranstaltung>(*Plan, 1).FBlockNext, nullptr) << "alone in the ring";
  EXPECT_EQ(Find<TVELVeranstaltung>(*Plan, 3).FBlockNext, &Find<TVELVeranstaltung>(*Plan, 1));
}

TEST(Molecules, LetGoOfWhatLeavesThePlan) {
  const TPlan Plan = Load("6.0.104", List("Teacher", Item("Teacher", 61, "<Code>T</Code><Gender>0</Gender>")) +
                                         List("Events", Lesson(1, "A") + Lesson(2, "A")));
  auto& Lesson1 = Find<TVELVeranstaltung>(*Plan, 1);
  auto& Out = Find<TVELTermin>(*Plan, 11);
  auto& Stays = Find<TVELTermin>(*Plan, 21);
  Out.FLehrer.Add(&Find<TVELLehrer>(*Plan, 61));
  EXPECT_EQ(Stays.Molecule()->Members().Count(), 1);
  Lesson1.FTermine.Extract(&Out);
  EXPECT_THAT(Stays.Molecule()->Atoms.Items(), ElementsAre(&Stays));
  EXPECT_EQ(Out.Molecule(), nullptr);
  Lesson1.FTermine.Add(&Out);
  EXPECT_EQ(Out.Molecule(), Stays.Molecule());
  Plan->FMolecules.LockUpdate = true;
  Plan->FLehrer.Clear();
  EXPECT_THAT(Out.Molecule()->Resources().Items(), IsEmpty()) << "freed objects go at once";
  Plan->FMolecules.Clear();
  EXPECT_EQ(Out.Molecule(), nullptr);
}

TEST(Molecules, AChainThatNeverComesBackIsNoRing) {
  const TPlan Plan =
      Load("6.0.172", List("Events", Lesson(1, "A", Element("BlockNext", "Event", 2)) +
                                         Lesson(2, "A", Element("BlockNext", "Event", 2)) + Lesson(3, "C")));
  auto& Termin = Find<TVELTermin>(*Plan, 11);
  EXPECT_THAT(uPlandaten::BlockPartners(Termin), ElementsAre(&Termin, &Find<TVELTermin>(*Plan, 21)));
}

/// Lessons with an appointment each; ABlockSize of them are a ring.
TPlan Ringed(int ACount, int ABlockSize) {
  TPlan Plan = CreateStorage<TVELPlan>();
  for (int I = 0; I < ACount; ++I) {
    auto* const Lesson = Create<TVELVeranstaltung>(&*Plan);
    auto* const Appointment = Create<TVELTermin>(&*Plan);
    Lesson->FBlockIndex = I;
    Lesson->FBlockID = std::to_string(I / ABlockSize);
    Appointment->FBlockID = Lesson->FBlockID + ".1";
    Lesson->FTermine.Append(Appointment);
    Plan->FVeranstaltungen.Append(Lesson);
  }
  uPlandaten::RebuildBlocks(*Plan);
  return Plan;
}

TEST(Blocks, PartnersOfOneAppointmentTakeNoWalkOverThePlan) {
  EXPECT_LT(Growth(1000,
                   [](int ASize) {
                     const TPlan Plan = Ringed(ASize, 2);
                     return Seconds([&] {
                       for (const TVELVeranstaltung* Lesson : Plan->FVeranstaltungen) {
                         ASSERT_EQ(uPlandaten::BlockPartners(*Lesson->FTermine.GetItem(0)).size(), 2U);
                       }
                     });
                   }),
            QuadraticGrowth);
}

TEST(Molecules, ABlockIsTakenApartInOnePass) {
  EXPECT_LT(Growth(500,
                   [](int ASize) {
                     const TPlan Plan = Ringed(ASize, ASize);
                     Plan->FMolecules.Update();
                     return Seconds([&] {
                       for (const TVELVeranstaltung* Lesson : Plan->FVeranstaltungen) {
                         TVELMoleculeList::RemoveTermin(*Lesson->FTermine.GetItem(0));
                       }
                     });
                   }),
            QuadraticGrowth);
}

TEST(Sweeps, ALessonGoesInOnePassWithItsAppointmentsAndTheirChanges) {
  EXPECT_LT(Growth(1000,
                   [](int ASize) {
                     const TPlan Plan = CreateStorage<TVELPlan>();
                     auto* const Lesson = Create<TVELVeranstaltung>(Plan.get());
                     Plan->FVeranstaltungen.Append(Lesson);
                     for (int I = 0; I < ASize; ++I) {
                       auto* const Appointment = Create<TVELTermin>(Plan.get());
                       Lesson->FTermine.Append(Appointment);
                       auto* const Change = Create<TVELVertretung>(Plan.get());
                       Change->FATermin = Appointment;
                       Plan->FAenderungen.Append(Change);
                     }
                     const double Taken = Seconds([&] { Plan->FVeranstaltungen.Delete(0); });
                     EXPECT_TRUE(Plan->FAenderungen.IsEmpty());
                     EXPECT_EQ(Plan->FVeranstaltungen.Count(), 0);
                     return Taken;
                   }),
            QuadraticGrowth);
}

TEST(Changes, ManyItemsOfAnOldAdditionalLessonAreMergedInOnePass) {
  const double Growing = Growth(4000, [](int ASize) {
    std::string Rooms;
    for (int I = 0; I < ASize; ++I) {
      Rooms += Item("Room", I + 10);
    }
    const std::string Change =
        List("Changes", Item("AdditionalLesson", 1, List("Original", Rooms) + List("New", Rooms)));
    return Seconds([&] {
      const TPlan Plan = Load("6.0.143", Change);
      ASSERT_EQ(Find<TVELZusatzunterricht>(*Plan, 1).FOriginal.Count(), ASize);
    });
  });
  EXPECT_LT(Growing, QuadraticGrowth);
}

}  // namespace
