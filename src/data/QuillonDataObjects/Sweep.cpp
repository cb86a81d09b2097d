#include "QuillonDataObjects/Sweep.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/Storage.h"

namespace {

using TRow = TQuillonDataRow;
using TObject = TQuillonDataAbstractObject;

/// True for rows of the object that can refer to an object of the class.
bool CanReferTo(TObject& AnObject, const TRow& ARow, const TQuillonDataClass& AClass) {
  switch (ARow.Kind) {
    case TQuillonRowKind::Reference:
      return AClass.DescendsFrom(ARow.As<TRow::TPointer>().Class());
    case TQuillonRowKind::List: {
      const TQuillonDataList& List = ARow.As<TRow::TItems>().Field(AnObject);
      return !List.IsItemOwner() && AClass.DescendsFrom(List.ItemClass());
    }
    default:
      return false;
  }
}

/// The rows of each class that can refer to objects of some classes, sought when the first object of it comes.
class TReferringRows {
 public:
  explicit TReferringRows(std::unordered_set<const TQuillonDataClass*> AClasses) : FClasses(std::move(AClasses)) {}

  const std::vector<const TRow*>& Of(TObject& AnObject) {
    const auto [Found, IsNew] = FRows.try_emplace(&AnObject.DataClass());
    if (IsNew) {
      for (const TRow& Row : AnObject.DataClass().Rows()) {
        if (std::ranges::any_of(FClasses, [&](const auto* AClass) { return CanReferTo(AnObject, Row, *AClass); })) {
          Found->second.push_back(&Row);
        }
      }
    }
    return Found->second;
  }

 private:
  std::unordered_set<const TQuillonDataClass*> FClasses;
  std::unordered_map<const TQuillonDataClass*, std::vector<const TRow*>> FRows;
};

/// True if the object has lost an essential reference.
bool ClearRow(TObject& AnObject, const TRow& ARow, const TQuillonDataObjectSet& AReferred) {
  if (ARow.Kind == TQuillonRowKind::List) {
    ARow.As<TRow::TItems>().Field(AnObject).RemoveObjects(AReferred);
    return false;
  }
  const auto& Access = ARow.As<TRow::TPointer>();
  if (!AReferred.contains(Access.Get(AnObject))) {
    return false;
  }
  Access.Set(AnObject, nullptr);
  AnObject.Change();
  return ARow.Essential;
}

}  // namespace

/// Objects that go together.
class TQuillonDataSweep {
 public:
  explicit TQuillonDataSweep(TQuillonDataStorage& AStorage) : FStorage(AStorage) {}

  static bool GoesWithItsHolder(const TQuillonDataObject* AnObject) {
    return AnObject != nullptr && !TQuillonDataHolder::IsShared(*AnObject);
  }

  /// Clears all references to the objects and to what goes with them.
  void Clear(std::span<TQuillonDataObject* const> AnObjects) {
    try {
      for (TQuillonDataObject* Object : AnObjects) {
        if (!Object->FIsSwept) {
          Take(*Object);
        }
      }
      while (!FNext.empty()) {
        ClearNext();
      }
    } catch (...) {
      // They stay, and may be referred to again.
      for (const TObject* Object : FGoing) {
        Object->FIsSwept = false;
      }
      throw;
    }
  }

  /// Removes from their lists what has lost something essential.
  void RemoveSenseless() {
    std::unordered_map<TQuillonDataList*, TQuillonDataObjectSet> ByList;
    for (TQuillonDataObject* Object : FSenseless) {
      // What lies within another one that goes, goes with that.
      if (TQuillonDataList* const List = Object->FOwner->AsList(); List != nullptr && !LiesWithin(*List)) {
        ByList[List].insert(Object);
      }
    }
    for (const auto& [List, Objects] : ByList) {
      List->RemoveObjects(Objects);
    }
  }

 private:
  /// The object, and all that it alone holds, are the next to be swept.
  void Take(TQuillonDataObject& AnObject) {
    FGoing.insert(&AnObject);
    FNext.insert(&AnObject);
    AnObject.FIsSwept = true;
    // While a document is read, what others may refer to outlives its owner.
    if (!FStorage.IsReading()) {
      for (TQuillonDataObject* Part : AnObject.Parts()) {
        if (!Part->FIsSwept && !TQuillonDataHolder::IsShared(*Part)) {
          Take(*Part);
        }
      }
    }
  }

  void ClearNext() {
    std::unordered_set<const TQuillonDataClass*> Classes;
    for (const TObject* Object : FNext) {
      Classes.insert(&Object->DataClass());
    }
    TReferringRows Rows(std::move(Classes));
    const TQuillonDataObjectSet Referred = std::exchange(FNext, {});
    std::vector<TObject*> Objects = FStorage.Registry().Objects();
    Objects.push_back(&FStorage);
    std::vector<TQuillonDataObject*> Senseless;
    for (TObject* Object : Objects) {
      for (const TRow* Row : Rows.Of(*Object)) {
        if (ClearRow(*Object, *Row, Referred) && !FGoing.contains(Object)) {
          Senseless.push_back(static_cast<TQuillonDataObject*>(Object));
        }
      }
    }
    for (TQuillonDataObject* Object : Senseless) {
      if (Object->FOwner->AsList() == nullptr || Object->FIsSwept) {
        continue;
      }
      FSenseless.push_back(Object);
      if (!TQuillonDataHolder::IsShared(*Object)) {
        Take(*Object);
      }
    }
  }

  bool LiesWithin(const TQuillonDataList& AList) const {
    const TObject* Owner = AList.FOwner;
    while (Owner != nullptr && !FGoing.contains(Owner)) {
      Owner = Owner->FOwner;
    }
    return Owner != nullptr;
  }

  TQuillonDataStorage& FStorage;
  TQuillonDataObjectSet FGoing;
  TQuillonDataObjectSet FNext;
  std::vector<TQuillonDataObject*> FSenseless;
};

TQuillonDataStorage* QuillonDataObjects::SweptStorage(const TQuillonDataAbstractObject& AnObject) {
  TQuillonDataStorage* const Store = AnObject.Storage();
  // What goes while a document is read is known to nobody, or the reader has seen to it.
  const bool IsSwept = Store != nullptr && !Store->IsReading() && !Store->IsIn(TQuillonDataStorageState::dssClearing);
  return IsSwept ? Store : nullptr;
}

void QuillonDataObjects::ClearReferences(TQuillonDataStorage& AStorage, TQuillonDataObject& AnObject) {
  TQuillonDataObject* const Object = &AnObject;
  TQuillonDataSweep Sweep(AStorage);
  Sweep.Clear({&Object, 1});
  Sweep.RemoveSenseless();
}

void QuillonDataObjects::ClearReferences(TQuillonDataStorage& AStorage,
                                         std::span<TQuillonDataObject* const> AnObjects) {
  std::vector<TQuillonDataObject*> Going;
  std::ranges::copy_if(AnObjects, std::back_inserter(Going), TQuillonDataSweep::GoesWithItsHolder);
  TQuillonDataSweep Sweep(AStorage);
  Sweep.Clear(Going);
  Sweep.RemoveSenseless();
}
