#include "uOstrel/ImportColumns.h"

#include <array>
#include <type_traits>
#include <unordered_set>

#include "uPlandaten/Faecher.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Teams.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace uOstrel {

namespace {

/// A column for a member whose type decides how the cell is read.
template <class T, auto Member>
constexpr TImportColumn<T> Field(std::string_view AName) {
  using TValue = std::remove_cvref_t<decltype(std::declval<T&>().*Member)>;
  if constexpr (std::is_same_v<TValue, std::string> || std::is_same_v<TValue, std::int32_t>) {
    constexpr TCellKind Kind = std::is_same_v<TValue, std::string> ? TCellKind::Text : TCellKind::Integer;
    return {AName, Kind, [](TImport&, T& O, const TCell& C) { O.Set(O.*Member, std::get<TValue>(C)); }};
  } else {
    return {AName, TCellKind::Timepoint,
            [](TImport&, T& O, const TCell& C) { O.Set(O.*Member, TVELDate(std::get<double>(C))); }};
  }
}

/// A column that names an object of one of the plan's lists.
template <class T, auto Member, auto List>
constexpr TImportColumn<T> Reference(std::string_view AName) {
  using TItem = std::remove_pointer_t<std::remove_cvref_t<decltype(std::declval<T&>().*Member)>>;
  return {AName, TCellKind::Id, [](TImport& I, T& O, const TCell& C) {
            O.Set(O.*Member, I.Referred<TItem>(I.FPlan.*List, std::get<TGUID>(C)));
          }};
}

template <class T>
constexpr TImportColumn<T> Code() {
  return {"Code", TCellKind::Text,
          [](TImport& I, T& O, const TCell& C) { I.FCodes->Assign(O, I.FIsNew, std::get<std::string>(C)); }};
}

/// A column with the objects that a new course has, as far as the plan knows them.
template <auto Member, auto List>
constexpr TImportColumn<TVELVeranstaltung> CourseList(std::string_view AName) {
  using T = TVELVeranstaltung;
  return {AName, TCellKind::Ids, [](TImport& I, T& O, const TCell& C) {
            const TIds& Named = std::get<TIds>(C);
            if (!I.FIsNew || !Named) {
              return;
            }
            auto& Items = O.*Member;
            Items.Clear();
            std::unordered_set<const TQuillonDataObject*> Listed;
            for (const TGUID& ID : *Named) {
              auto* const Item = I.Referred<TQuillonDataObject>(I.FPlan.*List, ID);
              if (Item != nullptr && Listed.insert(Item).second) {
                Items.Add(Item);
              }
            }
          }};
}

void CheckStudents(TImport& AnImport, const TCell& ACell) {
  if (const TIds& Named = std::get<TIds>(ACell)) {
    for (const TGUID& ID : *Named) {
      if (AnImport.Referred<TVELSchueler>(AnImport.FPlan.FSchueler, ID) == nullptr) {
        throw EQuillonException("The plan has no student " + QuillonGuid::Plain(ID) + ".");
      }
    }
  }
}

void MoveStudents(TImport& AnImport, TVELKlasse& AClass, const TCell& ACell) {
  if (const TIds& Named = std::get<TIds>(ACell)) {
    for (const TGUID& ID : *Named) {
      AnImport.FChanges->Move(*AnImport.Referred<TVELSchueler>(AnImport.FPlan.FSchueler, ID), AClass);
    }
  }
}

}  // namespace

TIdIndex::TIdIndex(const TQuillonDataList& AList) {
  FItems.reserve(AList.Items().size());
  for (TQuillonDataObject* Item : AList.Items()) {
    if (Item != nullptr) {
      Add(*Item);
    }
  }
}

TQuillonDataObject* TIdIndex::Find(const TGUID& AnID) const {
  const auto Found = FItems.find(AnID);
  return Found != FItems.end() ? Found->second : nullptr;
}

TIdIndex& TImport::Index(const TQuillonDataList& AList) {
  const auto Found = FIndexes.find(&AList);
  return Found != FIndexes.end() ? Found->second : FIndexes.emplace(&AList, TIdIndex(AList)).first->second;
}

std::span<const TImportColumn<TVELSchluessel>> CatalogImport() {
  using T = TVELSchluessel;
  // Not the column that the export writes its codes to: the format has it so.
  static constexpr std::array Columns = {
      Field<T, &T::FKuerzel>("InternalCode"),
      Field<T, &T::FBezeichnung>("Name"),
      Field<T, &T::FSchluessel>("StatisticalCode"),
  };
  return Columns;
}

TImportFile<TVELTeam> DepartmentImport() {
  using T = TVELTeam;
  static constexpr std::array Columns = {Code<T>(), Field<T, &T::FBezeichnung>("Name")};
  return {"Departments.csv", Columns};
}

