#include "uPlandaten/Zeitrahmen.h"

const TQuillonDataClass& TVELZeitrahmen::Class() {
  using T = TVELZeitrahmen;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("TimeFrame", "Zeitrahmen \"%s\"")
      .String<&T::FKuerzel>("Code").Required()
      .String<&T::FBemerkung>("Name")
      .LongInt<&T::FStdProTag>("LessonsPerDay").Required()
      .LongInt<&T::FMinutenProStd>("MinutesPerHour").Required()
      .LongInt<&T::FEinheitenProStd>("UnitsPerHour").Required()
      .LongInt<&T::FDefaultStdSichtbar>("FirstHour").Required()
      .LongInt<&T::FVormittagBisStd>("MorningLessonTo").Required()
      .List<&T::FZeilen>("Rows")
      .List<&T::FMarkierungen>("Markings")
      .List<&T::FPositionsschemata>("Positions")
      .Boolean<&T::FBookAdaptive>("BookAdaptive", true)
      .Boolean<&T::FKeinePauseInTermin>("NoGapInLesson")
      .Boolean<&T::FTerminPassgenau>("LessonFitsSlot")
      .Boolean<&T::FDoppelStdPosBeachten>("DoubleLessonsPos", true);
  // clang-format on
  return Class;
}

void TVELZeitrahmen::Clear() {
  FMarkierungen.Clear();
  FZeilen.Clear();
  FPositionsschemata.Clear();
}

std::string TVELZeitrahmen::DisplayArgument() const { return FKuerzel; }

const TQuillonDataClass& TVELZeitrahmenzeile::Class() {
  using T = TVELZeitrahmenzeile;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("TimeFrameRow", "Zeitrahmenzeile \"%s\"")
      .String<&T::FBezeichnung>("Name")
      .Boolean<&T::FDoppelStd>("DoubleLesson")
      .DateTime<&T::FStart>("Start")
      .DateTime<&T::FEnde>("End")
      .LongInt<&T::FTrennlinienfarbe>("SeparatorLineColor", NoColour);
  // clang-format on
  return Class;
}

std::string TVELZeitrahmenzeile::DisplayArgument() const { return FBezeichnung; }

const TQuillonDataClass& TVELZeitrahmenmarkierung::Class() {
  using T = TVELZeitrahmenmarkierung;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("TimeFrameMarking", "Zeitrahmenmarkierung")
      .LongInt<&T::FFarbe>("Color", NoColour)
      .LongInt<&T::FZeile>("Row").Required()
      .LongInt<&T::FUnterzeile>("Subline").Required();
  // clang-format on
  return Class;
}

const TQuillonDataClass& TVELPositionsschema::Class() {
  using T = TVELPositionsschema;
  // clang-format off
  static const TQuillonDataClass Class = DescribeClass<T, TVELBasisObject>("PositionScheme", "Positionsschema")
      .LongInt<&T::FDauer>("Duration", 2)
      .IntegerArray<&T::FPositionen>("Positions");
  // clang-format on
  return Class;
}

std::string TVELPositionsschema::GetDisplayName() const { return "Positionsschema \"" + std::to_string(FDauer) + "\""; }
