#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "uOstrel/Codes.h"
#include "uOstrel/CsvSource.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Sammelaenderung.h"

class TVELSchluessel;

/// The columns that an import reads, and what becomes of them.
namespace uOstrel {

/// The items of a list by identifier; the first of several counts, as in a walk over the list.
class TIdIndex {
 public:
  explicit TIdIndex(const TQuillonDataList& AList);

  void Add(TQuillonDataObject& AnItem) { FItems.emplace(AnItem.ID(), &AnItem); }
  TQuillonDataObject* Find(const TGUID& AnID) const;

 private:
  std::unordered_map<TGUID, TQuillonDataObject*, TGuidHash> FItems;
};

/// What the columns need besides the object of a row.
class TImport {
 public:
  explicit TImport(TVELPlan& APlan) : FPlan(APlan) {}

  /// Made when it is first asked for; who adds to the list adds to the index.
  TIdIndex& Index(const TQuillonDataList& AList);
  /// What an identifier refers to; null for the all-zero one, whatever the list holds, and for one it does not know.
  template <class TItem, class TList>
  TItem* Referred(const TList& AList, const TGUID& AnID) {
    auto* const Found = AnID.IsZero() ? nullptr : Index(AList).Find(AnID);
    if (Found == nullptr && !AnID.IsZero()) {
      FUnknown.push_back(AnID);
    }
    return static_cast<TItem*>(Found);
  }

  TVELPlan& FPlan;
  TVELSammelaenderung* FChanges = nullptr;  ///< while rows are taken over
  std::optional<TCodes> FCodes;             ///< of the list at hand
  bool FIsNew = false;                      ///< the object of the row at hand is made for it
  std::vector<TGUID> FUnknown;              ///< identifiers of the cell at hand that refer to nothing

 private:
  std::unordered_map<const TQuillonDataList*, TIdIndex> FIndexes;
};

template <class T>
struct TImportColumn {
  std::string_view Name;
  TCellKind Kind;
  void (*Set)(TImport& AnImport, T& AnObject, const TCell& ACell);
  /// Ahead of all changes; null for a column whose every cell will do.
  /// @throws EQuillonException
  void (*Check)(TImport& AnImport, const TCell& ACell) = nullptr;
};

/// A file of objects of one class.
template <class T>
struct TImportFile {
  std::string Name;
  std::span<const TImportColumn<T>> Columns;
};

std::span<const TImportColumn<TVELSchluessel>> CatalogImport();
TImportFile<TVELTeam> DepartmentImport();
TImportFile<TVELRaum> RoomImport();
TImportFile<TVELFach> SubjectImport();
TImportFile<TVELLehrer> TeacherImport();
TImportFile<TVELKlasse> SchoolClassImport();
TImportFile<TVELSchueler> StudentImport();
TImportFile<TVELVeranstaltung> CourseImport();

}  // namespace uOstrel
