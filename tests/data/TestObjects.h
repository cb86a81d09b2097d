#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/DataList.h"
#include "QuillonDataObjects/ReaderWriter.h"
#include "QuillonDataObjects/Registry.h"
#include "QuillonDataObjects/Storage.h"

/// A handful of classes with a row of every kind.
class TTestItem : public TQuillonDataObject {
 public:
  static inline std::atomic<int> Alive = 0;
  TTestItem() { ++Alive; }
  ~TTestItem() override { --Alive; }

  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }
  void Assign(const TQuillonObject& AnObject) override {
    QuillonDataObjects::AssignRows(*this, dynamic_cast<const TQuillonDataAbstractObject&>(AnObject));
  }

  std::string FName;
  std::string FMust;
  bool FFlag = false;
  std::uint8_t FSmall = 0;
  std::int32_t FNumber = 7;
  std::int64_t FLarge = 0;
  double FWeight = 1;
  TQuillonDateTime FWhen;
  TQuillonDateTime FDay;
  TQuillonDateTime FClock;
  TGUID FOther;
  std::vector<std::int32_t> FNumbers;
  std::vector<std::string> FLines;
  TQuillonGraphic FPicture;
  TTestItem* FFriend = nullptr;
};

/// Two classes of one tag.
template <int AKind>
class TTestTwin : public TQuillonDataObject {
 public:
  static const TQuillonDataClass& Class() {
    static const TQuillonDataClass Description =
        DescribeClass<TTestTwin, TQuillonDataObject>("Twin").template String<&TTestTwin::FName>("Name");
    return Description;
  }
  const TQuillonDataClass& DataClass() const override { return Class(); }
  std::string FName;
};

/// A list of items that writes down what happens to it.
class TTestList : public TQuillonListOf<TTestItem> {
 public:
  using TQuillonListOf::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override { return TTestItem::Class(); }
  void Change() override {
    Log("Change");
    TQuillonListOf::Change();
  }
  std::string FLog;
  std::string FRefused = "nobody";  ///< name of an item that the list does not take

 protected:
  void AfterClear() override { Log("AfterClear"); }
  void AfterDelete(int AnIndex) override { Log("AfterDelete", AnIndex); }
  void AfterExtract(int AnIndex) override { Log("AfterExtract", AnIndex); }
  void AfterInsert(int AnIndex) override { Log("AfterInsert", AnIndex); }
  void AfterMove(int AnIndex) override { Log("AfterMove", AnIndex); }
  void BeforeClear() override { Log("BeforeClear"); }
  void BeforeDelete(int AnIndex) override { Log("BeforeDelete", AnIndex); }
  void BeforeExtract(int AnIndex) override { Log("BeforeExtract", AnIndex); }
  void BeforeInsert(int AnIndex, TQuillonDataObject* AnItem) override {
    if (AnItem->DataClass().Tag() == "TestItem" && static_cast<TTestItem*>(AnItem)->FName == FRefused) {
      throw EQuillonException("refused");
    }
    Log("BeforeInsert", AnIndex);
    FLog += !IsItemOwner() || AnItem->FOwner == this ? "" : "(no owner) ";
  }
  void BeforeMove(int AnIndex) override { Log("BeforeMove", AnIndex); }

 private:
  void Log(const std::string& AWhat) { FLog += AWhat + "/" + std::to_string(Count()) + " "; }
  void Log(const std::string& AWhat, int AnIndex) { Log(AWhat + std::to_string(AnIndex)); }
};

template <int AKind>
class TTestTwins : public TQuillonListOf<TTestTwin<AKind>> {
 public:
  using TQuillonListOf<TTestTwin<AKind>>::TQuillonListOf;
  const TQuillonDataClass& ItemClass() const override { return TTestTwin<AKind>::Class(); }
};

