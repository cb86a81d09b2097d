#include "uOstrel/CsvReader.h"

#include <optional>
#include <type_traits>
#include <utility>

#include "QuillonFileSystem.h"
#include "QuillonText.h"
#include "uOstrel/CatalogClasses.h"
#include "uOstrel/Columns.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Teams.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uSchluessel/Verzeichnisse.h"

using uOstrel::TCatalog;
using uOstrel::TCsvSource;

namespace {

std::string FileOf(const TCatalog& ACatalog) { return std::string(ACatalog.Name) + ".csv"; }

}  // namespace

TVELOstrelCsvReader::TVELOstrelCsvReader(TVELGlobals& AGlobals, std::unique_ptr<TOcfConfiguration> AConfiguration)
    : TVELOstrelSynchronizer(AGlobals, std::move(AConfiguration)), FImport(AGlobals.Plan()) {}

TVELOstrelCsvReader::TVELOstrelCsvReader(TVELGlobals& AGlobals, const std::string& /*ACfgFileName*/)
    : TVELOstrelCsvReader(AGlobals, std::unique_ptr<TOcfConfiguration>()) {}

void TVELOstrelCsvReader::ReadAll() {
  if (!TQuillonFileSystem::IsDirectory(Options().FSourceFolderName)) {
    throw EQuillonException("The source folder \"" + Options().FSourceFolderName + "\" does not exist.");
  }
  ReadAhead();
  TVELSammelaenderung Changes(FPlan);
  FImport.FChanges = &Changes;
  ReadCatalogs();
  Merge(uOstrel::DepartmentImport(), FPlan.FTeams);
  Merge(uOstrel::RoomImport(), FPlan.FRaeume);
  Merge(uOstrel::SubjectImport(), FPlan.FFaecher);
  Merge(uOstrel::TeacherImport(), FPlan.FLehrer);
  Merge(uOstrel::SchoolClassImport(), FPlan.FKlassen);
  Merge(uOstrel::StudentImport(), FPlan.FSchueler);
  Merge(uOstrel::CourseImport(), FPlan.FVeranstaltungen);
  Changes.Finish();
  FImport.FChanges = nullptr;
}

void TVELOstrelCsvReader::ReadAhead() {
  for (const TCatalog& Catalog : uOstrel::Catalogs()) {
    Load<TVELSchluessel>({FileOf(Catalog), uOstrel::CatalogImport()});
    CheckCatalog(Catalog);
  }
  Load(uOstrel::DepartmentImport());
  Load(uOstrel::RoomImport());
  Load(uOstrel::SubjectImport());
  Load(uOstrel::TeacherImport());
  Load(uOstrel::SchoolClassImport());
  Load(uOstrel::StudentImport());
  Load(uOstrel::CourseImport());
}

template <class T>
void TVELOstrelCsvReader::Load(const uOstrel::TImportFile<T>& AFile) {
  if (FAborted) {
    return;
  }
  std::vector<uOstrel::TSourceColumn> Columns;
  for (const auto& Column : AFile.Columns) {
    Columns.push_back({.Name = Column.Name, .Kind = Column.Kind});
  }
  const std::string Path = TQuillonFilePath::Combine(Options().FSourceFolderName, AFile.Name);
  const TCsvSource& Source = FSources.try_emplace(std::string(AFile.Name), Path, std::move(Columns)).first->second;
  WarnOfColumns(AFile.Name, Source);
  for (std::size_t I = 0; I < AFile.Columns.size(); ++I) {
    const auto& Column = AFile.Columns[I];
    for (std::size_t Row = 0; Column.Check != nullptr && Row < Source.RowCount(); ++Row) {
      try {
        Column.Check(FImport, Source.Row(Row).Cells[I]);
      } catch (const EQuillonException& Error) {
        Source.Refuse(Row, Column.Name, Error.what());
      }
    }
  }
}

/// Some catalogs can bring no new keys.
void TVELOstrelCsvReader::CheckCatalog(const TCatalog& ACatalog) {
  const uOstrel::TIdIndex& Index = FImport.Index(ACatalog.Keys(*FPlan.FVerzeichnisse));
  const auto Found = FSources.find(FileOf(ACatalog));
  const std::size_t Count = Found != FSources.end() ? Found->second.RowCount() : 0;
  for (std::size_t Row = 0; Row < Count; ++Row) {
    const TGUID ID = Found->second.Row(Row).ID.value_or(TGUID());
    try {
      if (Index.Find(ID) == nullptr) {
        uOstrel::CatalogClass(ACatalog.Name);
      }
    } catch (const EQuillonException& Error) {
      Found->second.Refuse(Row, "Id", Error.what() + (": the plan has no key " + QuillonGuid::Plain(ID)));
    }
  }
}

