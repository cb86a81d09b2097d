#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "QuillonDataObjects/ReaderWriter.h"
#include "QuillonText.h"
#include "model/PlanDocument.h"
#include "uPlandaten/Aenderungen.h"
#include "uPlandaten/Anrechnungen.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Besitzer.h"
#include "uPlandaten/Bloecke.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Kalender.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Perioden.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Ressourcen.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Stundentafeln.h"
#include "uPlandaten/Teams.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlandaten/Vertretungen.h"
#include "uPlandaten/Zeitrahmen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace {

/// A new object in the list that owns it.
template <class T, class TList>
T* Add(TVELPlan& APlan, TList& AList, const std::string& ACode) {
  T* const Object = Create<T>(&APlan);
  Object->FKuerzel = ACode;
  AList.Add(Object);
  return Object;
}

/// Codes or names of a list's items in order.
std::string Codes(const TQuillonDataList& AList) {
  std::string Text;
  for (const TQuillonDataObject* Object : AList.Items()) {
    Text += (Text.empty() ? "" : " ") + static_cast<const TVELDataObject*>(Object)->FCustomID;
  }
  return Text;
}

TEST(PlanReleases, NewerFilesAreRefusedWithBothNumbers) {
  for (const char* Release : {"6.0.173", "6.1", "7", "7.0.164"}) {
    try {
      Load(Release, "");
      ADD_FAILURE() << Release;
    } catch (const EDataFormatError& Error) {
      EXPECT_EQ(std::string(Error.what()), "Neues Datenformat \"" + std::string(Release) +
                                               "\" erkannt, aber diese Velmora Version erwartet Datenformat "
                                               "\"6.0.172\". Bitte updaten Sie Velmora.");
    }
  }
  for (const char* Release : {"", "6.0.172", "7.0.163", "5.9.999", "garbage"}) {
    const TPlan Plan = Load(Release, "");
    EXPECT_EQ(Plan->FDataformatVersion, "6.0.172");
    EXPECT_TRUE(Plan->FLogging);
    EXPECT_FALSE(Plan->IsChangeTrackingLocked());
  }
}

/// What a file of a release and one of the release after it get from the same rows.
struct TUpgrade {
  const char* Name;
  std::string Body;
  std::function<std::string(TVELPlan&)> Show;
  std::vector<std::pair<const char*, const char*>> Expected;  ///< by release
};

