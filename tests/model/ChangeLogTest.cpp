#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonIO.h"
#include "data/PlainContent.h"
#include "model/PlanDocument.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Raeume.h"
#include "uSchluessel/Verzeichnisse.h"

namespace {

using TObject = TQuillonDataAbstractObject;
using TRow = TQuillonDataRow;

std::string BytesOf(TVELPlan& APlan) {
  TQuillonMemoryStream Stream;
  APlan.SaveToBinStream(Stream);
  return Stream.TakeContent();
}

TPlan CopyOf(TVELPlan& APlan) {
  auto Copy = CreateStorage<TVELPlan>();
  TQuillonMemoryStream Stream(BytesOf(APlan));
  Copy->LoadFromBinStream(Stream);
  return Copy;
}

TPlan LoadSchool() {
  uPlandaten::RegisterClasses(TQuillonDataClassRegistry::Instance());
  auto Plan = CreateStorage<TVELPlan>();
  Plan->LoadFromXML(QuillonIO::ReadWholeFile(VELMORA_SOURCE_DIR "/samples/schule.velmora"), "school");
  return Plan;
}

int ByIdentity(const TQuillonDataObject& A, const TQuillonDataObject& B) {
  return A.ID() < B.ID() ? -1 : static_cast<int>(B.ID() < A.ID());
}

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
  static constexpr int Few = 12;

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

/// Sends the log as bytes to another copy. @return the conflict, which has changed nothing then; empty for none
std::string PlayOn(TVELPlan& ATarget, const TQuillonDataChangeLog& ALog) {
  TQuillonMemoryStream Stream;
  ALog.SaveToStream(Stream);
  Stream.Seek(0, TQuillonSeekOrigin::Begin);
  TQuillonDataChangeLog Sent;
  Sent.LoadFromStream(Stream);
  const std::string Before = ATarget.SaveToXML() + BytesOf(ATarget);
  try {
    Sent.Playback(ATarget);
    return {};
  } catch (const EQuillonDataConflict& Conflict) {
    EXPECT_TRUE(ATarget.SaveToXML() + BytesOf(ATarget) == Before) << Conflict.what();
    return Conflict.what();
  }
}

std::string FirstDifference(const std::string& A, const std::string& B) {
  const auto Place = static_cast<std::size_t>(std::ranges::mismatch(A, B).in1 - A.begin());
  const std::size_t From = Place > 600 ? Place - 600 : 0;
  return Place == A.size() && A.size() == B.size() ? "" : A.substr(From, 900) + "\n---\n" + B.substr(From, 900);
}

}  // namespace

TEST(ChangeLogOfAPlan, AnySessionMakesTheSameOfAnotherCopy) {
  std::map<TQuillonDataOperationKind, int> Played;
  for (unsigned Seed = 1; Seed <= 8; ++Seed) {
    const TPlan A = LoadSchool();
    const TPlan B = CopyOf(*A);
    const TPlan Other = CopyOf(*A);
    TQuillonDataChangeLog& Log = A->ChangeLog();
    Log.Activate();
    TRandomUser User(*A, *Other, Seed);
    for (int Session = 0; Session < 4; ++Session) {
      for (int Step = 0; Step < 15; ++Step) {
        User.Act();
      }
      if (const std::string Conflict = PlayOn(*B, Log); !Conflict.empty()) {
        // The copy of an object is in the lists that this refers to before it gets a code of its own.
        EXPECT_NE(Conflict.find("ist bereits vorhanden"), std::string::npos) << Conflict;
        break;
      }
      ASSERT_EQ(FirstDifference(PlainContent(*B), PlainContent(*A)), "") << "seed " << Seed << ", " << Session;
      for (int I = 0; I < Log.Count(); ++I) {
        ++Played[Log.GetOperation(I).FKind];
      }
      Log.Clear();
    }
  }
  EXPECT_EQ(Played.size(), QuillonDataObjects::OperationClasses().size());
  for (const auto& [Kind, Count] : Played) {
    EXPECT_GT(Count, 10) << static_cast<int>(Kind);
  }
}

