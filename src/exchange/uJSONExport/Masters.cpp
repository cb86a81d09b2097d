#include <concepts>

#include "uJSONExport/Run.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Gebaeude.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Ressourcen.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Teams.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlandaten/Zeitrahmen.h"
#include "uPlaneintraege/Texte.h"

namespace uJSONExport {

namespace {

/// True for those that stand in the document only if a lesson or course names them.
template <class T>
constexpr bool NeedsMark = std::derived_from<T, TVELPlanobjekt> && !std::same_as<T, TVELRessource>;

void WriteNames(TNode& ANode, const TVELStammobjekt& AnObject) {
  ANode.Text("code", AnObject.FKuerzel);
  ANode.Text("description", AnObject.FBezeichnung);
}

void WriteTeams(TNode& ANode, const TVELTeamsliste& ATeams) { ANode.List("teamRefs", References(ATeams)); }

void Describe(TNode& ANode, const TRun& ARun, const TVELLehrer& ATeacher) {
  ANode.Text("code", ATeacher.FKuerzel);
  if (!ARun.Export.NoTeacher) {
    ANode.Text("title", ATeacher.FTitel);
    ANode.Text("firstName", ATeacher.FVorname);
    ANode.Text("middleName", ATeacher.FMittelname);
    ANode.Text("lastName", ATeacher.FNachname);
  }
  WriteTeams(ANode, ATeacher.FTeams);
  ANode.Colour("color", ATeacher.FFarbe);
}

void Describe(TNode& ANode, const TRun& /*ARun*/, const TVELRaum& ARoom) {
  WriteNames(ANode, ARoom);
  ANode.Reference("buildingRef", ARoom.FGebaeude);
  ANode.Text("level", ARoom.FEbene);
  WriteTeams(ANode, ARoom.FTeams);
  ANode.Colour("color", ARoom.FFarbe);
}

void Describe(TNode& ANode, const TRun& /*ARun*/, const TVELFach& ASubject) {
  WriteNames(ANode, ASubject);
  WriteTeams(ANode, ASubject.FTeams);
  ANode.Colour("color", ASubject.FFarbe);
}

void Describe(TNode& ANode, const TRun& /*ARun*/, const TVELTeam& ATeam) { WriteNames(ANode, ATeam); }

void Describe(TNode& ANode, const TRun& /*ARun*/, const TVELRessource& AResource) {
  WriteNames(ANode, AResource);
  ANode.Colour("color", AResource.FFarbe);
}

void Describe(TNode& ANode, const TRun& /*ARun*/, const TVELGebaeude& ABuilding) {
  WriteNames(ANode, ABuilding);
  ANode.Text("campus", ABuilding.FCampus);
}

void Describe(TNode& ANode, const TRun& /*ARun*/, const TVELKlasse& AClass) {
  WriteNames(ANode, AClass);
  ANode.Colour("color", AClass.FFarbe);
  TNodes Teams;
  Teams.Text(Identifier(AClass.FTeam));
  ANode.List("teamRefs", Teams);
}

void Describe(TNode& ANode, const TRun& /*ARun*/, const TVELSchueler& AStudent) {
  ANode.Text("firstName", AStudent.FVorname);
  ANode.Text("middleName", AStudent.FMittelname);
  ANode.Text("lastName", AStudent.FNachname);
  ANode.Text("name", AStudent.FBezeichnung);
  ANode.Text("classCode", CodeOf(AStudent.FKlasse));
  ANode.Text("studentNo", AStudent.FSchuelerNr);
}

template <class T>
bool IsShown(const TRun& ARun, const T& AnObject) {
  if constexpr (NeedsMark<T>) {
    if (ARun.Export.Filtering && AnObject.FTag == 0) {
      return false;
    }
  }
  if constexpr (std::derived_from<T, TVELPlanobjekt>) {
    if (AnObject.FNichtVerfuegbar) {
      return false;
    }
  }
  return ARun.Teams.Passes(AnObject);
}

template <class T>
TNode Master(const TRun& ARun, const TVELZeitrahmen* AStandard, const T& AnObject) {
  TNode Node;
  Node.Reference("id", &AnObject);
  WriteExternalId(Node, AnObject);
  if constexpr (std::derived_from<T, TVELPlanobjekt>) {
    if (const TVELZeitrahmen* const Frame = AnObject.Timeframe(); Frame != AStandard) {
      Node.Text("timeframeCode", CodeOf(Frame));
    }
  }
  Describe(Node, ARun, AnObject);
  return Node;
}

template <class TList>
void WriteList(TNode& ANode, const TRun& ARun, std::string_view AName, const TList& AList) {
  const TVELZeitrahmen* const Standard = ARun.Plan.StandardTimeframe();
  TNodes Items;
  for (const auto* Object : AList) {
    if (IsShown(ARun, *Object)) {
      Items.Add(Master(ARun, Standard, *Object));
    }
  }
  ANode.List(AName, Items);
}

TNode Course(const TVELVeranstaltung& ALesson) {
  TNode Node;
  Node.Reference("id", &ALesson);
  WriteExternalId(Node, ALesson);
  Node.Text("title", uPlaneintraege::CourseTitle(ALesson));
  Node.Text("description", ALesson.FInfo);
  Node.Reference("subjectRef", ALesson.FFach);
  Node.Reference("courseTypeRef", ALesson.FUnterrichtsart);
  Node.Text("url", ALesson.FLink);
  Node.Text("remarks", ALesson.FBemerkung);
  Node.Text("courseNr", ALesson.FVeranstaltungsNr);
  Node.Text("group", ALesson.FGruppe);
  Node.List("studentRefs", References(ALesson.FSchueler));
  return Node;
}

}  // namespace

void WriteCourses(TNode& ANode, const TRun& ARun) {
  TNodes Courses;
  for (const TVELVeranstaltung* Lesson : ARun.Plan.FVeranstaltungen) {
    if (ARun.Export.AllLessons || ARun.Export.CourseList.contains(Lesson)) {
      Courses.Add(Course(*Lesson));
      for (TVELSchueler* Student : Lesson->FSchueler) {
        Student->FTag = 1;
      }
    }
  }
  ANode.WholeList("courses", Courses);
}

void WriteMasters(TNode& ANode, const TRun& ARun) {
  WriteList(ANode, ARun, "teachers", ARun.Plan.FLehrer);
  WriteList(ANode, ARun, "rooms", ARun.Plan.FRaeume);
  WriteList(ANode, ARun, "subjects", ARun.Plan.FFaecher);
  WriteList(ANode, ARun, "teams", ARun.Plan.FTeams);
  WriteList(ANode, ARun, "resources", ARun.Plan.FRessourcen);
  WriteList(ANode, ARun, "buildings", ARun.Plan.FGebaeude);
  WriteList(ANode, ARun, "classes", ARun.Plan.FKlassen);
  if (ARun.Export.StudentNames) {
    WriteList(ANode, ARun, "students", ARun.Plan.FSchueler);
  }
}

}  // namespace uJSONExport