TEST(PlanReleases, OldRowsMeanWhatTheyMeant) {
  const auto Change = [](const std::string& AClass, const std::string& ARows) {
    return List("Changes", Item(AClass, 1, ARows));
  };
  const auto StandIn = [](TVELPlan& APlan) {
    const auto& It = *static_cast<TVELVertretung*>(APlan.FAenderungen.GetItem(0));
    return std::to_string(It.FVertretungsmerkmal) + std::to_string(It.FVertretungslehrermerkmal) +
           (It.FTauschTerminLehrer ? "L" : "") + (It.FTauschTerminRaum ? "R" : "");
  };
  const auto Lists = [](TVELPlan& APlan) {
    const auto& It = *APlan.FAenderungen.GetItem(0);
    std::string Text;
    for (const TVELPlanobjektliste* Objects : {&It.FNeu, &It.FOriginal, &It.FFehlend}) {
      for (const TQuillonDataObject* Object : Objects->Items()) {
        Text += Object->GetPublicClassName().substr(0, 2);
      }
      Text += "|";
    }
    return Text + (It.FATermin != nullptr ? "T" : "");
  };
  const auto Lesson = [](TVELPlan& APlan) {
    const auto& It = *APlan.FVeranstaltungen.GetItem(0);
    return It.FGruppe + std::to_string(It.FKursNr);
  };
  const std::string FourLists = List("Teacher", Item("Teacher", 2)) + List("Classes", Item("Class", 3)) +
                                List("Rooms", Item("Room", 4)) + List("Resources", Item("Resource", 5)) +
                                List("Student", Item("Student", 6));
  const TUpgrade Upgrades[] = {
      {"status",
       Change("Message", "<State>2</State><NotPublic>1</NotPublic>"),
       [](TVELPlan& APlan) {
         const auto& It = *APlan.FAenderungen.GetItem(0);
         return std::to_string(It.FAenderungsstatus) + (It.FNotPublic ? "n" : "");
       },
       {{"6.0.52", "3"}, {"6.0.53", "2n"}}},
      {"flag of the status",
       Change("RoomChange", "<State>3</State><NotPublic>1</NotPublic>"),
       [](TVELPlan& APlan) { return std::string(APlan.FAenderungen.GetItem(0)->FNotPublic ? "n" : "-"); },
       {{"6.0.126", "-"}, {"6.0.127", "n"}}},
      {"whole class",
       List("LessonsTable",
            Item("LessonsTable", 1,
                 "<Code/>" + List("Entries", Item("LessonsTableEntry", 2, "<WholeClass>0</WholeClass>")))),
       [](TVELPlan& APlan) { return APlan.FStundentafeln.GetItem(0)->FEintraege.GetItem(0)->FGruppe; },
       {{"6.0.100", "G"}, {"6.0.101", ""}}},
      {"group of a lesson",
       List("Events", Item("Event", 1, "<CourseNo>-1</CourseNo><Group>x</Group>")),
       Lesson,
       {{"6.0.100", "G0"}, {"6.0.101", "x0"}, {"6.0.164", "x0"}, {"6.0.165", "x-1"}}},
      {"group of a lesson with rooms by the program",
       List("Events", Item("Event", 1, "<CourseNo>-1</CourseNo><EventAttributes>512</EventAttributes>")),
       Lesson,
       {{"6.0.100", "0"}}},
      {"lists of a message", Change("Message", FourLists), Lists, {{"6.0.113", "TeClRoRe|||"}, {"6.0.114", "|||"}}},
      {"lists of an additional lesson",
       Change("AdditionalLesson", FourLists),
       Lists,
       {{"6.0.113", "|TeClRoReSt||"}, {"6.0.114", "|||"}}},
      {"new and original",
       Change("AdditionalLesson", List("New", Item("Class", 3))),
       Lists,
       {{"6.0.143", "|Cl||"}, {"6.0.144", "Cl|||"}}},
      {"objects of a substitution",
       Change("Stand-in",
              Element("Teacher", "Teacher", 2) + Element("Room", "Room", 3) + List("GapObjects", Item("Class", 4))),
       Lists,
       {{"6.0.113", "TeRo||Cl|"}, {"6.0.114", "|||"}}},
      {"objects of a supervision",
       Change("SupervisionStandIn", Element("Teacher", "Teacher", 2) + Element("Supervision", "Supervision", 3)),
       Lists,
       {{"6.0.113", "Te|||T"}, {"6.0.114", "|||"}}},
      {"room of a room change",
       Change("RoomChange", Element("Room", "Room", 2)),
       Lists,
       {{"6.0.113", "Ro|||"}, {"6.0.114", "|||"}}},
      {"teachers without release",
       Change("Stand-in", "<StandInTeacherFeature>7</StandInTeacherFeature>"),
       StandIn,
       {{"", "12"}, {"6.0.1", "07"}}},
      {"new time without release",
       Change("Stand-in", Element("NewTime", "Time", 2)),
       StandIn,
       {{"", "10"}, {"6.0.1", "00"}}},
      {"swap of both",
       Change("Stand-in", "<StandInFeature>2</StandInFeature>"),
       StandIn,
       {{"6.0.119", "20LR"}, {"6.0.120", "20"}}},
      {"swap of teachers", Change("Stand-in", "<StandInFeature>3</StandInFeature>"), StandIn, {{"6.0.119", "30L"}}},
      {"swap of rooms", Change("Stand-in", "<StandInFeature>4</StandInFeature>"), StandIn, {{"6.0.119", "40R"}}},
      {"swap by flag",
       Change("Stand-in", "<ChangeRoom>1</ChangeRoom>"),
       StandIn,
       {{"6.0.119", "20R"}, {"6.0.120", "00R"}}},
      {"class of a block",
       List("Blocks", Item("Block", 1, Element("Class", "Class", 2))),
       [](TVELPlan& APlan) {
         return std::string(APlan.FBlockungen.IsEmpty()                        ? "gone"
                            : APlan.FBlockungen.GetItem(0)->FKlasse != nullptr ? "c"
                                                                               : "-");
       },
       {{"6.0.134", "c"}, {"6.0.135", "-"}}},
      {"lines of an entry",
       Element("Calendar", "Calendar", 1,
               List("Entries", Item("CalendarEvent", 2, "<Description>a, b</Description><Address/>"))),
       [](TVELPlan& APlan) {
         const auto& It = *APlan.FKalender->FEintraege.GetItem(0);
         return std::to_string(It.FBeschreibung.size()) + std::to_string(It.FAdresse.size());
       },
       {{"6.0.139", "10"}, {"6.0.140", "20"}}},
      {"groups of a room",
       List("Rooms", Item("Room", 1,
                          "<Code/><Level>2</Level>" + Element("Group", "Group", 2) + List("Groups", Item("Group", 3)))),
       [](TVELPlan& APlan) {
         const TVELRaum& Room = *APlan.FRaeume.GetItem(0);
         std::string Text = Room.FEbene;
         for (const TVELTeam* Team : Room.FTeams) {
           Text += QuillonGuid::Braced(Team->ID()).substr(36, 1);
         }
         return Text;
       },
       {{"6.0.167", "2"}, {"6.0.168", "3"}, {"6.0.170", "3"}, {"6.0.171", "23"}}},
      {"two sites",
       Element("Owner", "Owner", 1, "<Site>s</Site>"),
       [](TVELPlan& APlan) { return APlan.FBesitzer->FDienststelle + "/" + APlan.FBesitzer->FSite; },
       {{"6.0.169", "/s"}, {"6.0.170", "s/s"}}},
  };
  for (const TUpgrade& Upgrade : Upgrades) {
    for (const auto& [Release, Expected] : Upgrade.Expected) {
      const TPlan Plan = Load(Release, Upgrade.Body);
      EXPECT_EQ(Upgrade.Show(*Plan), Expected) << Upgrade.Name << " of " << Release;
    }
  }
}

