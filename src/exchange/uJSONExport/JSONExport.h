#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>

#include "QuillonIO.h"
#include "QuillonJson/Document.h"
#include "uPlandaten/Listen.h"
#include "uPlandaten/Werte.h"
#include "uPlaneintraege/Eintraege.h"

class TVELJSONUserData;
class TVELPlan;
class TVELSchluessel;

/// Parts of a document. Only the first five have a meaning here; the others name lists of a printed plan.
enum TVELXMLType : std::uint8_t {
  xmlIndex,
  xmlLessons,
  xmlChanges,
  xmlCalEvents,
  xmlAbsences,
  xmlTagesvertretungenNachStunden,
  xmlTagesvertretungenNachKlassen,
  xmlTagesvertretungenNachLehrern,
  xmlKlassenvertretungen,
  xmlLehrervertretungen,
  xmlVertretungslehrer
};
/// Kinds of objects.
enum TVELDataType : std::uint8_t { dtAlle, dtKlassen, dtLehrer, dtRaeume, dtFaecher, dtSchueler, dtRessourcen };

using TVELXMLTypes = TQuillonSet<TVELXMLType, std::uint16_t>;
using TVELDataTypes = TQuillonSet<TVELDataType, std::uint8_t>;

/// Makes one JSON document of a plan: the published timetable with master data, courses, lessons, supervisions, events
/// and changes. While it works it uses the plan's FTag marks and its FIntegriereKlassen.
class TVELJSONExport {
 public:
  explicit TVELJSONExport(TVELPlan& APlan);
  TVELJSONExport(const TVELJSONExport&) = delete;
  TVELJSONExport& operator=(const TVELJSONExport&) = delete;
  ~TVELJSONExport() = default;

  TVELPlanEintragListe PlaneintragListe;                    ///< lesson entries of the document under way
  std::unordered_set<const TVELVeranstaltung*> CourseList;  ///< lessons met
  uPlaneintraege::TSeen Log;                                ///< appointments and changes that are told already
  bool Filtering = true;                                    ///< master data only of what is marked
  std::int64_t ETag = 0;                                    ///< file version of the plan at the last build
  bool Admin = false;
  bool NoTeacher = false;         ///< hides names of teachers; their codes stay
  bool StudentNames = false;      ///< writes students and their names; references to them stand without it too
  bool OffeneFehlzeiten = true;   ///< keeps absences that nobody has dealt with
  bool AllSubstitutions = false;  ///< without lessons: the list of substitutions
  bool SubstitutionsOnly = false;
  bool AllLessons = false;  ///< of the whole school, whoever the document is for
  TVELXMLTypes XMLTypes;
  TVELDataTypes DataTypes;
  bool AlleWochen = false;  ///< one entry for each appointment, without dates, changes and absences
  TVELDateTime Start;
  TVELDateTime Finish;            ///< last day
  std::int32_t MaxItemCount = 0;  ///< read by no step, as the next two
  TVELPlanobjekt* Homeobjekt = nullptr;
  bool Bemerkung = false;
  TVELPlanobjekt* Planobjekt = nullptr;            ///< the single object that the document is for
  TVELDateTime PlanStart;                          ///< earliest entry of the last build; 0 without one
  bool Art = true;                                 ///< writes "caption"
  bool Information = true;                         ///< writes "information"
  bool Mitteilung = true;                          ///< writes "message"
  const TVELSchluessel* Kategorie = nullptr;       ///< only events of this category
  const TVELJSONUserData* UserData = nullptr;      ///< whom the document is for; not owned
  TQuillonJSONOwner<TQuillonJSONObject> JSONData;  ///< by CreateJSONData; its members are written text, no nodes
  TVELStammobjektliste Auswahl;  ///< if its first item is a team: only what belongs to one of these teams

  TVELPlan& Plan() const { return FPlan; }
  /// Forgets the last document and what was chosen for it.
  void Clear();

  /// A text with the escapes of tab, line feed, form feed, quote and backslash; a form feed becomes "\r", a carriage
  /// return nothing. An empty one adds nothing.
  static void AddNode(TQuillonJSONObject& ANode, std::string_view AName, std::string_view AValue);
  /// These three add nothing for a value that equals the default.
  static void AddNumber(TQuillonJSONObject& ANode, std::string_view AName, std::int64_t AValue, std::int64_t ADefault);
  static void AddBoolean(TQuillonJSONObject& ANode, std::string_view AName, bool AValue, bool ADefault);
  /// "yyyymmddhhmmss"
  static void AddDateTime(TQuillonJSONObject& ANode, std::string_view AName, TVELDateTime AValue,
                          TVELDateTime ADefault);

  /// The Monday two weeks ahead of that of the date, or of today for 0; not ahead of the plan's first Monday.
  TVELDateTime PastPolicy(TVELDateTime AStart) const;
  /// Makes JSONData anew. With UserData the flags follow from its profiles.
  /// @param AStart see PastPolicy
  /// @param AFinish last day; 0, and one behind the plan's last day, for that
  void CreateJSONData(TVELDateTime AStart, TVELDateTime AFinish);
  /// The members of JSONData without braces; empty without it.
  std::string GetJSONText() const;
  std::string CreateJSONText(TVELDateTime AStart, TVELDateTime AFinish);

  /// Writes a document of the whole school over the range as it stands: byte order mark, text with its braces, line
  /// break. JSONData stays as it is.
  void SaveJSONToStream(TQuillonStream& AStream);
  /// Makes the same document. No file is written: AFileName has no meaning.
  void SaveJSONText(const std::string& AFileName);
  /// As SaveJSONText, with the flags of a document for all; UploadFile has no meaning.
  void SaveJSONFile(const std::string& AFileName, bool UploadFile);

 private:
  void TakeFlags(const TVELJSONUserData& AUser);
  TQuillonJSONOwner<TQuillonJSONObject> Build();
  TQuillonJSONOwner<TQuillonJSONObject> BuildWhole();

  TVELPlan& FPlan;
};

namespace uJSONExport {

/// A document as files hold it: byte order mark, text, line break.
std::string FileText(const TQuillonJSONObject& ADocument);

}  // namespace uJSONExport
