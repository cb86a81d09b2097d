#pragma once

#include <algorithm>
#include <array>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "QuillonDataObjects/DataClass.h"
#include "uPlandaten/Basis.h"
#include "uPlandaten/Plan.h"

/// A user who does anything that can be done to a plan, at random.
class TRandomUser {
 public:
  TRandomUser(TVELPlan& APlan, TVELPlan& AnOther, unsigned ASeed) : FPlan(APlan), FOther(AnOther), FRandom(ASeed) {}

  void Act() {
    using TAction = void (TRandomUser::*)();
    static constexpr std::array<TAction, 15> Actions = {
        &TRandomUser::TakeValue, &TRandomUser::TakeValue,   &TRandomUser::TakeValue, &TRandomUser::Rename,
        &TRandomUser::Make,      &TRandomUser::Make,        &TRandomUser::Delete,    &TRandomUser::PutElsewhere,
        &TRandomUser::Free,      &TRandomUser::MakeAndFree, &TRandomUser::Clear,     &TRandomUser::Rearrange,
        &TRandomUser::Merge,     &TRandomUser::Import,      &TRandomUser::Refer};
    CollectLists();
    (this->*Actions[Draw(Actions.size())])();
  }

 private:
  using TObject = TQuillonDataAbstractObject;
  using TRow = TQuillonDataRow;

  static constexpr int Few = 12;

  static int ByIdentity(const TQuillonDataObject& A, const TQuillonDataObject& B) {
    return A.ID() < B.ID() ? -1 : static_cast<int>(B.ID() < A.ID());
  }
  std::size_t Draw(std::size_t ACount) { return FRandom() % ACount; }
  int DrawIndex(int ACount) { return static_cast<int>(Draw(static_cast<std::size_t>(ACount))); }
  template <class T>
  T* DrawFrom(const std::vector<T*>& AChoice) {
    return AChoice.empty() ? nullptr : AChoice[Draw(AChoice.size())];
  }

  void CollectLists() {
    FLists.clear();
    std::vector<TObject*> Objects = FPlan.Registry().Objects();
    std::ranges::sort(Objects, {}, [](const TObject* AnObject) { return AnObject->ID(); });
    Objects.push_back(&FPlan);
    for (TObject* Object : Objects) {
      for (const auto Field : Object->DataClass().Lists()) {
        if (Object == &FPlan || TQuillonDataHolder::IsHeld(static_cast<TQuillonDataObject&>(*Object))) {
          FLists.push_back(&Field(*Object));
        }
      }
    }
  }
  template <class TPredicate>
  TQuillonDataList* DrawList(const TPredicate& APredicate) {
    std::vector<TQuillonDataList*> Choice;
    std::ranges::copy_if(FLists, std::back_inserter(Choice),
                         [&](const TQuillonDataList* AList) { return !AList->IsEmpty() && APredicate(*AList); });
    return DrawFrom(Choice);
  }
  TQuillonDataList* DrawOwner() {
    return DrawList([](const TQuillonDataList& AList) { return AList.IsItemOwner(); });
  }
  TQuillonDataList* DrawShort() {
    return DrawList([](const TQuillonDataList& AList) { return AList.Count() <= Few; });
  }
  /// Another list that can hold the items of a list, in the same way.
  TQuillonDataList* DrawSimilar(const TQuillonDataList& AList) {
    return DrawList([&](const TQuillonDataList& AnOther) {
      return &AnOther != &AList && &AnOther.ItemClass() == &AList.ItemClass() &&
             AnOther.IsItemOwner() == AList.IsItemOwner();
    });
  }
  TQuillonDataObject* DrawItem(const TQuillonDataList& AList) { return AList.GetItem(DrawIndex(AList.Count())); }

  void GiveCode(TQuillonDataObject& AnObject) {
    if (auto* const Object = dynamic_cast<TVELStammobjekt*>(&AnObject)) {
      Object->Set(Object->FKuerzel, "K" + std::to_string(++FSerial));
    } else if (auto* const Other = dynamic_cast<TVELDataObject*>(&AnObject)) {
      Other->Set(Other->FCustomID, "C" + std::to_string(++FSerial));
    }
  }

  /// A field gets the value that another object has: of any kind, lists and parts included.
  void TakeValue() {
    const TQuillonDataList& List = *DrawOwner();
    TQuillonDataObject& Object = *DrawItem(List);
    const TQuillonDataObject& Source = *DrawItem(List);
    const auto Rows = Object.DataClass().Rows();
    const TRow& Row = Rows[Draw(Rows.size())];
    if (&Source.DataClass() == &Object.DataClass() && !Row.IsStamp && !Row.IsRetired() && Row.Name != "Code") {
      QuillonDataObjects::AssignRow(Row, Object, Source);
      Object.Change();
    }
  }
  void Rename() { GiveCode(*DrawItem(*DrawOwner())); }
  TQuillonDataObject& MakeFor(const TQuillonDataList& AList) {
    const TQuillonDataObject& Model = *DrawItem(AList);
    TQuillonDataObject& Object = *Model.DataClass().Create(&FPlan, QuillonGuid::New());
    if (Draw(2) == 0) {
      Object.Assign(Model);
    }
    GiveCode(Object);
    return Object;
  }
  void Make() {
    TQuillonDataList& List = *DrawOwner();
    TQuillonDataObject& Object = MakeFor(List);
    if (Draw(2) == 0) {
      List.Add(&Object);
    } else {
      List.Insert(DrawIndex(List.Count() + 1), &Object);
    }
    GiveCode(Object);
  }
  void MakeAndFree() { QuillonDataObjects::Free(&MakeFor(*DrawOwner())); }
  void Refer() {
    TQuillonDataList* const References = DrawList([](const TQuillonDataList& AList) { return !AList.IsItemOwner(); });
    if (const TQuillonDataList* const Others = References != nullptr ? DrawSimilar(*References) : nullptr) {
      References->Merge(DrawItem(*Others));
    }
  }
  void Delete() {
    TQuillonDataList& List = *DrawShort();
    List.Delete(DrawIndex(List.Count()));
  }
  void PutElsewhere() {
    TQuillonDataList& List = *DrawOwner();
    TQuillonDataObject& Object = *DrawItem(List);
    TQuillonDataList* const Target = DrawSimilar(List);
    List.Extract(&Object);
    GiveCode(Object);
    (Target != nullptr ? Target : &List)->Insert(0, &Object);
  }
  void Free() {
    TQuillonDataList& List = *DrawOwner();
    QuillonDataObjects::Free(List.Extract(DrawIndex(List.Count())));
  }
  void Clear() { DrawShort()->Clear(); }
  void Rearrange() {
    TQuillonDataList& List = *DrawShort();
    List.Move(DrawIndex(List.Count()), DrawIndex(List.Count()));
    List.Exchange(DrawIndex(List.Count()), DrawIndex(List.Count()));
    List.Sort(ByIdentity);
  }
  void Merge() {
    TQuillonDataList& List = *DrawShort();
    if (TQuillonDataList* const Target = DrawSimilar(List)) {
      Target->MergeEx(List);
    }
  }
  void Import() {
    TQuillonDataList& List = *DrawShort();
    const TQuillonDataList* const Other = FOther.Registry().GetList(List.ID());
    if (Other != nullptr && List.IsItemOwner()) {
      List.Import(*Other);
    }
  }

  TVELPlan& FPlan;
  TVELPlan& FOther;
  std::minstd_rand FRandom;
  std::vector<TQuillonDataList*> FLists;
  int FSerial = 0;
};
