#include "uSchluessel/Schluessel.h"

const TQuillonDataClass& TVELSchluessel::Class() {
  using T = TVELSchluessel;
  // clang-format off
  static const TQuillonDataClass Class = DescribeAbstractClass<T, TVELDataObject>("TVELSchluessel")
      .String<&T::FKuerzel>("Code").Required()
      .String<&T::FSchluessel>("Key")
      .String<&T::FBezeichnung>("Name")
      .Date<&T::FGueltigVon>("ValidFrom")
      .Date<&T::FGueltigBis>("ValidTo")
      .LongInt<&T::FBrenmarkID>("BrenmarkID");
  // clang-format on
  return Class;
}

const TQuillonDataClass& TVELFarbSchluessel::Class() {
  using T = TVELFarbSchluessel;
  // clang-format off
  static const TQuillonDataClass Class = DescribeAbstractClass<T, TVELSchluessel>("TVELFarbSchluessel")
      .LongInt<&T::FFarbe>("Color", NoColour);
  // clang-format on
  return Class;
}

const TQuillonDataClass& TVELLehrerfehlgrund::Class() {
  using T = TVELLehrerfehlgrund;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELFehlgrund>("TeacherAbsenceReason", "Lehrerfehlgrund \"%s\"")
      .Boolean<&T::FVerrechnen>("Settlement");
  // clang-format on
  return Class;
}

const TQuillonDataClass& TVELLehrerSollAenderungsSchluessel::Class() {
  using T = TVELLehrerSollAenderungsSchluessel;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELSchluessel>("TeacherSetChangeKey", "Lehrer-Soll-Änderungsschlüssel \"%s\"")
      .Double<&T::FFaktor>("Factor").Required()
      .LongInt<&T::FKategorie>("Category").Required()
      .String<&T::FOperator>("Operator").Required();
  // clang-format on
  return Class;
}

const TQuillonDataClass& TVELRessourcenkategorie::Class() {
  static const TQuillonDataClass Class =
      DescribeClass<TVELRessourcenkategorie, TVELSchluessel>("ResourceCategory", "Ressourcenkategorie \"%s\"");
  return Class;
}
