#include "uJSONExport/JSONExport.h"

#include <algorithm>
#include <initializer_list>

#include "QuillonDateTime.h"
#include "uJSONExport/Run.h"
#include "uJSONExport/UserData.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Plan.h"

namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view LineBreak = "\r\n";

/// Classes that are taught within others take part in their lessons, as long as this lives.
class TWithIntegratedClasses {
 public:
  explicit TWithIntegratedClasses(TVELPlan& APlan)
      : FFlag(APlan.FIntegriereKlassen), FBefore(std::exchange(FFlag, true)) {}
  TWithIntegratedClasses(const TWithIntegratedClasses&) = delete;
  TWithIntegratedClasses& operator=(const TWithIntegratedClasses&) = delete;
  ~TWithIntegratedClasses() { FFlag = FBefore; }

 private:
  bool& FFlag;
  bool FBefore;
};

}  // namespace

TVELJSONExport::TVELJSONExport(TVELPlan& APlan) : FPlan(APlan) {}

void TVELJSONExport::Clear() {
  Auswahl.Clear();
  JSONData.reset();
  CourseList.clear();
  Log.clear();
  XMLTypes = {};
  DataTypes = {};
  Art = true;
  Information = true;
  Mitteilung = true;
  Bemerkung = false;
  Admin = false;
  PlanStart = 0;
}

TVELDateTime TVELJSONExport::PastPolicy(TVELDateTime AStart) const {
  constexpr double DaysBack = 14;
  const TVELDate Monday = uDataUtils::MondayOf(AStart != 0 ? AStart : TVELDateTime(QuillonDateTime::Now())) - DaysBack;
  return std::max<double>(Monday, uDataUtils::MondayOf(FPlan.FEinstellungen->FGueltigVon));
}

void TVELJSONExport::CreateJSONData(TVELDateTime AStart, TVELDateTime AFinish) {
  JSONData.reset();
  if (UserData != nullptr) {
    TakeFlags(*UserData);
  }
  const TVELDateTime Last = FPlan.FEinstellungen->FGueltigBis;
  Start = PastPolicy(AStart);
  Finish = AFinish != 0 && (Last == 0 || AFinish <= Last) ? AFinish : Last;
  FPlan.SortLists();
  JSONData = Build();
}

std::string TVELJSONExport::GetJSONText() const { return JSONData != nullptr ? JSONData->ContentToString() : ""; }

std::string TVELJSONExport::CreateJSONText(TVELDateTime AStart, TVELDateTime AFinish) {
  CreateJSONData(AStart, AFinish);
  return GetJSONText();
}

void TVELJSONExport::TakeFlags(const TVELJSONUserData& AUser) {
  constexpr std::int32_t NamesShown = 2;
  const auto HasAny = [&](std::initializer_list<std::int32_t> APolicies) {
    return std::ranges::any_of(APolicies, [&](std::int32_t APolicy) { return AUser.HasProfile(APolicy); });
  };
  Admin = AUser.HasProfile(9);
  NoTeacher = !Admin && AUser.TeacherNamesPolicy != NamesShown;
  SubstitutionsOnly = AUser.HasProfile(10);
  AllSubstitutions = HasAny({10, 14});
  AllLessons = HasAny({2, 11, 12, 13, 5, 14, 6, 7, 8, 9});
  OffeneFehlzeiten = HasAny({11, 13, 5, 14, 6, 7, 8, 9});
  Filtering = !AllLessons && !AllSubstitutions;
}

TQuillonJSONOwner<TQuillonJSONObject> TVELJSONExport::Build() {
  const TWithIntegratedClasses Integrated(FPlan);
  uJSONExport::TRun Run(*this);
  uJSONExport::CollectEntries(Run);
  uJSONExport::TNode About;
  uJSONExport::WriteAbout(About, Run);
  uJSONExport::TNode Result;
  uJSONExport::WriteReasons(Result, Run);
  uJSONExport::WriteTimeframes(Result, Run);
  Result.Text("firstLesson", PlanStart != 0 ? PlanStart.ToISO8601() : std::string());
  uJSONExport::WriteSchedule(Result, Run);
  uJSONExport::WriteAbsences(Result, Run);
  uJSONExport::WriteCourses(Result, Run);
  uJSONExport::WriteMasters(Result, Run);
  auto Root = std::make_unique<TQuillonJSONObject>();
  Root->AddPair("about", About.Take());
  Root->AddPair("result", Result.Take());
  PlaneintragListe.Clear();
  ETag = FPlan.FFileVersion;
  return Root;
}

/// A document for an administrator, whatever the flags were.
TQuillonJSONOwner<TQuillonJSONObject> TVELJSONExport::BuildWhole() {
  Admin = true;
  NoTeacher = false;
  SubstitutionsOnly = false;
  AllSubstitutions = true;
  AllLessons = true;
  return Build();
}

void TVELJSONExport::SaveJSONToStream(TQuillonStream& AStream) { AStream.Write(uJSONExport::FileText(*BuildWhole())); }

void TVELJSONExport::SaveJSONText(const std::string& /*AFileName*/) { static_cast<void>(BuildWhole()->ToString()); }

void TVELJSONExport::SaveJSONFile(const std::string& AFileName, bool /*UploadFile*/) {
  NoTeacher = false;
  SubstitutionsOnly = false;
  AllSubstitutions = true;
  AllLessons = AllLessons || Planobjekt == nullptr;
  SaveJSONText(AFileName);
}

namespace uJSONExport {

TRun::TRun(TVELJSONExport& AnExport)
    : Export(AnExport),
      Plan(AnExport.Plan()),
      Context(Plan, uDataUtils::DayOf(QuillonDateTime::Now())),
      Teams(AnExport.Auswahl),
      Objects(ChosenObjects(AnExport)) {}

TSpan TRun::Range() const { return {Export.Start, uDataUtils::DayOf(Export.Finish) + 1}; }

bool TRun::ShowsTeacherReasons() const { return Plan.FEinstellungen->FFehlgruendeAnzeigen == paAll; }

std::string FileText(const TQuillonJSONObject& ADocument) {
  std::string Text(ByteOrderMark);
  ADocument.AppendText(Text);
  return Text.append(LineBreak);
}

}  // namespace uJSONExport
