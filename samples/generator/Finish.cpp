#include "School.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Ressourcen.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Veranstaltungen.h"

namespace SchoolGenerator {

namespace {

/// Hands out the stamps of the objects: made in the summer by a few people, changed some time later.
class TStamps {
 public:
  void Set(TQuillonDataAbstractObject& AnObject) {
    ++FCount;
    AnObject.FCreated = At(FirstDay - 60 + FCount % 30, 480 + FCount % 480);
    AnObject.FChanged = At(FirstDay - 30 + FCount % 25, 500 + FCount % 450);
    // Most objects came from an import, where nobody had logged in.
    AnObject.FCreatedBy = FCount % 11 == 0 ? FUsers[static_cast<std::size_t>(FCount % 3)] : TQuillonUserName();
    AnObject.FChangedBy = FCount % 7 == 0 ? FUsers[static_cast<std::size_t>(FCount % 5) % 3] : TQuillonUserName();
    for (const TQuillonDataRow& Row : AnObject.DataClass().Rows()) {
      if (Row.Kind == TQuillonRowKind::Object) {
        Set(*Row.As<TQuillonDataRow::TPointer>().Get(AnObject));
      } else if (Row.Kind == TQuillonRowKind::List) {
        SetList(Row.As<TQuillonDataRow::TItems>().Field(AnObject), AnObject);
      }
    }
  }

 private:
  /// A list has the stamps of its object, as it has when it is read.
  void SetList(TQuillonDataList& AList, const TQuillonDataAbstractObject& AnObject) {
    AList.FCreated = AnObject.FCreated;
    AList.FCreatedBy = AnObject.FCreatedBy;
    AList.FChanged = AnObject.FChanged;
    AList.FChangedBy = AnObject.FChangedBy;
    if (AList.IsItemOwner()) {
      for (TQuillonDataObject* Item : AList.Items()) {
        Set(*Item);
      }
    }
  }

  const std::array<TQuillonUserName, 3> FUsers = {TQuillonUserName("planung"), TQuillonUserName("k.weiß"),
                                                  TQuillonUserName("Müller, J.")};
  int FCount = 0;
};

template <class TList>
void EnterIn(const TList& AnObjects, TVELVeranstaltung& ALesson) {
  for (auto* Object : AnObjects) {
    Object->FVeranstaltungen.Append(&ALesson);
  }
}

}  // namespace

// The lists were filled without hooks: back references that follow every step would be sorted by texts still to come.
void LinkObjects(TSchool& ASchool) {
  TVELPlan& Plan = ASchool.Plan;
  Plan.SortLists();
  // In the order of the plan's list, so that the lists of the objects are sorted too.
  for (TVELVeranstaltung* Lesson : Plan.FVeranstaltungen) {
    EnterIn(Lesson->FKlassen, *Lesson);
    EnterIn(Lesson->FLehrer, *Lesson);
    EnterIn(Lesson->FRaeume, *Lesson);
    EnterIn(Lesson->FSchueler, *Lesson);
    EnterIn(Lesson->FRessourcen, *Lesson);
    if (Lesson->FFach != nullptr) {
      Lesson->FFach->FVeranstaltungen.Append(Lesson);
    }
  }
  for (TVELFehlzeit* Absence : Plan.FFehlzeiten) {
    Absence->Objekt()->FFehlzeiten.Append(Absence);
  }
}

void StampObjects(TSchool& ASchool) {
  TStamps().Set(ASchool.Plan);
  ASchool.Plan.FFileVersion = 1;
}

}  // namespace SchoolGenerator
