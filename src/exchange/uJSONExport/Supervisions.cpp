#include <map>
#include <set>
#include <tuple>
#include <utility>
#include <vector>

#include "QuillonDateTime.h"
#include "uJSONExport/Run.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Fehlzeiten.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Vertretungen.h"
#include "uPlandaten/Zeitrahmen.h"
#include "uPlaneintraege/Ordnungen.h"

namespace uJSONExport {

namespace {

constexpr int DaysPerWeek = 7;

/// An entry, and the dates of all that are like it.
struct TItem {
  const TVELPlaneintrag* Entry;
  std::vector<TVELDate> Dates;
};

const TVELAufsichtsVertretung* SubstitutionOf(const TVELPlaneintrag& AnEntry) {
  const TVELAenderung* const Change = AnEntry.Aenderung();
  return Change != nullptr ? Change->As<TVELAufsichtsVertretung>() : nullptr;
}

const TVELAufsichtsbereich* AreaOf(const TVELPlaneintrag& AnEntry) {
  return AnEntry.FAufsicht != nullptr ? AnEntry.FAufsicht->Bereich() : nullptr;
}

std::int64_t TimeOfDay(TVELDateTime AValue) {
  return uDataUtils::Milliseconds(AValue) - uDataUtils::Milliseconds(uDataUtils::DayOf(AValue));
}

/// From the end of a row of the day to the start of the next one.
using TGaps = std::set<std::pair<std::int64_t, std::int64_t>>;

TGaps GapsOf(const TVELZeitrahmen& AFrame) {
  TGaps Gaps;
  const TVELZeitrahmenzeile* Before = nullptr;
  for (const TVELZeitrahmenzeile* Row : AFrame.FZeilen) {
    if (Before != nullptr) {
      Gaps.emplace(TimeOfDay(Before->FEnde), TimeOfDay(Row->FStart));
    }
    Before = Row;
  }
  return Gaps;
}

/// Writes the items of a document.
class TWriter {
 public:
  explicit TWriter(const TRun& ARun) : FRun(ARun) {}

  TNode Item(const TItem& AnItem);

 private:
  bool FillsGap(const TVELPlaneintrag& AnEntry);
  std::string Title(const TVELPlaneintrag& AnEntry);

