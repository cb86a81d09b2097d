#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "QuillonDataObjects/ReaderWriter.h"
#include "QuillonZip.h"
#include "data/BothReaders.h"
#include "model/PlanDocument.h"

// A data file is read while it passes by, and as a whole document where it has anything unusual: both come to the same
// end.

namespace {

using namespace std::string_view_literals;

constexpr std::size_t Piece = 100'003;

TPlan NewPlan() {
  uPlandaten::RegisterClasses(TQuillonDataClassRegistry::Instance());
  return CreateStorage<TVELPlan>();
}

const std::string& School() {
  static const std::string Document = QuillonIO::ReadWholeFile(VELMORA_SOURCE_DIR "/samples/schule.velmora");
  return Document;
}

std::string EntryOutcome(TVELPlan& APlan, const std::string& AnInput, std::string_view AnArchive) {
  return BothReaders::Outcome(APlan, AnInput, [&](TVELPlan& ALoaded) {
    TQuillonZipEntryStream Entry(AnArchive);
    ALoaded.LoadFromXML(Entry, "input");
  });
}

void ExpectSame(const std::string& ADocument, bool ACanSeek, const std::string& AWhat) {
  const std::string Whole = BothReaders::WholeOutcome(*NewPlan(), ADocument);
  const std::string Passing = BothReaders::StreamOutcome(*NewPlan(), ADocument, Piece, ACanSeek);
  EXPECT_TRUE(Whole == Passing) << AWhat << "\n" << Whole.substr(0, 300) << "\n" << Passing.substr(0, 300);
  const std::string Unpacked = EntryOutcome(*NewPlan(), ADocument, QuillonZip::MakeArchive("entry", ADocument));
  EXPECT_TRUE(Whole == Unpacked) << AWhat << ", packed\n" << Unpacked.substr(0, 300);
}

TEST(XMLReaders, TheSchoolIsReadInOneGo) {
  BothReaders::TPieces Stream(School(), Piece, true);
  const TPlan Plan = NewPlan();
  Plan->LoadFromXML(Stream, "school");
  EXPECT_FALSE(Stream.FHasGoneBack);
  EXPECT_GT(Plan->FVeranstaltungen.Count(), 100);
  ExpectSame(School(), true, "as it is");
  ExpectSame(School(), false, "from a pipe");
}

TEST(XMLReaders, ComeToTheSameEndWithDamage) {
  constexpr std::array Oddities = {"<!-- c -->"sv, "<![CDATA[<]]>"sv, "<?x y?>"sv, "&amp;"sv, "&#xD800;"sv, "&none;"sv,
                                   "\r\n"sv,       "\xC3"sv,          "\0"sv,      "<x/>"sv,  "</x>"sv,     "<CID/>"sv};
  std::mt19937 Random(1);
  for (int Round = 0; Round < 30; ++Round) {
    std::string Document = School();
    const std::size_t Place = Random() % Document.size();
    const std::size_t Line = std::min(Document.find('\n', Place), Document.size() - 1);
    const std::size_t Length = Random() % 300;
    switch (Round % 5) {
      case 0:
        Document[Place] = static_cast<char>(Document[Place] ^ (1 << Random() % 8));
        break;
      case 1:
        Document.erase(Place, Length);
        break;
      case 2:
        Document.insert(Line + 1, Document.substr(Line + 1, Document.find('\n', Line + 1) - Line));
        break;
      case 3:
        Document.insert(Place, Oddities[Random() % Oddities.size()]);
        break;
      default:
        Document.insert(Document.find('>', Place) + 1, Oddities[Random() % Oddities.size()]);
    }
    ExpectSame(Document, Round % 2 == 0, "round " + std::to_string(Round));
  }
}

TEST(XMLReaders, TakeTextsThatAreLongerThanTheWindow) {
  for (const std::string_view Word : {"Text &amp; \r\n&#228;ä"sv, "plain"sv}) {
    std::string Text;
    while (Text.size() < 13 * Piece) {
      Text += Word;
    }
    for (const std::string& Tail : {std::string("</Code>"), std::string("</Codex>"), std::string()}) {
      std::string Document =
          "<Storage><DataformatRelease>6.0.172</DataformatRelease><Rooms><Items><Item Class=\"Room\" ";
      Document.append("ID=\"").append(ID(1)).append("\"><CID/><Code>").append(Text).append(Tail);
      ExpectSame(Document.append("<Level/></Item></Items></Rooms></Storage>"), true, Tail);
    }
  }
}

TEST(XMLReaders, SeeThatAnEntryIsDamagedBehindItsLastElement) {
  const std::string Good = QuillonZip::MakeArchive("school", School());
  const std::size_t Directory = Good.rfind("PK\1\2");
  const std::vector<std::size_t> CheckSums = {14, Directory + 16};  // in the entry's head and in the directory
  for (const auto& Places : {CheckSums, {Directory - 40}}) {
    std::string Archive = Good;
    std::ranges::for_each(Places, [&](std::size_t APlace) { Archive[APlace] ^= 1; });
    const TPlan Changed = NewPlan();
    Changed->CountChange();
    const std::string Outcome = EntryOutcome(*NewPlan(), School(), Archive);
    EXPECT_TRUE(Outcome.starts_with("ZIP archive: ")) << Outcome.substr(0, 300);
    EXPECT_TRUE(Outcome == EntryOutcome(*Changed, School(), Archive)) << Outcome.substr(0, 300);
  }
}

TEST(XMLReaders, LeaveALoadedPlanWhenADocumentIsMalformed) {
  const TPlan Plan = NewPlan();
  Plan->LoadFromXML(School(), "school");
  const std::string Before = Plan->SaveToXML();
  EXPECT_THROW(Plan->LoadFromXML(School().substr(0, School().size() / 2), "half"), EQuillonDataObjectReaderError);
  EXPECT_TRUE(Plan->SaveToXML() == Before);
}

}  // namespace
