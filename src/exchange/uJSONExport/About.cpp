#include <initializer_list>

#include "QuillonDateTime.h"
#include "QuillonNumbers.h"
#include "uJSONExport/Run.h"
#include "uPlandaten/Besitzer.h"
#include "uPlandaten/Einstellungen.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Zeitrahmen.h"
#include "uSchluessel/Verzeichnisse.h"

namespace uJSONExport {

namespace {

constexpr std::string_view Version = "Version " VELMORA_PROGRAM_VERSION;

std::string NameOf(const TVELBesitzer& AnOwner) {
  std::string Text;
  for (const std::string* Part : {&AnOwner.FName1, &AnOwner.FName2, &AnOwner.FName3}) {
    if (!Part->empty()) {
      Text.append(Text.empty() ? "" : ", ").append(*Part);
    }
  }
  return Text;
}

template <class TKey>
TNodes Reasons(const TVELSchluesselverzeichnisOf<TKey>& AKeys) {
  TNodes List;
  for (const TKey* Key : AKeys) {
    TNode Item;
    Item.Reference("id", Key);
    Item.Text("code", Key->FKuerzel);
    Item.Text("description", Key->FBezeichnung);
    Item.Colour("color", Key->FFarbe);
    List.Add(Item);
  }
  return List;
}

TNode Timeframe(const TVELZeitrahmen& AFrame) {
  TNodes Rows;
  for (const TVELZeitrahmenzeile* Row : AFrame.FZeilen) {
    TNode Item;
    Item.Text("label", Row->FBezeichnung);
    Item.Colour("color", Row->FTrennlinienfarbe);
    Item.Time("startTime", Row->FStart);
    Item.Time("endTime", Row->FEnde);
    Rows.Add(Item);
  }
  TNode Item;
  Item.Text("code", AFrame.FKuerzel);
  Item.Number("timeslotFragmentation", AFrame.FEinheitenProStd);
  Item.List("timeslots", Rows);
  return Item;
}

}  // namespace

void WriteAbout(TNode& ANode, const TRun& ARun) {
  const TVELDateTime Now = QuillonDateTime::Now();
  std::string ETag;
  QuillonNumbers::AppendInteger(ETag, ARun.Plan.FFileVersion);
  ANode.Text("eTag", ETag);
  ANode.Text("schemaVersion", "0");
  ANode.Text("server", "Velmora");
  ANode.Text("serverVersion", Version);
  ANode.Text("serverTimeStamp", Date(Now) + " " + Time(Now));
  if (const TVELBesitzer* const Owner = ARun.Plan.FBesitzer.Get()) {
    ANode.Text("ownerDisplayname", Owner->FDisplayName);
    ANode.Text("ownerName", NameOf(*Owner));
    ANode.Text("ownerLocation", Owner->FStadt);
  }
}

void WriteReasons(TNode& ANode, const TRun& ARun) {
  const TVELVerzeichnisse& Keys = *ARun.Plan.FVerzeichnisse;
  if (ARun.ShowsTeacherReasons()) {
    ANode.WholeList("teacherAbsenceReasons", Reasons(Keys.FLehrerfehlgruende));
  }
  ANode.WholeList("classAbsenceReasons", Reasons(Keys.FKlassenfehlgruende));
  ANode.WholeList("roomAbsenceReasons", Reasons(Keys.FRaumfehlgruende));
}

void WriteTimeframes(TNode& ANode, const TRun& ARun) {
  TNodes Frames;
  const TVELZeitrahmen* const Standard = ARun.Plan.StandardTimeframe();
  if (Standard != nullptr) {
    Frames.Add(Timeframe(*Standard));
  }
  for (const TVELZeitrahmen* Frame : ARun.Plan.FZeitrahmen) {
    // A file may name the standard frame in both places.
    if (Frame != Standard) {
      Frames.Add(Timeframe(*Frame));
    }
  }
  ANode.List("timeframes", Frames);
}

}  // namespace uJSONExport