TImportFile<TVELRaum> RoomImport() {
  using T = TVELRaum;
  static constexpr std::array Columns = {
      Code<T>(),
      Field<T, &T::FBezeichnung>("Name"),
      Field<T, &T::FBemerkung>("Notes"),
      Field<T, &T::FKapazitaet>("Capacity"),
  };
  return {"Rooms.csv", Columns};
}

TImportFile<TVELFach> SubjectImport() {
  using T = TVELFach;
  static constexpr std::array Columns = {
      Code<T>(),
      Field<T, &T::FBezeichnung>("Name"),
      Field<T, &T::FSchluessel>("StatisticalCode"),
  };
  return {"Subjects.csv", Columns};
}

TImportFile<TVELLehrer> TeacherImport() {
  using T = TVELLehrer;
  static constexpr std::array Columns = {
      Code<T>(),
      Field<T, &T::FPersonalnummer>("TeacherNo"),
      Field<T, &T::FBemerkung>("Notes"),
      Field<T, &T::FVorname>("FirstName"),
      Field<T, &T::FNachname>("LastName"),
      Field<T, &T::FMittelname>("MiddleName"),
      Field<T, &T::FTitel>("Salutation"),
  };
  return {"Teachers.csv", Columns};
}

TImportFile<TVELKlasse> SchoolClassImport() {
  using T = TVELKlasse;
  static constexpr std::array Columns = {
      Code<T>(),
      Field<T, &T::FBezeichnung>("Description"),
      Field<T, &T::FBemerkung>("Notes"),
      Field<T, &T::FSchulnummer>("SchoolClassNo"),
      Reference<T, &T::FLehrer1, &TVELPlan::FLehrer>("Teacher1Id"),
      Reference<T, &T::FLehrer2, &TVELPlan::FLehrer>("Teacher2Id"),
      Reference<T, &T::FTeam, &TVELPlan::FTeams>("DepartmentId"),
      Reference<T, &T::FRaum, &TVELPlan::FRaeume>("RoomId"),
      TImportColumn<T>{"StudentIdList", TCellKind::Ids, MoveStudents, CheckStudents},
  };
  return {"SchoolClasses.csv", Columns};
}

TImportFile<TVELSchueler> StudentImport() {
  using T = TVELSchueler;
  static constexpr std::array Columns = {
      Field<T, &T::FSchuelerNr>("StudentNo"),  Field<T, &T::FBemerkung>("Notes"),
      Field<T, &T::FVorname>("FirstName"),     Field<T, &T::FNachname>("LastName"),
      Field<T, &T::FMittelname>("MiddleName"), Field<T, &T::FGebDatum>("Birthdate"),
      Field<T, &T::FOrt>("Locality"),          Field<T, &T::FPostleitzahl>("PostalCode"),
      Field<T, &T::FStrasse>("AddressLines"),
  };
  return {"Students.csv", Columns};
}

TImportFile<TVELVeranstaltung> CourseImport() {
  using T = TVELVeranstaltung;
  static constexpr std::array Columns = {
      Field<T, &T::FInfo>("Description"),
      Field<T, &T::FBemerkung>("Notes"),
      Field<T, &T::FLink>("CourseUrl"),
      TImportColumn<T>{"SubjectId", TCellKind::Id,
                       [](TImport& I, T& O, const TCell& C) {
                         O.SetFach(I.Referred<TVELFach>(I.FPlan.FFaecher, std::get<TGUID>(C)));
                       }},
      TImportColumn<T>{"CourseNo", TCellKind::Integer,
                       [](TImport&, T& O, const TCell& C) { O.SetKursNr(std::get<std::int32_t>(C)); }},
      Field<T, &T::FVeranstaltungsNr>("CourseRef"),
      Field<T, &T::FGueltigVon>("StartDate"),
      Field<T, &T::FGueltigBis>("EndDate"),
      Field<T, &T::FGruppe>("CourseGroup"),
      TImportColumn<T>{
          "SchedulePattern", TCellKind::Text,
          [](TImport&, T& O, const TCell& C) { O.Set(O.FReoccur, std::get<std::string>(C) != "OneTimeEvents"); }},
      TImportColumn<T>{"SubjectFocusId", TCellKind::Id,
                       [](TImport& I, T& O, const TCell& C) {
                         O.Set(O.FFachschwerpunkt, I.Referred<TVELFachschwerpunkt>(
                                                       I.FPlan.FVerzeichnisse->FFachschwerpunkte, std::get<TGUID>(C)));
                       }},
      CourseList<&T::FRaeume, &TVELPlan::FRaeume>("RoomIdList"),
      CourseList<&T::FKlassen, &TVELPlan::FKlassen>("SchoolClassIdList"),
      CourseList<&T::FSchueler, &TVELPlan::FSchueler>("StudentIdList"),
      CourseList<&T::FLehrer, &TVELPlan::FLehrer>("TeacherIdList"),
  };
  return {"Courses.csv", Columns};
}

}  // namespace uOstrel
