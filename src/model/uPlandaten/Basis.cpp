#include "uPlandaten/Basis.h"

#include <array>
#include <utility>

#include "QuillonText.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Zeitrahmen.h"

const TQuillonDataClass& TVELBasisObject::Class() {
  static const TQuillonDataClass Class = DescribeAbstractClass<TVELBasisObject, TVELDataObject>("TVELBasisObject");
  return Class;
}

TVELPlan* TVELBasisObject::Plan() const { return dynamic_cast<TVELPlan*>(Storage()); }

TVELZeitrahmen* TVELBasisObject::StandardTimeframe() const {
  const TVELPlan* const Owner = Plan();
  return Owner != nullptr ? Owner->StandardTimeframe() : nullptr;
}

const TQuillonDataClass& TVELStammobjekt::Class() {
  using T = TVELStammobjekt;
  // clang-format off
  static const TQuillonDataClass Class = DescribeAbstractClass<T, TVELBasisObject>("TVELStammobjekt")
      .String<&T::FKuerzel>("Code").Required()
      .String<&T::FBezeichnung>("Name")
      .String<&T::FOstrelID>("OstrelID")
      .LongInt<&T::FBrenmarkID>("BrenmarkID");
  // clang-format on
  return Class;
}

TVELZeitrahmen* TVELStammobjekt::Timeframe() const { return StandardTimeframe(); }

void TVELStammobjekt::CheckConflict(TQuillonDataOperationKind AKind, const TQuillonDataList* AList) const {
  const auto* const List =
      dynamic_cast<const TVELStammobjektliste*>(AList != nullptr ? static_cast<const TQuillonObject*>(AList) : FOwner);
  if (MayConflict(AKind) && List != nullptr && !List->Validate(this, FKuerzel)) {
    throw EQuillonDataConflict(ctSemanticConflict,
                               "Das Kürzel " + QuillonText::Quoted(FKuerzel) + " ist bereits vorhanden.");
  }
}

std::string TVELStammobjekt::WebName() const {
  std::string Code = FKuerzel;
  std::erase(Code, ' ');
  return uPlandaten::WebForm(Code);
}

const TQuillonDataClass& TVELPlanobjekt::Class() {
  using T = TVELPlanobjekt;
  // clang-format off
  static const TQuillonDataClass Class = DescribeAbstractClass<T, TVELStammobjekt>("TVELPlanobjekt")
      .List<&T::FFehlzeiten>("AbsenceTimes")
      .LongInt<&T::FFarbe>("Color", NoColour)
      .List<&T::FVeranstaltungen>("Events")
      .String<&T::FBemerkung>("Comments")
      .DateTime<&T::FVertretungsplanAenderung>("SubstitutionChange")
      .Boolean<&T::FKeineStatistik>("NoStatistic")
      .Boolean<&T::FKeinBrenmarkAbgleich>("NoBrenmarkExchange")
      .Boolean<&T::FKeineAufsicht>("NoSupervision")
      .Boolean<&T::FNichtVerfuegbar>("NotAvailable")
      .List<&T::FZeitpraeferenzen>("TimePreferences")
      .Reference<&T::FZeitrahmen>("TimeFrame");
  // clang-format on
  return Class;
}

void TVELPlanobjekt::InitProperties() {
  TVELStammobjekt::InitProperties();
  FVeranstaltungen.SetCompare(TVELVeranstaltungsliste::CompareItems);
  FVeranstaltungen.SetSorted(true);
}

void TVELPlanobjekt::FreeProperties() {
  if (TVELPlan* const Owner = Plan()) {
    Owner->FMolecules.RemoveObject(*this);
  }
  TVELStammobjekt::FreeProperties();
}

TVELZeitrahmen* TVELPlanobjekt::Timeframe() const {
  return FZeitrahmen != nullptr ? FZeitrahmen : TVELStammobjekt::Timeframe();
}

namespace uPlandaten {

std::string WebForm(std::string_view AText) {
  static constexpr std::array<std::pair<std::string_view, std::string_view>, 6> Umlauts = {
      {{"Ä", "Ae"}, {"Ö", "Oe"}, {"Ü", "Ue"}, {"ä", "ae"}, {"ö", "oe"}, {"ü", "ue"}}};
  constexpr std::string_view Unreserved = "-._~";
  constexpr std::string_view Digits = "0123456789ABCDEF";
  std::string Form;
  for (std::size_t I = 0; I < AText.size(); ++I) {
    const auto* const Umlaut = std::find_if(Umlauts.begin(), Umlauts.end(), [&](const auto& AnUmlaut) {
      return AText.substr(I, AnUmlaut.first.size()) == AnUmlaut.first;
    });
    const char C = AText[I];
    if (Umlaut != Umlauts.end()) {
      Form.append(Umlaut->second);
      I += Umlaut->first.size() - 1;
    } else if ((C >= '0' && C <= '9') || (C >= 'A' && C <= 'Z') || (C >= 'a' && C <= 'z') ||
               Unreserved.find(C) != std::string_view::npos) {
      Form.push_back(C);
    } else {
      const auto Byte = static_cast<unsigned char>(C);
      Form.append({'%', Digits[Byte >> 4], Digits[Byte & 0xF]});
    }
  }
  return Form;
}

}  // namespace uPlandaten