class TTestStorage : public TQuillonDataStorage {
 public:
  static const TQuillonDataClass& Class() {
    using T = TTestStorage;
    TQuillonDataClassRegistry::Instance().AddClass(TTestItem::Class());
    TQuillonDataClassRegistry::Instance().AddClass(TTestTwin<1>::Class());
    TQuillonDataClassRegistry::Instance().AddClass(TTestTwin<2>::Class());
    static const TQuillonDataClass Description = DescribeClass<T, TQuillonDataStorage>("TTestStorage")
                                                     .String<&T::FTitle>("Title")
                                                     .Object<&T::FPart>("Part")
                                                     .Reference<&T::FFavourite>("Favourite")
                                                     .List<&T::FItems>("Objects")
                                                     .List<&T::FOthers>("Others")
                                                     .List<&T::FFriends>("Friends")
                                                     .List<&T::FTwins1>("Twins1")
                                                     .List<&T::FTwins2>("Twins2");
    return Description;
  }
  const TQuillonDataClass& DataClass() const override { return Class(); }

  std::string FTitle;
  TQuillonOwned<TTestItem> FPart;
  TTestItem* FFavourite = nullptr;
  TTestList FItems{this, TQuillonDataList::TItems::Owned};
  TTestList FOthers{this, TQuillonDataList::TItems::Owned};
  TTestList FFriends{this};
  TTestTwins<1> FTwins1{this, TQuillonDataList::TItems::Owned};
  TTestTwins<2> FTwins2{this, TQuillonDataList::TItems::Owned};
  std::string FHooks;
  std::string FTemplate;
  std::string FLoadedName;  ///< the file's name when the load was over

  TTestItem* NewItem(const std::string& AName) {
    auto* const Item = QuillonDataObjects::Create<TTestItem>(this);
    Item->FName = AName;
    return Item;
  }
  TTestItem* AddItem(const std::string& AName) {
    TTestItem* const Item = NewItem(AName);
    FItems.Add(Item);
    return Item;
  }

 protected:
  void ClearProperties() override {
    TQuillonDataStorage::ClearProperties();
    FFavourite = nullptr;
    FTitle.clear();
    FFriends.Clear();
    FItems.Clear();
    FOthers.Clear();
    FTwins1.Clear();
    FTwins2.Clear();
    FHooks += "Clear ";
  }
  void BeforeNewFile() override { FHooks += "BeforeNewFile "; }
  void AfterNewFile() override { FHooks += "AfterNewFile "; }
  void BeforeLoad() override { FHooks += "BeforeLoad "; }
  void AfterLoad() override {
    FHooks += FModified ? "modified " : "AfterLoad ";
    FLoadedName = FFileName;
  }
  void BeforeStore() override { FHooks += "BeforeStore "; }
  void AfterStore() override { FHooks += FModified ? "modified " : "AfterStore "; }
  std::string GetTemplateFileName() const override { return FTemplate; }
};

inline const TQuillonDataClass& TTestItem::Class() {
  using T = TTestItem;
  static const TQuillonDataClass Description = DescribeClass<T, TQuillonDataObject>("TestItem")
                                                   .String<&T::FName>("Name")
                                                   .String<&T::FMust>("Must")
                                                   .Required()
                                                   .Boolean<&T::FFlag>("Flag")
                                                   .Byte<&T::FSmall>("Small")
                                                   .AlwaysWritten()
                                                   .LongInt<&T::FNumber>("Number", 7)
                                                   .Int64<&T::FLarge>("Large")
                                                   .Single<&T::FWeight>("Weight", 1)
                                                   .DateTime<&T::FWhen>("When")
                                                   .Date<&T::FDay>("Day")
                                                   .Time<&T::FClock>("Clock")
                                                   .Guid<&T::FOther>("Other")
                                                   .IntegerArray<&T::FNumbers>("Numbers")
                                                   .StringArray<&T::FLines>("Lines")
                                                   .Graphic<&T::FPicture>("Picture")
                                                   .Reference<&T::FFriend>("Friend");
  return Description;
}

/// Names of a list's items, one behind the other.
inline std::string NamesOf(const TTestList& AList) {
  std::string Names;
  for (const TTestItem* Item : AList) {
    Names += Item->FName;
  }
  return Names;
}