TEST(PlanReleases, SettingsOfOldFilesGetTheNewNames) {
  const auto Source = CreateStorage<TVELPlan>();
  Source->FEinstellungen->FBezeichnungen = {"a"};
  Source->FEinstellungen->FWochenPrefix = "KW";
  const std::string Document = Source->SaveToXML();
  const auto LoadAs = [&](const std::string& ARelease) {
    std::string Older = Document;
    Older.replace(Older.find("6.0.172"), 7, ARelease);
    auto Plan = CreateStorage<TVELPlan>();
    Plan->LoadFromXML(Older, "test");
    return Plan;
  };
  EXPECT_EQ(LoadAs("6.0.123")->FEinstellungen->FBezeichnungen.size(), 4U);
  EXPECT_EQ(LoadAs("6.0.124")->FEinstellungen->FBezeichnungen.size(), 1U);
  EXPECT_EQ(LoadAs("6.0.171")->FEinstellungen->FWochenPrefix, "[KW %s]");
  EXPECT_EQ(LoadAs("6.0.172")->FEinstellungen->FWochenPrefix, "KW");
}

TEST(PlanReleases, ASnapshotOfAnOlderProgramIsBroughtUpToDate) {
  uPlandaten::RegisterClasses(TQuillonDataClassRegistry::Instance());
  const auto Plan = CreateStorage<TVELPlan>();
  Plan->FEinstellungen->FWochenPrefix = "prefix";
  Plan->FBesitzer->FDienststelle = "office";
  for (const int Day : {46'000, 46'001}) {
    auto* const Absence = Create<TVELLehrerfehlzeit>(Plan.get());
    Absence->FStart = Day;
    Plan->FFehlzeiten.Append(Absence);
  }
  TQuillonMemoryStream Stream;
  Plan->SaveToMemorySnapshot(Stream);
  Plan->LoadFromMemorySnapshot(Stream);
  EXPECT_EQ(Plan->FFehlzeiten.GetItem(0)->FStart, 46'000) << "a state of today comes back as it was";
  std::string Bytes = Stream.TakeContent();
  const auto Replace = [&](const std::string& AFrom, const std::string& ATo) {
    Bytes.replace(Bytes.find(AFrom), AFrom.size(), ATo);
  };
  const std::string Length("\x06\0\0\0", 4);
  Replace(QuillonText::ToUtf16LE(TVELPlan::CurrentRelease), QuillonText::ToUtf16LE("6.0.134"));
  Replace(Length + QuillonText::ToUtf16LE("prefix"), "");
  Replace(Length + QuillonText::ToUtf16LE("office"), "");
  TQuillonMemoryStream Old(Bytes);
  Plan->LoadFromMemorySnapshot(Old);
  EXPECT_EQ(Plan->FBesitzer->FDienststelle, "");
  EXPECT_EQ(Plan->FFehlzeiten.GetItem(0)->FStart, 46'001);
}

TEST(Plan, DefaultsOfFilesAreNotAlwaysThoseOfNewObjects) {
  const TPlan Plan =
      Load("6.0.172", List("TimeFrame", Item("TimeFrame", 1,
                                             "<Code/><LessonsPerDay>1</LessonsPerDay><MinutesPerHour>2"
                                             "</MinutesPerHour><UnitsPerHour>3</UnitsPerHour><FirstHour>"
                                             "4</FirstHour><MorningLessonTo>5</MorningLessonTo>" +
                                                 List("Positions", Item("PositionScheme", 2)))) +
                          List("Periods", Item("Period", 3, "<Code/><Weeks>" + std::string(55, '1') + "</Weeks>")) +
                          List("Classes", Item("Class", 4, "<Code/>")));
  EXPECT_EQ(Plan->FZeitrahmen.GetItem(0)->FPositionsschemata.GetItem(0)->FDauer, 2);
  EXPECT_EQ(Create<TVELPositionsschema>(Plan.get())->FDauer, 90);
  EXPECT_TRUE(Plan->FPerioden.GetItem(0)->FWochen.IsEmpty());
  EXPECT_EQ(Plan->FKlassen.GetItem(0)->FStufe, -1);
  EXPECT_EQ(Plan->FKlassen.GetItem(0)->FFaktor, 1);
}

TEST(Plan, FindsMasterDataByCode) {
  const auto Plan = CreateStorage<TVELPlan>();
  TVELRaumliste& Rooms = Plan->FRaeume;
  EXPECT_EQ(Rooms.Find("", false, false), nullptr);
  EXPECT_EQ(Rooms.GetUniqueKuerzel(), "Neu1");
  TVELRaum* const Room = Add<TVELRaum>(*Plan, Rooms, "1 0a");
  TVELRaum* const Upper = Add<TVELRaum>(*Plan, Rooms, "10A");
  TVELRaum* const Umlaut = Add<TVELRaum>(*Plan, Rooms, "Bü ro+");
  EXPECT_EQ(Rooms.Find("10 a", false, true), Room);
  EXPECT_EQ(Rooms.Find("10A", false, true), Upper);
  EXPECT_EQ(Rooms.Find("10A", false, false), Room);
  EXPECT_EQ(Rooms.Find("10A", false, false, Room), Upper);
  EXPECT_EQ(Rooms.Find("10", false, true), nullptr);
  EXPECT_EQ(Rooms.Find("10", true, true), Room);
  EXPECT_EQ(Rooms.Find("10abc", true, true), nullptr);
  EXPECT_EQ(Rooms.Find("bÜRO+", false, false), Umlaut);
  EXPECT_TRUE(Rooms.Contains("10A", false, Upper));
  EXPECT_FALSE(Rooms.Contains("10A", true, Upper));
  EXPECT_EQ(Rooms.Find(Upper->ID()), Upper);
  EXPECT_EQ(Rooms.WebFind("B ü ro+", true), Umlaut);
  EXPECT_EQ(Rooms.WebFind("Buero%2B", true), Umlaut);
  EXPECT_EQ(Rooms.WebFind("BUERO%2b", true), Umlaut);  // the web name never minds case
  EXPECT_EQ(Rooms.WebFind("nobody", false), nullptr);
  EXPECT_TRUE(Rooms.Validate(Room, ""));
  EXPECT_TRUE(Rooms.Validate(Room, "1 0a"));
  EXPECT_TRUE(Rooms.Validate(Room, "10a"));
  EXPECT_FALSE(Rooms.Validate(Room, "10A"));
  Add<TVELRaum>(*Plan, Rooms, "Neu1");
  Add<TVELRaum>(*Plan, Rooms, "neu 2");
  EXPECT_EQ(Rooms.GetUniqueKuerzel(), "Neu3");
  Upper->FBrenmarkID = 5;
  Upper->FCustomID = "c";
  Upper->FUserName = "User";
  EXPECT_EQ(Rooms.FindBrenmarkID(5), Upper);
  EXPECT_EQ(Rooms.FindBrenmarkID(0), Room);
  EXPECT_EQ(Rooms.FindBrenmarkID(9), nullptr);
  EXPECT_EQ(Rooms.FindCustomID("c"), Upper);
  EXPECT_EQ(Rooms.FindCustomID(""), Room);
  EXPECT_EQ(Rooms.FindUser("uSER", false), Upper);
  EXPECT_EQ(Rooms.FindUser("uSER", true), nullptr);
  EXPECT_EQ(Rooms.FindUser("", true, Room), Umlaut);
  Rooms.SetItem(4, nullptr);
  Rooms.ClearAll(TVELKlasse::Class());
  EXPECT_EQ(Rooms.Count(), 5);
  Rooms.ClearAll(TVELStammobjekt::Class());
  EXPECT_EQ(Rooms.Count(), 1) << "a place without item has no class";

  TVELSchueler* const Student = Add<TVELSchueler>(*Plan, Plan->FSchueler, "Web");
  Student->FSchuelerNr = "4 2";
  Student->FVorname = "Änne";
  Student->FNachname = "Groß";
  EXPECT_EQ(Plan->FSchueler.WebFind("4 2", true), Student);
  EXPECT_EQ(Plan->FSchueler.WebFind("42", true), nullptr);
  EXPECT_EQ(Plan->FSchueler.WebFind("wEB", true), Student);
  EXPECT_EQ(Plan->FSchueler.FindName("äNNE", "groß", false), Student);
  EXPECT_EQ(Plan->FSchueler.FindName("äNNE", "groß", true), nullptr);
}

TEST(Plan, LessonsFallBackStepByStep) {
  const auto Plan = CreateStorage<TVELPlan>();
  auto* const Lesson = Create<TVELVeranstaltung>(Plan.get());
  Plan->FVeranstaltungen.Add(Lesson);
  auto* const Time = Create<TVELTermin>(Plan.get());
  Lesson->FTermine.Add(Create<TVELTermin>(Plan.get()));
  Lesson->FTermine.SetItem(0, nullptr);
  EXPECT_EQ(Lesson->FTermine.Extract(0), nullptr);
  Lesson->FTermine.Add(Time);
  EXPECT_EQ(Time->Veranstaltung(), Lesson);
  EXPECT_EQ(Time->Weeks(), TVELWeeks::All());
  Lesson->FWochen.Include(3);
  EXPECT_EQ(Time->Weeks(), Lesson->FWochen);
  auto* const Period = Add<TVELPeriode>(*Plan, Plan->FPerioden, "P");
  Period->FWochen.Include(7);
  Lesson->FPeriode = Period;
  EXPECT_EQ(Time->GetPeriode(), Period);
  EXPECT_EQ(Time->Weeks(), Period->FWochen);
  Time->FWochen.Include(9);
  EXPECT_EQ(Time->Weeks(), Time->FWochen);
  Time->FPeriode = Add<TVELPeriode>(*Plan, Plan->FPerioden, "Q");
  EXPECT_TRUE(Time->Weeks().IsEmpty());

  TVELRaum* const Room = Add<TVELRaum>(*Plan, Plan->FRaeume, "R1");
  TVELRaum* const Second = Add<TVELRaum>(*Plan, Plan->FRaeume, "R2");
  EXPECT_EQ(Lesson->DefaultRoom(), nullptr);
  Lesson->FRaeume.Add(Room);
  EXPECT_EQ(Lesson->DefaultRoom(), Room);
  Lesson->FRaum = "R2";
  EXPECT_EQ(Lesson->DefaultRoom(), Second);
  Plan->FVeranstaltungen.Extract(Lesson);
  Plan->FRaeume.Remove(Second);
  Plan->FVeranstaltungen.Add(Lesson);
  EXPECT_EQ(Lesson->DefaultRoom(), nullptr);
  Lesson->FRaum = "r2";
  EXPECT_EQ(Lesson->DefaultRoom(), nullptr);
  Lesson->FRaum = "/";
  EXPECT_EQ(Lesson->DefaultRoom(), nullptr);
  EXPECT_TRUE(Time->IgnoreRoom());

  TVELZeitrahmen* const Standard = Plan->StandardTimeframe();
  EXPECT_EQ(Time->Zeitrahmen(), Standard);
  TVELKlasse* const Class = Add<TVELKlasse>(*Plan, Plan->FKlassen, "5a");
  Lesson->FKlassen.Add(Class);
  EXPECT_EQ(Time->Zeitrahmen(), Standard);
  Class->FZeitrahmen = Create<TVELZeitrahmen>(Plan.get());
  Class->FStufe = 5;
  EXPECT_EQ(Time->Zeitrahmen(), Class->FZeitrahmen);
  TVELSchueler* const Student = Add<TVELSchueler>(*Plan, Plan->FSchueler, "s");
  EXPECT_EQ(Student->Timeframe(), Standard);
  EXPECT_EQ(Student->Klassenstufe(), -1);
  Student->FKlasse = Class;
  EXPECT_EQ(Student->Timeframe(), Class->FZeitrahmen);
  EXPECT_EQ(Student->Klassenstufe(), 5);

  Lesson->FFach = Add<TVELFach>(*Plan, Plan->FFaecher, "Ma");
  Lesson->FKursNr = 2;
  Lesson->FExtern = "x";
  EXPECT_EQ(Lesson->KursTitel(), "Ma2");
  EXPECT_EQ(Lesson->SortText(), "5aMa2x");
  Lesson->FUnterrichtsart = Add<TVELUnterrichtsart>(*Plan, Plan->FVerzeichnisse->FUnterrichtsarten, "LK");
  EXPECT_EQ(Lesson->KursTitel(), "Ma2");
  Plan->FEinstellungen->FLKUnterrichtsart2 = Lesson->FUnterrichtsart;
  EXPECT_EQ(Lesson->KursTitel(), "MA2");
  Plan->FEinstellungen->FStandardUnterrichtsart = Lesson->FUnterrichtsart;
  EXPECT_EQ(Lesson->KursTitel(), "ma2");
  EXPECT_EQ(Lesson->PlainKursTitel(), "Ma2");
}

TEST(Plan, SixListsAreOrderedAfterALoad) {
  const auto Row = [](const std::string& AName, const std::string& AText) {
    return "<" + AName + ">" + AText + "</" + AName + ">";
  };
  const auto Dated = [&](const std::string& AClass, int AnID, const std::string& AName, int ADay,
                         const std::string& ARows = {}) {
    return Item(AClass, AnID,
                Row("CID", AName) + ARows + Row("Start", "2026-01-0" + std::to_string(ADay)) +
                    Row("End", "2026-02-0" + std::to_string(ADay)));
  };
  const std::string Hours = Row("Hours", "0") + Row("Lessons", "1");
  const TPlan Plan =
      Load("6.0.172",
           List("Changes", Dated("Message", 3, "c", 1) + Dated("Stand-in", 2, "b", 1, Row("StandInFeature", "1")) +
                               Dated("Message", 9, "first", 2) + Dated("Message", 1, "a", 1)) +
               List("Totals", Dated("Total", 11, "b", 1, Hours) + Dated("Total", 12, "a", 2, Hours)) +
               List("AbsenceTimes", Dated("ClassAbsenceTime", 21, "n", 1, Element("Class", "Class", 51)) +
                                        Dated("ClassAbsenceTime", 22, "m", 1, Element("Class", "Class", 50)) +
                                        Dated("ClassAbsenceTime", 23, "l", 3)) +
               Element("Calendar", "Calendar", 30,
                       List("Entries", Dated("CalendarEvent", 31, "z", 1, Row("Description", "z")) +
                                           Dated("CalendarEvent", 32, "y", 1, Row("Description", "y")) +
                                           Dated("CalendarEvent", 33, "x", 2))) +
               List("Classes",
                    Item("Class", 50,
                         Row("Code", "a") + List("Events", Item("Event", 41) + Item("Event", 43) + Item("Event", 42))) +
                        Item("Class", 51, Row("Code", "b"))) +
               List("Events", Item("Event", 41, Row("CID", "3") + Row("BlockIndex", "1")) +
                                  Item("Event", 42, Row("CID", "2") + Row("External", "b")) +
                                  Item("Event", 43, Row("CID", "1") + Row("External", "B"))) +
               List("AssignmentList", Dated("Assignment", 61, "b", 1) + Dated("Assignment", 62, "a", 2)));
  EXPECT_EQ(Codes(Plan->FAenderungen), "first a b c");
  EXPECT_EQ(Codes(Plan->FAnrechnungen), "a b");
  EXPECT_EQ(Codes(Plan->FFehlzeiten), "l m n");
  EXPECT_EQ(Codes(Plan->FKalender->FEintraege), "x y z");
  EXPECT_EQ(Codes(Plan->FVeranstaltungen), "1 2 3");
  EXPECT_EQ(Codes(Plan->FZuweisungen), "a b");
  EXPECT_EQ(Codes(Plan->FKlassen.GetItem(0)->FVeranstaltungen), "1 2 3");  // bare when this list was read
}

TEST(Plan, AppointmentsAndParticipantsGoByThemselves) {
  const TPlan Plan = CreateStorage<TVELPlan>();
  auto* const Lesson = Create<TVELVeranstaltung>(Plan.get());
  Plan->FVeranstaltungen.Add(Lesson);
  TVELTerminliste& List = Lesson->FTermine;
  for (const auto& [Name, Day, End] : {std::tuple("unplanned", velNoDay, 0.0), std::tuple("late", velTuesday, 0.4),
                                       std::tuple("same", velMonday, 0.5), std::tuple("same too", velMonday, 0.5),
                                       std::tuple("neither", velNoDay, 0.0), std::tuple("early", velMonday, 0.4)}) {
    auto* const Appointment = Create<TVELTermin>(Plan.get());
    Appointment->FCustomID = Name;
    Appointment->FWochentag = Day;
    Appointment->FEnde = End;
    Appointment->FStart = End / 2;
    List.Add(Appointment);
  }
  const auto IsInOrder = [&](int A, int B) {
    return TVELTerminliste::CompareItems(*List.GetItem(A), *List.GetItem(B)) < 0 &&
           TVELTerminliste::CompareItems(*List.GetItem(B), *List.GetItem(A)) > 0;
  };
  EXPECT_TRUE(IsInOrder(5, 2) && IsInOrder(2, 3) && IsInOrder(3, 1) && IsInOrder(1, 0) && IsInOrder(0, 4));
  List.SortByTime();
  EXPECT_EQ(Codes(List), "early same same too late unplanned neither");
  List.RemoveItem(*List.GetItem(3));
  EXPECT_EQ(Codes(List), "early same same too unplanned neither");

  auto* const Entry = Create<TVELKalendereintrag>(Plan.get());
  Plan->FKalender->FEintraege.Add(Entry);
  auto* const Teacher = Add<TVELLehrer>(*Plan, Plan->FLehrer, "t");
  for (TVELDataObject* Who : {static_cast<TVELDataObject*>(Teacher), static_cast<TVELDataObject*>(Lesson),
                              static_cast<TVELDataObject*>(Teacher)}) {
    auto* const Participant = Create<TVELTeilnehmer>(Plan.get());
    Participant->FDataObject = Who;
    Entry->FTeilnehmer.Add(Participant);
  }
  Entry->FTeilnehmer.RemoveReference(*Teacher);
  ASSERT_EQ(Entry->FTeilnehmer.Count(), 1);
  EXPECT_EQ(Entry->FTeilnehmer.GetItem(0)->FDataObject, Lesson);
}

TEST(Plan, HostileShapesLiveAndSaveTheSame) {
  const std::string Lesson =
      Item("Event", 1,
           List("Times", Item("Time", 2, "<SetDuration>1</SetDuration>")) + Element("Subject", "Subject", 1) +
               Element("SchoolType", "SchoolType", 9) + Element("Block", "Block", 77));
  const std::string Body =
      List("Changes", Item("Stand-in", 5, Element("Time", "Time", 2) + Element("MirrorChange", "Stand-in", 5)) +
                          Item("Message", 5) + Item("Stand-in", 5)) +
      List("Subjects", Item("Subject", 1, "<Code>s</Code>")) +
      List("Classes", Item("Class", 1,
                           "<Code>c</Code>" + List("Events", Item("Event", 1) + Item("Event", 1)) +
                               Element("SchoolType", "SchoolType", 9))) +
      // The lesson comes twice, the second time without the appointment that the change refers to.
      List("Events", Lesson + Lesson + Item("Event", 1)) +
      Element("Directories", "Directories", 1,
              List("SchoolTypes", Item("SchoolType", 9, "<Code>form</Code>")) +
                  List("SchulTypes", Item("SchoolType", 9, "<Code>type</Code>"))) +
      Element("Settings", "Event", 1);
  EXPECT_THROW(Load("6.0.172", Body), EQuillonDataObjectReaderError);  // settings of another class
  const TPlan Plan = Load("6.0.172", Body.substr(0, Body.find("<Settings")));
  EXPECT_EQ(Plan->FKlassen.GetItem(0)->FSchulform->FKuerzel, "form");
  EXPECT_EQ(Plan->FVerzeichnisse->FSchultypen.GetItem(0)->FKuerzel, "type");
  EXPECT_EQ(Plan->FVeranstaltungen.Count(), 3);
  EXPECT_EQ(Plan->FAenderungen.Count(), 3);
  const std::string Saved = Plan->SaveToXML();
  Plan->LoadFromXML(Saved, "test");
  EXPECT_EQ(Plan->SaveToXML(), Saved);
}

}  // namespace
