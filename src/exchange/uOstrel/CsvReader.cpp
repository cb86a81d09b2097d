#include "uOstrel/CsvReader.h"

#include <cstring>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "QuillonFileSystem.h"
#include "QuillonNumbers.h"
#include "QuillonText.h"
#include "uOstrel/CatalogClasses.h"
#include "uOstrel/Columns.h"
#include "uOstrel/CsvSource.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Teams.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uSchluessel/Verzeichnisse.h"

using uOstrel::TCsvSource;

namespace {

struct TGuidHash {
  std::size_t operator()(const TGUID& AGuid) const {
    std::size_t Hash = 0;
    std::memcpy(&Hash, AGuid.Bytes.data(), sizeof(Hash));
    return Hash;
  }
};

/// The items of a list by identifier; the first of several counts, as in a walk over the list.
template <class TItem>
class TIdIndex {
 public:
  template <class TList>
  explicit TIdIndex(const TList& AList) {
    for (TItem* Item : AList) {
      Add(*Item);
    }
  }
  void Add(TItem& AnItem) { FItems.emplace(AnItem.ID(), &AnItem); }
  TItem* Find(const TGUID& AnID) const {
    const auto Found = FItems.find(AnID);
    return Found != FItems.end() ? Found->second : nullptr;
  }

 private:
  std::unordered_map<TGUID, TItem*, TGuidHash> FItems;
};

/// The codes of a list, and how many items have each.
class TCodes {
 public:
  explicit TCodes(const TVELStammobjektliste& AList) {
    for (const TVELStammobjekt* Item : AList) {
      ++FCounts[Item->FKuerzel];
    }
  }

  /// Gives the object the code, or the first of code-1, code-2 and so on that no other one has.
  void Assign(TVELStammobjekt& AnObject, bool AnIsNew, const std::string& ACode) {
    if (!AnIsNew) {
      --FCounts[AnObject.FKuerzel];
    }
    std::string Code = ACode;
    for (std::int64_t Number = 1; FCounts[Code] > 0; ++Number) {
      Code = ACode + "-";
      QuillonNumbers::AppendInteger(Code, Number);
    }
    ++FCounts[Code];
    AnObject.Set(AnObject.FKuerzel, Code);
  }

 private:
  std::unordered_map<std::string, int> FCounts;
};

/// An object for a row: one that the file only referred to so far, or a new one.
TVELDataObject& Make(TVELPlan& APlan, TQuillonDataAbstractObject& AnOwner, const TQuillonDataClass& AClass,
                     const TGUID& AnID) {
  TQuillonDataAbstractObject* Object = APlan.Registry().GetObject(AnID, AClass);
  if (Object == nullptr) {
    Object = AClass.Create(&AnOwner, AnID);
  }
  return static_cast<TVELDataObject&>(*Object);
}

/// Replaces a list of a new course by the objects that the cell names and the plan knows.
template <class TItem, class TList>
void FillList(const TCsvSource& ARow, std::string_view AColumn, TList& AList, const TIdIndex<TItem>& AnIndex) {
  const auto Named = ARow.Guids(AColumn);
  if (!Named) {
    return;
  }
  AList.Clear();
  std::unordered_set<const TItem*> Listed;
  for (const TGUID& ID : *Named) {
    TItem* const Item = AnIndex.Find(ID);
    if (Item != nullptr && Listed.insert(Item).second) {
      AList.Add(Item);
    }
  }
}

}  // namespace

TVELOstrelCsvReader::TVELOstrelCsvReader(TVELPlan& APlan, std::unique_ptr<TOcfConfiguration> AConfiguration)
    : TVELOstrelSynchronizer(APlan, std::move(AConfiguration)) {}

TVELOstrelCsvReader::TVELOstrelCsvReader(TVELPlan& APlan, const std::string& /*ACfgFileName*/)
    : TVELOstrelCsvReader(APlan, std::unique_ptr<TOcfConfiguration>()) {}

std::string TVELOstrelCsvReader::GetFileName() const { return Options().FTargetFileName; }
TGUID TVELOstrelCsvReader::GetServerFileId() const { return ParseFileId(Options().FServerFileId); }
std::string TVELOstrelCsvReader::GetServerName() const { return Options().FServerName; }
std::uint16_t TVELOstrelCsvReader::GetServerPort() const { return Options().FServerPort; }
std::string TVELOstrelCsvReader::GetServerUserName() const { return Options().FServerUserName; }
std::string TVELOstrelCsvReader::GetServerPassword() const { return Options().FServerPassword; }

template <class TRead>
void TVELOstrelCsvReader::ForEachRow(const std::string& AFileName, const TRead& ARead) {
  const std::string Path = TQuillonFilePath::Combine(Options().FSourceFolderName, AFileName);
  if (FAborted || !TQuillonFileSystem::IsFile(Path)) {
    return;
  }
  TCsvSource Source(Path);
  while (!FAborted && Source.Next()) {
    ARead(Source);
  }
}

