#include "uPlandaten/Listen.h"

#include <algorithm>

#include "QuillonText.h"
#include "uPlandaten/Aenderungen.h"
#include "uPlandaten/Anrechnungen.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Basis.h"
#include "uPlandaten/Bloecke.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Gebaeude.h"
#include "uPlandaten/Kalender.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Perioden.h"
#include "uPlandaten/Raeume.h"
#include "uPlandaten/Relationen.h"
#include "uPlandaten/Ressourcen.h"
#include "uPlandaten/Schueler.h"
#include "uPlandaten/Stundentafeln.h"
#include "uPlandaten/Teams.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlandaten/Zeitpraeferenzen.h"
#include "uPlandaten/Zeitrahmen.h"

namespace {

std::string WithoutBlanks(std::string_view AText) {
  std::string Text(AText);
  std::erase(Text, ' ');
  return Text;
}

bool SameText(std::string_view A, std::string_view B, bool ACaseSensitive) {
  return ACaseSensitive ? A == B : QuillonText::EqualsIgnoreCase(A, B);
}

template <class TList, class TPredicate>
auto FindFirst(const TList& AList, const TPredicate& APredicate) {
  const auto Found =
      std::ranges::find_if(AList, [&](const auto* AnItem) { return AnItem != nullptr && APredicate(AnItem); });
  return Found == AList.end() ? nullptr : *Found;
}

template <class TItem, class TList>
TItem* FindUserIn(const TList& AList, std::string TItem::*AName, std::string_view AUserName, bool ACaseSensitive,
                  const TItem* AnExcluded) {
  return FindFirst(AList, [&](const TItem* AnItem) {
    return AnItem != AnExcluded && SameText(AnItem->*AName, AUserName, ACaseSensitive);
  });
}

}  // namespace

void TVELStammobjektliste::AfterInsert(int AnIndex) {
  if (FOwner != nullptr) {
    uPlandaten::AddRelation(*FOwner, GetItem(AnIndex));
  }
}

void TVELStammobjektliste::BeforeClear() {
  if (FOwner != nullptr) {
    uPlandaten::SetRelations(*FOwner, Items(), {});
  }
}

void TVELStammobjektliste::Leave(int AnIndex) {
  TQuillonDataObject* const Item = GetItem(AnIndex);
  // A list may hold an item twice.
  if (FOwner != nullptr && uPlandaten::FollowsRelations(*FOwner) && std::ranges::count(Items(), Item) == 1) {
    uPlandaten::RemoveRelation(*FOwner, Item);
  }
}

void TVELTerminliste::AfterInsert(int AnIndex) {
  if (IsItemOwner()) {
    GetItem(AnIndex)->AddRelations();
  }
}

void TVELTerminliste::BeforeExtract(int AnIndex) {
  if (TVELTermin* const Appointment = GetItem(AnIndex); Appointment != nullptr && IsItemOwner()) {
    Appointment->RemoveRelations();
  }
}

void TVELStammobjektliste::ClearAll(const TQuillonDataClass& AClass) {
  for (int I = Count() - 1; I >= 0; --I) {
    if (const TVELStammobjekt* const Item = GetItem(I); Item != nullptr && Item->DataClass().DescendsFrom(AClass)) {
      Delete(I);
    }
  }
}

bool TVELStammobjektliste::Contains(std::string_view AKuerzel, bool ACaseSensitive,
                                    const TVELStammobjekt* AnExcluded) const {
  return Find(AKuerzel, false, ACaseSensitive, AnExcluded) != nullptr;
}

TVELStammobjekt* TVELStammobjektliste::Find(std::string_view AKuerzel, bool APartial, bool ACaseSensitive,
                                            const TVELStammobjekt* AnExcluded) const {
  const std::string Wanted = WithoutBlanks(AKuerzel);
  return FindFirst(*this, [&](const TVELStammobjekt* AnItem) {
    if (AnItem == AnExcluded) {
      return false;
    }
    const std::string Code = WithoutBlanks(AnItem->FKuerzel);
    const std::string_view Candidate(Code);
    return SameText(APartial ? Candidate.substr(0, Wanted.size()) : Candidate, Wanted, ACaseSensitive);
  });
}

