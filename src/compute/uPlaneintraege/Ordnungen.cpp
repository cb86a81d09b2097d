#include "uPlaneintraege/Ordnungen.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "QuillonClasses/QuickSort.h"
#include "QuillonText.h"
#include "uDataUtils/Context.h"
#include "uDataUtils/Spans.h"
#include "uPlandaten/Aufsichten.h"
#include "uPlandaten/Faecher.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Lehrer.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Termine.h"
#include "uPlandaten/Veranstaltungen.h"
#include "uPlaneintraege/Texte.h"

namespace uPlaneintraege {

namespace {

constexpr std::int64_t MillisecondsPerDay = std::int64_t{24} * 60 * 60 * 1000;

using TNumber = std::function<std::int64_t(const TVELPlaneintrag&)>;
using TText = std::string (*)(const TVELPlaneintrag&);

/// A key has a number or a text, and counts between entries that have it.
struct TKey {
  TNumber Number;
  TText Text = nullptr;
  bool (*Applies)(const TVELPlaneintrag&) = nullptr;
};

/// An entry with those of its texts that were asked for.
struct TSortable {
  std::unique_ptr<TVELPlaneintrag> Entry;
  std::array<std::optional<std::string>, 4> Texts;
};

const std::string& TextOf(TSortable& AnItem, std::size_t AnIndex, TText AText) {
  std::optional<std::string>& Text = AnItem.Texts.at(AnIndex);
  if (!Text) {
    Text = AText(*AnItem.Entry);
  }
  return *Text;
}

int Compare(TSortable& A, TSortable& B, std::span<const TKey> AKeys) {
  std::size_t TextIndex = 0;
  for (const TKey& Key : AKeys) {
    const std::size_t OwnText = Key.Text != nullptr ? TextIndex++ : 0;
    if (Key.Applies != nullptr && !(Key.Applies(*A.Entry) && Key.Applies(*B.Entry))) {
      continue;
    }
    int Order = 0;
    if (Key.Text != nullptr) {
      Order = QuillonText::CompareIgnoreAsciiCase(TextOf(A, OwnText, Key.Text), TextOf(B, OwnText, Key.Text));
    } else {
      const std::int64_t First = Key.Number(*A.Entry);
      const std::int64_t Second = Key.Number(*B.Entry);
      Order = static_cast<int>(First > Second) - static_cast<int>(First < Second);
    }
    if (Order != 0) {
      return Order;
    }
  }
  return 0;
}

void SortBy(TVELPlanEintragListe& AList, std::span<const TKey> AKeys) {
  std::vector<TSortable> Items(AList.Items().size());
  for (std::size_t I = 0; I < Items.size(); ++I) {
    Items[I].Entry = std::move(AList.Items()[I]);
  }
  const auto At = [&](int AnIndex) -> TSortable& { return Items[static_cast<std::size_t>(AnIndex)]; };
  QuillonClasses::QuickSort(
      0, static_cast<int>(Items.size()) - 1, [&](int A, int B) { return Compare(At(A), At(B), AKeys); },
      [&](int A, int B) { std::swap(At(A), At(B)); });
  for (std::size_t I = 0; I < Items.size(); ++I) {
    AList.Items()[I] = std::move(Items[I].Entry);
  }
}

TKey ByNumber(TNumber ANumber, bool (*AnApplies)(const TVELPlaneintrag&) = nullptr) {
  return {.Number = std::move(ANumber), .Applies = AnApplies};
}

TKey ByText(TText AText, bool (*AnApplies)(const TVELPlaneintrag&) = nullptr) {
  return {.Number = {}, .Text = AText, .Applies = AnApplies};
}

std::int64_t Moment(const TVELPlaneintrag& AnEntry) { return uDataUtils::Milliseconds(AnEntry.FStart); }
std::int64_t Day(const TVELPlaneintrag& AnEntry) {
  return uDataUtils::Milliseconds(AnEntry.FStart) / MillisecondsPerDay;
}
std::int64_t Time(const TVELPlaneintrag& AnEntry) {
  return uDataUtils::Milliseconds(uDataUtils::TimeOf(AnEntry.FStart));
}
std::int64_t Weeks(const TVELPlaneintrag& AnEntry) { return AnEntry.FWochenSortIndex; }

bool HasLesson(const TVELPlaneintrag& AnEntry) {
  return AnEntry.FTermin != nullptr && AnEntry.FTermin->Veranstaltung() != nullptr;
}
std::int64_t Column(const TVELPlaneintrag& AnEntry) { return AnEntry.FTermin->Veranstaltung()->FSchiene; }

bool IsSupervision(const TVELPlaneintrag& AnEntry) { return AnEntry.FAufsicht != nullptr; }
std::string Area(const TVELPlaneintrag& AnEntry) {
  const TVELAufsichtsbereich* const Owner = AnEntry.FAufsicht->Bereich();
  return Owner != nullptr ? Owner->FKuerzel : std::string();
}
std::string Supervisor(const TVELPlaneintrag& AnEntry) {
  return AnEntry.FAufsicht->FLehrer != nullptr ? AnEntry.FAufsicht->FLehrer->FKuerzel : std::string();
}

std::string NewTeachers(const TVELPlaneintrag& AnEntry) { return ListText(AnEntry.FNeueLehrer); }
std::string Teachers(const TVELPlaneintrag& AnEntry) { return ListText(AnEntry.FLehrer); }
std::string StandIns(const TVELPlaneintrag& AnEntry) {
  return AnEntry.FNeueLehrer.empty() ? LehrerText(AnEntry) : NewTeachers(AnEntry);
}
std::string Subject(const TVELPlaneintrag& AnEntry) {
  const TVELVeranstaltung* const Lesson = AnEntry.Veranstaltung();
  return Lesson != nullptr && Lesson->FFach != nullptr ? Lesson->FFach->FKuerzel : std::string();
}

std::array<TKey, 7> KeysBehind(TNumber AStart) {
  return {
      ByNumber(std::move(AStart)), ByNumber(Weeks), ByNumber(Column, HasLesson), ByText(KlassenText), ByText(FachText),
      ByText(LehrerText),          ByText(RaumText)};
}

}  // namespace

void SortDateTime(TVELPlanEintragListe& AList) { SortBy(AList, KeysBehind(Moment)); }

void SortDay(TVELPlanEintragListe& AList) { SortBy(AList, KeysBehind(Time)); }

void SortTagKlasseZeit(TVELPlanEintragListe& AList) {
  SortBy(AList, std::array{ByNumber(Day), ByText(KlassenText), ByNumber(Time)});
}

void SortTagLehrerZeit(TVELPlanEintragListe& AList) {
  SortBy(AList, std::array{ByNumber(Day), ByText(NewTeachers), ByText(Teachers), ByNumber(Time)});
}

void SortKlasseDateTime(const TPlanContext& AContext, TVELPlanEintragListe& AList) {
  std::unordered_map<const TVELKlasse*, std::int64_t> Places;
  for (const TVELKlasse* Class : AContext.Plan().FKlassen) {
    Places.emplace(Class, static_cast<std::int64_t>(Places.size()));
  }
  const auto Place = [&](const TVELPlaneintrag& AnEntry) -> std::int64_t {
    const auto Found = AnEntry.FKlassen.empty() ? Places.end() : Places.find(AnEntry.FKlassen.front());
    return Found != Places.end() ? Found->second : 0;
  };
  SortBy(AList, std::array{ByNumber(Place), ByText(KlassenText), ByNumber(Moment)});
}

void SortFach(TVELPlanEintragListe& AList) { SortBy(AList, std::array{ByText(Subject)}); }

void SortVertreterDateTime(TVELPlanEintragListe& AList) {
  SortBy(AList, std::array{ByText(StandIns), ByNumber(Moment)});
}

void SortAufsichtWochentagZeit(TVELPlanEintragListe& AList) {
  SortBy(AList, std::array{ByText(Area, IsSupervision), ByNumber(Moment), ByText(Supervisor, IsSupervision)});
}

}  // namespace uPlaneintraege
