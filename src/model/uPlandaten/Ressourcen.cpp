#include "uPlandaten/Ressourcen.h"

#include "uPlandaten/Raeume.h"
#include "uPlandaten/Teams.h"

const TQuillonDataClass& TVELRessource::Class() {
  using T = TVELRessource;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELPlanobjekt>("Resource", "Ressource \"%s\"")
      .String<&T::FBarcode>("Barcode").AlwaysWritten()
      .Reference<&T::FKategorie>("ResourceCategory")
      .Reference<&T::FMerkmal>("ResourceFeature")
      .Reference<&T::FRaum>("Room")
      .Single<&T::FRuecklaufzeit>("ReturnTime")
      .Reference<&T::FStammraum>("StandardRoom")
      .Reference<&T::FTeam>("Group");
  // clang-format on
  return Class;
}

const TQuillonDataClass& TVELRessourcenvorgabe::Class() {
  using T = TVELRessourcenvorgabe;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("SpecifiedResource", "Ressourcenvorgabe \"%s\"")
      .Byte<&T::FAnzahl>("Count").AlwaysWritten()
      .Reference<&T::FKategorie>("ResourceCategory").Essential()
      .Reference<&T::FRessource>("Resource").Essential()
      .String<&T::FBemerkung>("Comment");
  // clang-format on
  return Class;
}

std::string TVELRessourcenvorgabe::DisplayArgument() const {
  if (FRessource != nullptr) {
    return FRessource->FKuerzel;
  }
  return FKategorie != nullptr ? FKategorie->FKuerzel : "Unbenannt";
}

const TQuillonDataClass& TVELAusstattung::Class() {
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<TVELAusstattung, TVELRessourcenvorgabe>("equipment", "Ausstattung \"%s\"");
  // clang-format on
  return Class;
}