TEST(ChangeLogOfAPlan, TwoUsersWorkSideBySideUntilOneIsStale) {
  const TPlan A = LoadSchool();
  const TPlan B = CopyOf(*A);
  const TPlan Server = CopyOf(*A);
  for (const auto& [Plan, Name] : {std::pair{A.get(), "ann"}, std::pair{B.get(), "bob"}}) {
    Plan->ChangeLog().FUserName = TQuillonUserName(Name);
    Plan->ChangeLog().Activate();
  }
  const auto AddRoom = [](TVELPlan& APlan, const std::string& ACode) {
    auto* const Room = Create<TVELRaum>(&APlan);
    Room->Set(Room->FKuerzel, ACode);
    APlan.FRaeume.Add(Room);
  };
  const auto Type = [](TVELPlan& APlan, const std::string& AName) {
    auto* const Form = Create<TVELSchulform>(&APlan);
    Form->Set(Form->FKuerzel, AName);
    APlan.FVerzeichnisse->FSchulformen.Add(Form);
    auto* const Kind = Create<TVELSchultyp>(&APlan);
    Kind->Set(Kind->FKuerzel, AName);
    APlan.FVerzeichnisse->FSchultypen.Add(Kind);
  };
  AddRoom(*A, "Ann1"), AddRoom(*B, "Bob1");
  Type(*A, "t");
  A->FFehlzeiten.GetItem(0)->Set(A->FFehlzeiten.GetItem(0)->FBemerkung, std::string("ill"));
  B->FLehrer.GetItem(0)->Set(B->FLehrer.GetItem(0)->FBemerkung, std::string("b"));
  EXPECT_EQ(PlayOn(*Server, A->ChangeLog()), "");
  EXPECT_EQ(PlayOn(*Server, B->ChangeLog()), "");
  const int Last = Server->FRaeume.Count() - 1;
  EXPECT_EQ(Server->FRaeume.GetItem(Last - 1)->FKuerzel + Server->FRaeume.GetItem(Last)->FKuerzel, "Ann1Bob1");
  const TVELVerzeichnisse& Keys = *Server->FVerzeichnisse;
  EXPECT_TRUE(
      Keys.FSchulformen.GetItem(Keys.FSchulformen.Count() - 1)->DataClass().DescendsFrom(TVELSchulform::Class()));
  EXPECT_TRUE(Keys.FSchultypen.GetItem(Keys.FSchultypen.Count() - 1)->DataClass().DescendsFrom(TVELSchultyp::Class()));
  EXPECT_EQ(Server->FRaeume.GetItem(Last)->FCreatedBy.Text(), "bob");
  EXPECT_EQ(Server->FLehrer.GetItem(0)->FBemerkung, "b");
  EXPECT_EQ(Server->FFehlzeiten.GetItem(0)->FModified, A->FFehlzeiten.GetItem(0)->FModified);

  struct TCase {
    void (*Act)(TVELPlan&);
    std::string Conflict;
  };
  const std::string Teacher = "Lehrer \"" + Server->FLehrer.GetItem(0)->FKuerzel + "\"";
  const std::vector<TCase> Cases = {
      {[](TVELPlan& APlan) { APlan.FLehrer.GetItem(0)->Set(APlan.FLehrer.GetItem(0)->FBemerkung, std::string("a")); },
       "\"" + Teacher + "\" wurde bereits von Benutzer \"bob\" modifiziert."},
      {[](TVELPlan& APlan) { APlan.FRaeume.GetItem(0)->Set(APlan.FRaeume.GetItem(0)->FKuerzel, std::string("Bob1")); },
       "Das Kürzel \"Bob1\" ist bereits vorhanden."},
  };
  for (const TCase& Case : Cases) {
    A->ChangeLog().Clear();
    Case.Act(*A);
    EXPECT_EQ(PlayOn(*Server, A->ChangeLog()), Case.Conflict);
  }
}