  const TRun& FRun;
  std::map<const TVELZeitrahmen*, TGaps> FGaps;
};

bool TWriter::FillsGap(const TVELPlaneintrag& AnEntry) {
  const TVELAufsichtsbereich* const Area = AreaOf(AnEntry);
  const TVELZeitrahmen* const Frame = Area != nullptr ? Area->Timeframe() : FRun.Plan.StandardTimeframe();
  if (Frame == nullptr) {
    return false;
  }
  auto Gaps = FGaps.find(Frame);
  if (Gaps == FGaps.end()) {
    Gaps = FGaps.emplace(Frame, GapsOf(*Frame)).first;
  }
  return Gaps->second.contains({TimeOfDay(AnEntry.FStart), TimeOfDay(AnEntry.FFinish)});
}

std::string TWriter::Title(const TVELPlaneintrag& AnEntry) {
  std::string Text(CodeOf(AreaOf(AnEntry)));
  if (AnEntry.Geaendert() || !AnEntry.FFehlzeiten.empty()) {
    Text = "(" + Text + ")";
  }
  const TVELAufsichtsVertretung* const Substitution = SubstitutionOf(AnEntry);
  if (const TVELLehrer* const Substitute = Substitution != nullptr ? Substitution->Lehrer() : nullptr) {
    Text.append(Substitute != AnEntry.FPlanobjekt ? " +" : "+").append(Substitute->FKuerzel);
  }
  if (!FillsGap(AnEntry)) {
    Text.append(" ").append(AnEntry.FStart.ToString("hh:nn")).append("-").append(AnEntry.FFinish.ToString("hh:nn"));
  }
  return Text;
}

TNode Changes(const TRun& ARun, const TVELPlaneintrag& AnEntry, const TVELAufsichtsVertretung& ASubstitution) {
  constexpr int Unset = -1;
  TNode Node;
  Node.Number("changeType", ChangeType(ARun, AnEntry), Unset);
  if (ARun.Export.Information) {
    Node.Text("information", ASubstitution.FInformation);
  }
  Node.Codes("newTeacherCodes", AnEntry.FNeueLehrer);
  Node.Codes("absentTeacherCodes", AnEntry.FFehlendeLehrer);
  if (ASubstitution.FFehlzeit != nullptr) {
    Node.Text("absenceReasonCode", ReasonCode(ARun, *ASubstitution.FFehlzeit));
  }
  WriteCancelled(Node, ASubstitution);
  if (ARun.Export.Mitteilung) {
    Node.Text("message", ASubstitution.FMitteilung);
  }
  Node.Modified(AnEntry.FModified);
  return Node;
}

TNode TWriter::Item(const TItem& AnItem) {
  const TVELPlaneintrag& Entry = *AnItem.Entry;
  TNode Node;
  if (FRun.Export.AlleWochen) {
    Node.Number("weekday", QuillonDateTime::DayOfWeek(Entry.FStart) % DaysPerWeek);
  } else {
    TNodes Dates;
    for (const TVELDate Day : AnItem.Dates) {
      Dates.Text(Date(Day));
    }
    Node.List("dates", Dates);
  }
  Node.Time("startTime", Entry.FStart);
  Node.Time("endTime", Entry.FFinish);
  Node.Text("supervisionTitle", Title(Entry));
  if (Entry.FAufsicht != nullptr) {
    Node.Reference("supervisionRef", Entry.FAufsicht);
    Node.Text("areaCode", CodeOf(AreaOf(Entry)));
    Node.Codes("teacherCodes", Entry.FLehrer);
  }
  const TVELAufsichtsVertretung* const Substitution = SubstitutionOf(Entry);
  if (Substitution != nullptr && Substitution->Lehrer() != nullptr) {
    Node.Object("changes", Changes(FRun, Entry, *Substitution));
  }
  return Node;
}

/// Entries of one supervision and change at the same times of the same weekday become one item.
std::vector<TItem> Fold(const TVELPlanEintragListe& AList) {
  using TKey = std::tuple<const void*, const void*, std::int64_t, std::int64_t, int>;
  std::vector<TItem> Items;
  std::map<TKey, std::size_t> Places;
  for (const auto& Entry : AList.Items()) {
    const TKey Key{Entry->FAufsicht, Entry->Aenderung(), TimeOfDay(Entry->FStart), TimeOfDay(Entry->FFinish),
                   QuillonDateTime::DayOfWeek(Entry->FStart)};
    const auto [Found, IsNew] = Places.emplace(Key, Items.size());
    if (IsNew) {
      Items.push_back({Entry.get(), {}});
    }
    Items[Found->second].Dates.push_back(uDataUtils::DayOf(Entry->FStart));
  }
  return Items;
}

void Find(const TRun& ARun, TVELPlanEintragListe& AList) {
  const std::uint8_t Mode = ARun.Export.SubstitutionsOnly ? uPlaneintraege::smChangedOnly : uPlaneintraege::smEvery;
  constexpr bool PublicOnly = true;
  if (ARun.Objects.empty()) {
    if (ARun.Export.DataTypes.Contains(dtLehrer) || ARun.Export.DataTypes.Contains(dtAlle)) {
      uPlaneintraege::GetAlleAufsichten(ARun.Context, Mode, PublicOnly, AList, ARun.Range());
    }
    return;
  }
  for (TVELPlanobjekt* Object : ARun.Objects) {
    if (auto* const Teacher = uDataObjects::As<TVELLehrer>(Object)) {
      uPlaneintraege::GetAufsichtEintraege(ARun.Context, *Teacher, Mode, PublicOnly, AList, ARun.Range());
    }
  }
}

}  // namespace

void WriteSupervisions(TNode& ANode, const TRun& ARun) {
  TVELPlanEintragListe List;
  Find(ARun, List);
  uPlaneintraege::SortAufsichtWochentagZeit(List);
  TWriter Writer(ARun);
  TNodes Items;
  for (const TItem& Item : Fold(List)) {
    Items.Add(Writer.Item(Item));
  }
  ANode.List("supervisionTimes", Items);
}

}  // namespace uJSONExport