TVELStammobjekt* TVELStammobjektliste::WebFind(std::string_view AKuerzel, bool ACaseSensitive) const {
  if (TVELStammobjekt* const Found = Find(AKuerzel, false, ACaseSensitive)) {
    return Found;
  }
  const std::string Wanted = WithoutBlanks(AKuerzel);
  if (TVELStammobjekt* const Found = FindFirst(*this, [&](const TVELStammobjekt* AnItem) {
        return SameText(uPlandaten::WebForm(WithoutBlanks(AnItem->FKuerzel)), Wanted, ACaseSensitive);
      })) {
    return Found;
  }
  return FindWebName(Wanted);
}

TVELStammobjekt* TVELStammobjektliste::FindWebName(std::string_view AName) const {
  return FindFirst(*this, [&](const TVELStammobjekt* AnItem) { return SameText(AnItem->WebName(), AName, false); });
}

TVELStammobjekt* TVELStammobjektliste::FindBrenmarkID(std::int32_t ABrenmarkID) const {
  return FindFirst(*this, [&](const TVELStammobjekt* AnItem) { return AnItem->FBrenmarkID == ABrenmarkID; });
}

std::string TVELStammobjektliste::GetUniqueKuerzel() const {
  for (int Number = 1;; ++Number) {
    std::string Code = "Neu" + std::to_string(Number);
    if (!Contains(Code, false)) {
      return Code;
    }
  }
}

bool TVELStammobjektliste::Validate(const TVELStammobjekt* AnObject, std::string_view AKuerzel) const {
  return AKuerzel.empty() || std::ranges::none_of(*this, [&](const TVELStammobjekt* AnItem) {
           return AnItem != nullptr && AnItem != AnObject && AnItem->FKuerzel == AKuerzel;
         });
}

std::string TVELStammobjektliste::JoinCodes() const {
  std::string Text;
  // A separator ahead of each item but the first, whatever that one's code is.
  for (std::string_view Separator; const TVELStammobjekt* Item : *this) {
    if (Item != nullptr) {
      Text.append(Separator).append(Item->FKuerzel);
      Separator = ", ";
    }
  }
  return Text;
}

TVELKlasse* TVELKlassenliste::FindUser(std::string_view AUserName, bool ACaseSensitive,
                                       const TVELKlasse* AnExcluded) const {
  return FindUserIn(*this, &TVELKlasse::FUsername, AUserName, ACaseSensitive, AnExcluded);
}

TVELLehrer* TVELLehrerliste::FindUser(std::string_view AUserName, bool ACaseSensitive,
                                      const TVELLehrer* AnExcluded) const {
  return FindUserIn(*this, &TVELLehrer::FUsername, AUserName, ACaseSensitive, AnExcluded);
}

TVELRaum* TVELRaumliste::FindUser(std::string_view AUserName, bool ACaseSensitive, const TVELRaum* AnExcluded) const {
  return FindUserIn(*this, &TVELRaum::FUserName, AUserName, ACaseSensitive, AnExcluded);
}

TVELSchueler* TVELSchuelerliste::FindUser(std::string_view AUserName, bool ACaseSensitive,
                                          const TVELSchueler* AnExcluded) const {
  return FindUserIn(*this, &TVELSchueler::FUsername, AUserName, ACaseSensitive, AnExcluded);
}

TVELSchueler* TVELSchuelerliste::FindName(std::string_view AVorname, std::string_view ANachname,
                                          bool ACaseSensitive) const {
  return FindFirst(*this, [&](const TVELSchueler* AnItem) {
    return SameText(AnItem->FVorname, AVorname, ACaseSensitive) &&
           SameText(AnItem->FNachname, ANachname, ACaseSensitive);
  });
}

TVELSchueler* TVELSchuelerliste::FindSchuelerNr(std::string_view ASchuelerNr) const {
  return FindFirst(*this, [&](const TVELSchueler* AnItem) { return AnItem->FSchuelerNr == ASchuelerNr; });
}

TVELStammobjekt* TVELSchuelerliste::WebFind(std::string_view AKuerzel, bool /*ACaseSensitive*/) const {
  if (TVELSchueler* const Found = FindSchuelerNr(AKuerzel)) {
    return Found;
  }
  return FindWebName(WithoutBlanks(AKuerzel));
}

TVELBlock* TVELBlockliste::FindBlock(std::string_view ABlockID) const {
  return FindFirst(*this, [&](const TVELBlock* AnItem) { return AnItem->FName == ABlockID; });
}

TVELZeitrahmen* TVELZeitrahmenliste::FindKuerzel(std::string_view AKuerzel) const {
  return FindFirst(*this, [&](const TVELZeitrahmen* AnItem) { return AnItem->FKuerzel == AKuerzel; });
}
