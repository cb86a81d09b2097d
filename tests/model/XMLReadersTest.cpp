#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <string_view>

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

void ExpectSame(const std::string& ADocument, bool ACanSeek, const std::string& AWhat) {
  const std::string Whole = BothReaders::WholeOutcome(*NewPlan(), ADocument);
  const std::string Passing = BothReaders::StreamOutcome(*NewPlan(), ADocument, Piece, ACanSeek);
  EXPECT_TRUE(Whole == Passing) << AWhat << "\n" << Whole.substr(0, 300) << "\n" << Passing.substr(0, 300);
  const std::string Unpacked = BothReaders::Outcome(*NewPlan(), ADocument, [&](TVELPlan& APlan) {
    TQuillonZipEntryStream Entry(QuillonZip::MakeArchive("entry", ADocument));
    APlan.LoadFromXML(Entry, "input");
  });
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
  std::string Text;
  while (Text.size() < 3 * Piece) {
    Text += "Text &amp; \r\n&#228;ä";
  }
  for (const std::string& Tail : {std::string("</Code>"), std::string("</Codex>"), std::string()}) {
    std::string Document = "<Storage><DataformatRelease>6.0.172</DataformatRelease><Rooms><Items><Item Class=\"Room\" ";
    Document.append("ID=\"").append(ID(1)).append("\"><CID/><Code>").append(Text).append(Tail);
    ExpectSame(Document.append("<Level/></Item></Items></Rooms></Storage>"), true, Tail);
  }
}

/// An archive of the school, damaged or not, with the outcome of a load.
struct TPacked {
  std::string Archive = QuillonZip::MakeArchive("school", School());

  std::string Outcome(bool AWhole) const {
    const TPlan Plan = NewPlan();
    if (AWhole) {
      Plan->CountChange();
    }
    return BothReaders::Outcome(*Plan, School(), [&](TVELPlan& APlan) {
      TQuillonZipEntryStream Entry{std::string_view(Archive)};
      APlan.LoadFromXML(Entry, "input");
    });
  }
};

TEST(XMLReaders, SeeThatAnEntryIsDamagedBehindItsLastElement) {
  const std::string Good = TPacked().Outcome(false);
  EXPECT_TRUE(Good.starts_with("\n")) << Good.substr(0, 300);
  const std::size_t Directory = TPacked().Archive.rfind("PK\1\2");
  constexpr std::size_t CheckSum = 14;  // of the entry's own head; two more in the directory
  for (const auto& Places : {std::array{CheckSum, Directory + CheckSum + 2}, std::array{Directory - 40, Directory}}) {
    TPacked Packed;
    Packed.Archive[Places[0]] ^= 1;
    if (Places[1] != Directory) {
      Packed.Archive[Places[1]] ^= 1;
    }
    const std::string Outcome = Packed.Outcome(false);
    EXPECT_TRUE(Outcome.starts_with("ZIP archive: ")) << Outcome.substr(0, 300);
    EXPECT_TRUE(Outcome == Packed.Outcome(true)) << Outcome.substr(0, 300);
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
