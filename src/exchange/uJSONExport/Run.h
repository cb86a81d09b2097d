#pragma once

#include <unordered_set>
#include <vector>

#include "uDataUtils/Context.h"
#include "uJSONExport/JSONExport.h"
#include "uJSONExport/Nodes.h"

class TQuillonDataObject;
class TVELLehrer;
class TVELPlanobjekt;
class TVELStammobjekt;
class TVELTeam;

/// How a document is made: what all of its parts know, and the parts.
namespace uJSONExport {

using uDataUtils::TPlanContext;
using uDataUtils::TSpan;

/// The choice of teams.
class TTeamSelection {
 public:
  explicit TTeamSelection(const TVELStammobjektliste& AChoice);

  /// True without a choice, and for what cannot belong to a team: teams and buildings.
  bool Passes(const TVELStammobjekt& AnObject) const;

 private:
  std::unordered_set<const TQuillonDataObject*> FTeams;
};

/// One build of a document.
struct TRun {
  explicit TRun(TVELJSONExport& AnExport);

  /// The document's days up to, but without, the day behind the last one.
  TSpan Range() const;
  bool Has(TVELXMLType AType) const { return Export.XMLTypes.Contains(AType); }
  /// True with the reasons of teachers' absences for all to read.
  bool ShowsTeacherReasons() const;
  /// The object that the document is for, if it is one.
  const TVELPlanobjekt* Reader() const { return Objects.size() == 1 ? Objects.front() : nullptr; }

  TVELJSONExport& Export;
  TVELPlan& Plan;
  TPlanContext Context;
  TTeamSelection Teams;
  std::vector<TVELPlanobjekt*> Objects;  ///< whom the document is for; empty for all
};

/// The objects of the profiles, or the single one; empty if the document is for all.
std::vector<TVELPlanobjekt*> ChosenObjects(const TVELJSONExport& AnExport);
/// All teachers and classes that are available and pass the choice of teams.
std::vector<TVELPlanobjekt*> AllObjects(const TRun& ARun);

/// Number of the kind of change: 0 to 8.
int ChangeType(const TRun& ARun, const TVELPlaneintrag& AnEntry);
/// True if nothing but an absence, which nobody has dealt with, makes the entry differ.
bool IsAbsenceOnly(const TVELPlaneintrag& AnEntry);

void ClearMarks(TVELPlan& APlan);
/// Marks all that an entry names: it stands in the lists of master data.
void Mark(const TVELPlaneintrag& AnEntry);

/// Fills PlaneintragListe and CourseList.
void CollectEntries(TRun& ARun);
/// The days on which a message stands: its first one, and the school days up to its last one.
std::vector<TVELDate> MessageDays(const TPlanContext& AContext, const TVELMitteilung& AMessage);

// The parts. Each writes its keys in their order.

void WriteAbout(TNode& ANode, const TRun& ARun);
void WriteReasons(TNode& ANode, const TRun& ARun);
void WriteTimeframes(TNode& ANode, const TRun& ARun);
void WriteSchedule(TNode& ANode, const TRun& ARun);
void WriteLessons(TNode& ANode, const TRun& ARun);
/// "changes" of a lesson.
TNode LessonChanges(const TRun& ARun, const TVELPlaneintrag& AnEntry);
void WriteSupervisions(TNode& ANode, const TRun& ARun);
void WriteEvents(TNode& ANode, const TRun& ARun);
void WriteAbsences(TNode& ANode, const TRun& ARun);
void WriteCourses(TNode& ANode, const TRun& ARun);
void WriteMasters(TNode& ANode, const TRun& ARun);

/// "startDate", "startTime", "endDate" and "endTime"; neither of a pair for 0.
void WritePeriod(TNode& ANode, TVELDateTime AStart, TVELDateTime AFinish);
/// "cancelled" and "cancelReasonCode".
void WriteCancelled(TNode& ANode, const TVELAenderung& AChange);
/// Abbreviation of an absence's reason, or what stands for one that is not told; empty for an absence that is not
/// public.
std::string ReasonCode(const TRun& ARun, const TVELFehlzeit& AnAbsence);

}  // namespace uJSONExport