template <class TItem, class TList, class TFill>
void TVELOstrelCsvReader::MergeRows(const std::string& AFileName, TList& AList, const TFill& AFill) {
  TIdIndex<TItem> Index(AList);
  ForEachRow(AFileName, [&](const TCsvSource& ARow) {
    const TGUID ID = ARow.Guid("Id", QuillonGuid::New());
    TItem* Item = Index.Find(ID);
    const bool IsNew = Item == nullptr;
    if (IsNew) {
      Item = static_cast<TItem*>(&Make(FPlan, FPlan, TItem::Class(), ID));
    }
    AFill(ARow, *Item, IsNew);
    if (IsNew) {
      AList.Add(Item);
      Index.Add(*Item);
    }
  });
}

void TVELOstrelCsvReader::ReadAll() {
  ReadCatalogs();
  ReadDepartments();
  ReadRooms();
  ReadSubjects();
  ReadTeachers();
  ReadSchoolClasses();
  ReadStudents();
  ReadCourses();
}

void TVELOstrelCsvReader::ReadCatalogs() {
  for (const uOstrel::TCatalog& Catalog : uOstrel::Catalogs()) {
    TVELSchluesselverzeichnis& Keys = Catalog.Keys(*FPlan.FVerzeichnisse);
    TIdIndex<TVELSchluessel> Index(Keys);
    ForEachRow(std::string(Catalog.Name) + ".csv", [&](const TCsvSource& ARow) {
      TVELSchluessel* Key = Index.Find(ARow.Guid("Id"));
      const bool IsNew = Key == nullptr;
      if (IsNew) {
        Key = static_cast<TVELSchluessel*>(&Make(FPlan, *FPlan.FVerzeichnisse, uOstrel::CatalogClass(Catalog.Name),
                                                 ARow.Guid("Id", QuillonGuid::New())));
      }
      // Not the column that the export writes its codes to: the format has it so.
      Key->Set(Key->FKuerzel, ARow.Text("InternalCode"));
      Key->Set(Key->FBezeichnung, ARow.Text("Name"));
      Key->Set(Key->FSchluessel, ARow.Text("StatisticalCode"));
      if (IsNew) {
        Keys.Add(Key);
        Index.Add(*Key);
      }
    });
  }
}

void TVELOstrelCsvReader::ReadDepartments() {
  TCodes Codes(FPlan.FTeams);
  MergeRows<TVELTeam>("Departments.csv", FPlan.FTeams, [&](const TCsvSource& ARow, TVELTeam& ATeam, bool AnIsNew) {
    Codes.Assign(ATeam, AnIsNew, ARow.Text("Code"));
    ATeam.Set(ATeam.FBezeichnung, ARow.Text("Name"));
  });
}

void TVELOstrelCsvReader::ReadRooms() {
  TCodes Codes(FPlan.FRaeume);
  MergeRows<TVELRaum>("Rooms.csv", FPlan.FRaeume, [&](const TCsvSource& ARow, TVELRaum& ARoom, bool AnIsNew) {
    Codes.Assign(ARoom, AnIsNew, ARow.Text("Code"));
    ARoom.Set(ARoom.FBezeichnung, ARow.Text("Name"));
    ARoom.Set(ARoom.FBemerkung, ARow.Text("Notes"));
    ARoom.Set(ARoom.FKapazitaet, ARow.Integer("Capacity"));
  });
}

void TVELOstrelCsvReader::ReadSubjects() {
  TCodes Codes(FPlan.FFaecher);
  MergeRows<TVELFach>("Subjects.csv", FPlan.FFaecher, [&](const TCsvSource& ARow, TVELFach& ASubject, bool AnIsNew) {
    Codes.Assign(ASubject, AnIsNew, ARow.Text("Code"));
    ASubject.Set(ASubject.FBezeichnung, ARow.Text("Name"));
    ASubject.Set(ASubject.FSchluessel, ARow.Text("StatisticalCode"));
  });
}

void TVELOstrelCsvReader::ReadTeachers() {
  TCodes Codes(FPlan.FLehrer);
  MergeRows<TVELLehrer>("Teachers.csv", FPlan.FLehrer, [&](const TCsvSource& ARow, TVELLehrer& ATeacher, bool AnIsNew) {
    Codes.Assign(ATeacher, AnIsNew, ARow.Text("Code"));
    ATeacher.Set(ATeacher.FPersonalnummer, ARow.Text("TeacherNo"));
    ATeacher.Set(ATeacher.FBemerkung, ARow.Text("Notes"));
    ATeacher.Set(ATeacher.FVorname, ARow.Text("FirstName"));
    ATeacher.Set(ATeacher.FNachname, ARow.Text("LastName"));
    ATeacher.Set(ATeacher.FMittelname, ARow.Text("MiddleName"));
    ATeacher.Set(ATeacher.FTitel, ARow.Text("Salutation"));
  });
}