template <class TTake>
void TVELOstrelCsvReader::ForEachRow(const std::string& AName, const TTake& ATake) {
  const auto Found = FSources.find(AName);
  const std::size_t Count = Found != FSources.end() ? Found->second.RowCount() : 0;
  for (std::size_t Row = 0; Row < Count && !FAborted; ++Row) {
    ATake(Found->second.Row(Row));
  }
}

template <class T>
T& TVELOstrelCsvReader::Make(TQuillonDataAbstractObject& AnOwner, const TQuillonDataClass& AClass, const TGUID& AnID) {
  TQuillonDataAbstractObject* const Known = FPlan.Registry().GetObject(AnID, AClass);
  return static_cast<T&>(*(Known != nullptr ? Known : AClass.Create(&AnOwner, AnID)));
}

template <class T>
void TVELOstrelCsvReader::Fill(T& AnObject, std::span<const uOstrel::TImportColumn<T>> AColumns,
                               const TCsvSource::TRow& ARow, uOstrel::TImportTally& ATally) {
  for (std::size_t I = 0; I < AColumns.size(); ++I) {
    ATally.BeginCell(FImport);
    AColumns[I].Set(FImport, AnObject, ARow.Cells[I]);
    ATally.EndCell(FImport, AColumns[I].Name, ARow.Cells[I]);
  }
}

void TVELOstrelCsvReader::WarnOfColumns(const std::string& AFileName, const TCsvSource& ASource) {
  for (const std::string& Column : ASource.UnreadColumns()) {
    FGlobals.Report().Warn(
        "unread-column", "File \"" + AFileName + "\": no import reads the column " + QuillonText::Quoted(Column) + ".");
  }
}

void TVELOstrelCsvReader::ReadCatalogs() {
  for (const TCatalog& Catalog : uOstrel::Catalogs()) {
    TVELVerzeichnisse& Directories = *FPlan.FVerzeichnisse;
    TVELSchluesselverzeichnis& Keys = Catalog.Keys(Directories);
    uOstrel::TIdIndex& Index = FImport.Index(Keys);
    const std::string FileName = FileOf(Catalog);
    std::optional<uOstrel::TImportTally> Tally;
    ForEachRow(FileName, [&](const TCsvSource::TRow& ARow) {
      if (!Tally) {
        Tally.emplace(FGlobals.Report(), FPlan, FileName);
      }
      Tally->BeginRow(ARow);
      auto* Key = static_cast<TVELSchluessel*>(Index.Find(ARow.ID.value_or(TGUID())));
      const bool IsNew = Key == nullptr;
      if (IsNew) {
        Key = &Make<TVELSchluessel>(Directories, uOstrel::CatalogClass(Catalog.Name),
                                    ARow.ID.value_or(QuillonGuid::New()));
      }
      Fill(*Key, uOstrel::CatalogImport(), ARow, *Tally);
      Tally->EndRow(IsNew);
      if (IsNew) {
        Keys.Add(Key);
        Index.Add(*Key);
      }
    });
    FSources.erase(FileName);
  }
}

template <class T, class TList>
void TVELOstrelCsvReader::Merge(const uOstrel::TImportFile<T>& AFile, TList& AList) {
  uOstrel::TIdIndex& Index = FImport.Index(AList);
  if constexpr (std::is_base_of_v<TVELStammobjekt, T>) {
    FImport.FCodes.emplace(AList);
  }
  std::optional<uOstrel::TImportTally> Tally;
  ForEachRow(AFile.Name, [&](const TCsvSource::TRow& ARow) {
    if (!Tally) {
      Tally.emplace(FGlobals.Report(), FPlan, AFile.Name);
    }
    Tally->BeginRow(ARow);
    const TGUID ID = ARow.ID ? *ARow.ID : QuillonGuid::New();
    auto* Item = static_cast<T*>(Index.Find(ID));
    FImport.FIsNew = Item == nullptr;
    if (FImport.FIsNew) {
      Item = &Make<T>(FPlan, T::Class(), ID);
    }
    Fill(*Item, AFile.Columns, ARow, *Tally);
    Tally->EndRow(FImport.FIsNew);
    if (FImport.FIsNew) {
      Index.Add(*Item);
      if constexpr (std::is_same_v<T, TVELVeranstaltung>) {
        FImport.FChanges->Add(*Item);
      } else {
        AList.Add(Item);
      }
    }
  });
  FSources.erase(AFile.Name);
}
