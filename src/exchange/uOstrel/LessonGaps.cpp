#include "uOstrel/LessonGaps.h"

#include <array>

#include "uOstrel/Lessons.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Vertretungen.h"

namespace uOstrel {

namespace {

std::string AbsenceReason(const TVELFehlzeit& AnAbsence) {
  return R"([{"_type":"Absence","AbsenceId":")" + QuillonGuid::Plain(AnAbsence.ID()) + R"("}])";
}

std::string Substitution(const TGUID& ALessonId) {
  return R"([{"_type":"Substitution","SubstituteLessonId":")" + QuillonGuid::Plain(ALessonId) + R"("}])";
}

std::string Cancellation(std::string_view ABehaviour) {
  return R"([{"_type":"Cancellation","Behaviour":")" + std::string(ABehaviour) + R"("}])";
}

std::string Reasons(const TVELVertretung& AChange) {
  if (AChange.FFehlzeit != nullptr) {
    return AbsenceReason(*AChange.FFehlzeit);
  }
  return AChange.FFehlstellengrund == vaFreigestellt ? R"([{"_type":"Stash"}])" : "";
}

/// Where a lesson went that was moved away.
std::string MovedResolution(const TVELVertretung& AChange, const TExportScope& AScope) {
  const TVELAenderung* const Mirror = AChange.FSpiegelAenderung;
  if (Mirror == nullptr) {
    return Substitution(AChange.ID());
  }
  const TVELTermin* const Target = Mirror->Termin();
  const bool IsTold =
      IsExportable(*Mirror, AScope) && (Target == nullptr || (HasSubject(*Target) && Target->Scheduled()));
  return IsTold ? Substitution(Mirror->ID()) : "[{}]";
}

/// For a change that is exportable.
std::string Resolutions(const TVELVertretung& AChange, const TExportScope& AScope) {
  switch (AChange.FVertretungsmerkmal) {
    case vmKein:
      return "[]";
    case vmEntfaellt:
    case vmKlasseFehlt:
      return Cancellation("None");
    case vmKlasseFrei:
      return Cancellation("StayInRoom");
    case vmFaelltAus:
      return Cancellation("LeaveRoom");
    case vmWeggezogen:
      return MovedResolution(AChange, AScope);
    default:
      return Substitution(AChange.ID());
  }
}

/// True if the set tells the lesson that the substitution leaves.
bool HasLesson(const TVELVertretung& AChange) {
  const TVELTermin* const Planned = AChange.Termin();
  return Planned != nullptr && HasSubject(*Planned);
}

/// True if a moved lesson has its other half, as its feature asks for it.
bool HasMirror(const TVELVertretung& AChange) {
  const TVELAenderung* const Mirror = AChange.FSpiegelAenderung;
  switch (AChange.FVertretungsmerkmal) {
    case vmVorgezogen:
      return Mirror != nullptr && Mirror->Termin() != nullptr && Mirror->Termin()->Scheduled();
    case vmWeggezogen:
      return Mirror != nullptr;
    default:
      return true;
  }
}

std::optional<TLessonGap> Make(const TVELVertretung& AChange, const TExportScope& AScope) {
  const TVELTermin* const Planned = AChange.Termin();
  const TVELTermin* const Other = AChange.FNeuerTermin;
  if (!AScope.Covers(AChange) || (Planned != nullptr && !Planned->Scheduled())) {
    return std::nullopt;
  }
  const bool IsMoved = AChange.FVertretungsmerkmal == vmVorgezogen || AChange.FVertretungsmerkmal == vmWeggezogen;
  const bool IsAtOther = !IsMoved && Planned != nullptr && Other != nullptr && HasSubject(*Other);
  if (IsAtOther ? AScope.OnlyScheduled() && !Other->Scheduled() : !HasLesson(AChange) || !HasMirror(AChange)) {
    return std::nullopt;
  }
  return TLessonGap{
      .Id = GapGuid(AChange),
      .LessonId = IsAtOther ? Other->ID() : Planned->ID(),
      .Times = IsAtOther ? OneTime(AChange.NeuStart(), AChange.NeuEnde()) : OneTime(AChange.FStart, AChange.FEnde),
      .Reasons = Reasons(AChange),
      .Resolutions = Resolutions(AChange, AScope),
      .Description = AChange.FBemerkung};
}

std::optional<TLessonGap> Make(const TVELRaumaenderung& AChange, const TExportScope& AScope) {
  const TVELTermin* const Planned = AChange.Termin();
  if (!AScope.Covers(AChange) || Planned == nullptr || !Planned->Scheduled()) {
    return std::nullopt;
  }
  return TLessonGap{.Id = GapGuid(AChange),
                    .LessonId = Planned->ID(),
                    .Times = OneTime(AChange.FStart, AChange.FEnde),
                    .Reasons = AChange.FFehlzeit != nullptr ? AbsenceReason(*AChange.FFehlzeit) : "",
                    .Resolutions = Substitution(AChange.ID()),
                    .Description = AChange.FBemerkung};
}

std::optional<TLessonGap> Make(const TVELZusatzunterricht& AChange, const TExportScope& /*AScope*/) {
  if (AChange.FFehlzeit == nullptr || AChange.FNeuesFach == nullptr) {
    return std::nullopt;
  }
  return TLessonGap{.Id = GapGuid(AChange),
                    .LessonId = AChange.ID(),
                    .Times = OneTime(AChange.FStart, AChange.FEnde),
                    .Reasons = AbsenceReason(*AChange.FFehlzeit),
                    .Resolutions = Substitution(ExtraLessonGuid(AChange)),
                    .Description = {}};
}

}  // namespace

std::optional<TLessonGap> LessonGap(const TVELAenderung& AChange, const TExportScope& AScope) {
  return RowOf<std::optional<TLessonGap>>(AChange, AScope, [](const auto& AnOwnChange, const TExportScope& AnOwnScope) {
    return Make(AnOwnChange, AnOwnScope);
  });
}

std::span<const TColumn<TLessonGap>> LessonGapColumns() {
  using T = TLessonGap;
  static constexpr std::array<TColumn<T>, 6> Columns = {{
      {"Id", [](TCsvFile& F, const T& O) { F.Identifier(O.Id); }},
      {"LessonId", [](TCsvFile& F, const T& O) { F.Identifier(O.LessonId); }},
      {"TemporalExpressions", [](TCsvFile& F, const T& O) { F.Text(O.Times); }},
      {"Reasons", [](TCsvFile& F, const T& O) { F.Text(O.Reasons); }},
      {"Resolutions", [](TCsvFile& F, const T& O) { F.Text(O.Resolutions); }},
      {"Description", [](TCsvFile& F, const T& O) { F.Text(O.Description); }},
  }};
  return Columns;
}

}  // namespace uOstrel