void TVELOstrelCsvReader::ReadSchoolClasses() {
  TCodes Codes(FPlan.FKlassen);
  const TIdIndex<TVELLehrer> Teachers(FPlan.FLehrer);
  const TIdIndex<TVELTeam> Departments(FPlan.FTeams);
  const TIdIndex<TVELRaum> Rooms(FPlan.FRaeume);
  const TIdIndex<TVELSchueler> Students(FPlan.FSchueler);
  MergeRows<TVELKlasse>(
      "SchoolClasses.csv", FPlan.FKlassen, [&](const TCsvSource& ARow, TVELKlasse& AClass, bool AnIsNew) {
        Codes.Assign(AClass, AnIsNew, ARow.Text("Code"));
        AClass.Set(AClass.FBezeichnung, ARow.Text("Description"));
        AClass.Set(AClass.FBemerkung, ARow.Text("Notes"));
        AClass.Set(AClass.FSchulnummer, ARow.Text("SchoolClassNo"));
        AClass.Set(AClass.FLehrer1, Teachers.Find(ARow.Guid("Teacher1Id")));
        AClass.Set(AClass.FLehrer2, Teachers.Find(ARow.Guid("Teacher2Id")));
        AClass.Set(AClass.FTeam, Departments.Find(ARow.Guid("DepartmentId")));
        AClass.Set(AClass.FRaum, Rooms.Find(ARow.Guid("RoomId")));
        for (const TGUID& ID : ARow.Guids("StudentIdList").value_or(std::vector<TGUID>())) {
          TVELSchueler* const Student = Students.Find(ID);
          if (Student == nullptr) {
            throw EQuillonException("The plan has no student " + QuillonGuid::Plain(ID) + ", whom class " +
                                    QuillonText::Quoted(AClass.FKuerzel) + " names.");
          }
          Student->SetKlasse(&AClass);
        }
      });
}

void TVELOstrelCsvReader::ReadStudents() {
  MergeRows<TVELSchueler>("Students.csv", FPlan.FSchueler,
                          [&](const TCsvSource& ARow, TVELSchueler& AStudent, bool /*AnIsNew*/) {
                            AStudent.Set(AStudent.FSchuelerNr, ARow.Text("StudentNo"));
                            AStudent.Set(AStudent.FBemerkung, ARow.Text("Notes"));
                            AStudent.Set(AStudent.FVorname, ARow.Text("FirstName"));
                            AStudent.Set(AStudent.FNachname, ARow.Text("LastName"));
                            AStudent.Set(AStudent.FMittelname, ARow.Text("MiddleName"));
                            AStudent.Set(AStudent.FGebDatum, TVELDate(ARow.DateTime("Birthdate")));
                            AStudent.Set(AStudent.FOrt, ARow.Text("Locality"));
                            AStudent.Set(AStudent.FPostleitzahl, ARow.Text("PostalCode"));
                            AStudent.Set(AStudent.FStrasse, ARow.Text("AddressLines"));
                          });
}

void TVELOstrelCsvReader::ReadCourses() {
  const TIdIndex<TVELFach> Subjects(FPlan.FFaecher);
  const TIdIndex<TVELSchluessel> Focuses(FPlan.FVerzeichnisse->FFachschwerpunkte);
  const TIdIndex<TVELRaum> Rooms(FPlan.FRaeume);
  const TIdIndex<TVELKlasse> Classes(FPlan.FKlassen);
  const TIdIndex<TVELSchueler> Students(FPlan.FSchueler);
  const TIdIndex<TVELLehrer> Teachers(FPlan.FLehrer);
  MergeRows<TVELVeranstaltung>(
      "Courses.csv", FPlan.FVeranstaltungen, [&](const TCsvSource& ARow, TVELVeranstaltung& ACourse, bool AnIsNew) {
        ACourse.Set(ACourse.FInfo, ARow.Text("Description"));
        ACourse.Set(ACourse.FBemerkung, ARow.Text("Notes"));
        ACourse.Set(ACourse.FLink, ARow.Text("CourseUrl"));
        ACourse.SetFach(Subjects.Find(ARow.Guid("SubjectId")));
        ACourse.SetKursNr(ARow.Integer("CourseNo"));
        ACourse.Set(ACourse.FVeranstaltungsNr, ARow.Text("CourseRef"));
        ACourse.Set(ACourse.FGueltigVon, TVELDate(ARow.DateTime("StartDate")));
        ACourse.Set(ACourse.FGueltigBis, TVELDate(ARow.DateTime("EndDate")));
        ACourse.Set(ACourse.FGruppe, ARow.Text("CourseGroup"));
        ACourse.Set(ACourse.FReoccur, ARow.Text("SchedulePattern") != "OneTimeEvents");
        ACourse.Set(ACourse.FFachschwerpunkt,
                    static_cast<TVELFachschwerpunkt*>(Focuses.Find(ARow.Guid("SubjectFocusId"))));
        if (AnIsNew) {
          FillList(ARow, "RoomIdList", ACourse.FRaeume, Rooms);
          FillList(ARow, "SchoolClassIdList", ACourse.FKlassen, Classes);
          FillList(ARow, "StudentIdList", ACourse.FSchueler, Students);
          FillList(ARow, "TeacherIdList", ACourse.FLehrer, Teachers);
        }
      });
}
