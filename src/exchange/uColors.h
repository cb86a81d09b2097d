#pragma once

#include "QuillonDataObjects/Storage.h"
#include "uPlandaten/Werte.h"

/// Colours of the published timetable, red in the low byte.
class TVELColors : public TQuillonDataStorage {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TColor FBackgroundColor = 0;
  TColor FEventColor = 0;
  TColor FSupervisionColor = 0;
  TColor FSupervisionChangeColor = 0;
  TColor FLessonChangeColor = 0;
  TColor FHeaderBgColor = 0;  ///< the background made darker unless the file has one
  TColor FRoomChangeColor = 0;
  TColor FMessageColor = 0;
  /// Written under a name that is not read: a file that says "additionalLessonColor" leaves the default.
  TColor FAdditionalLessonColor = 0;
  TColor FAbsenceColor = 0;
  TColor FTodayColor = 0;
  TColor FTodayHeaderColor = 0;

 protected:
  void InitProperties() override;

 private:
  void DeriveHeader();
};

namespace uColors {

/// The colour with its luminance, on a scale of 0 to 240, lowered by ASteps but not below 0; hue and saturation stay.
/// The whole-number arithmetic of the display system.
TColor Darker(TColor AColour, int ASteps);

/// The colours in use, read from their file at the first need.
/// @throws EQuillonException, naming the file, for one that is damaged
const TVELColors& Colors();

}  // namespace uColors
