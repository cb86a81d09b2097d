#include <gtest/gtest.h>

#include <array>
#include <cstdio>

#include "QuillonZip.h"
#include "core/TestFiles.h"
#include "model/PlanDocument.h"
#include "uPlandaten/Raeume.h"

namespace {

/// What python3 prints for a program and its arguments.
std::string Python(const std::string& AProgram, const std::string& AnArgument) {
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> Pipe(
      popen(("python3 -c '" + AProgram + "' '" + AnArgument + "' 2>&1").c_str(), "r"), pclose);
  std::string Output;
  for (std::array<char, 256> Piece{}; std::fgets(Piece.data(), Piece.size(), Pipe.get()) != nullptr;) {
    Output += Piece.data();
  }
  return Output;
}

class ZipFile : public testing::Test {
 protected:
  void SetUp() override {
    if (Python("print(1)", "") != "1\n") {
      GTEST_SKIP() << "no shell with Python here";
    }
  }

  TemporaryFolder FFolder;
  TPlan FPlan = Load("6.0.172", List("Rooms", Item("Room", 1, "<Code>Ä1</Code>")));

  /// The codes of the rooms after a load of an archive that python has made.
  std::string Loaded(const std::string& AMake) {
    const std::string Name = FFolder.Path("foreign.zip");
    EXPECT_EQ(Python("import sys, zipfile, io\n" + AMake, Name), "");
    const TPlan Plan = Load("6.0.172", List("Rooms", Item("Room", 2, "<Code>before</Code>")));
    Plan->LoadFromZipFile(Name);
    return Plan->FRaeume.JoinCodes();
  }
};

const std::string Document = "b\"<Storage><Rooms><Items><Item Class=\\\"Room\\\" ID=\\\"" + ID(7) +
                             "\\\"><Code>R</Code></Item></Items></Rooms></Storage>\"";

TEST_F(ZipFile, IsReadByOthersAndByUs) {
  const std::string Name = FFolder.Path("Schule 1.zip");
  FPlan->SaveToZipFile(Name);
  EXPECT_EQ(Python("import sys, zipfile, xml.etree.ElementTree as x\nz = zipfile.ZipFile(sys.argv[1])\n"
                   "i = z.infolist()[0]\nprint(z.testzip(), z.namelist(), i.compress_type, "
                   "x.fromstring(z.read(i)).findtext(\"Rooms/Items/Item/Code\"))",
                   Name),
            "None ['Schule 1'] 8 Ä1\n");
  const TPlan Copy = Load("6.0.172", "");
  Copy->LoadFromZipFile(Name);
  EXPECT_EQ(Copy->SaveToXML(), FPlan->SaveToXML());
  Copy->LoadFromZipFile(FFolder.Path("nothing"));
  Copy->LoadFromZipFile("");
  EXPECT_EQ(Copy->FRaeume.Count(), 1);
}

TEST_F(ZipFile, OfOthersGivesItsFirstEntryOrAnError) {
  const std::string Open = "z = zipfile.ZipFile(sys.argv[1], \"w\")\n";
  EXPECT_EQ(Loaded(Open + "z.writestr(\"x\", " + Document + ")\nz.writestr(\"y\", b\"no document\")\nz.close()"), "R");
  EXPECT_EQ(Loaded(Open + "z.writestr(\"dir/x\", " + Document + ", zipfile.ZIP_DEFLATED)\nz.close()"), "R");
  EXPECT_EQ(Loaded(Open + "z.close()"), "before");
  EXPECT_THROW(Loaded(Open + "z.writestr(\"x\", b\"no document\")\nz.close()"), EQuillonException);
  const std::string Cut = "b = io.BytesIO()\nz = zipfile.ZipFile(b, \"w\")\nz.writestr(\"x\", " + Document +
                          ", zipfile.ZIP_DEFLATED)\nz.close()\n";
  for (const char* Damage : {"d = b.getvalue()[:-30]", "d = b.getvalue()[:20]", "d = b\"\"", "d = b\"PK\"",
                             "d = bytearray(b.getvalue()); d[45] ^= 255", "d = bytearray(b.getvalue()); d[8] = 99"}) {
    EXPECT_THROW(Loaded(Cut + Damage + "\nopen(sys.argv[1], \"wb\").write(d) and None"), EQuillonException) << Damage;
  }
  EXPECT_THROW(Loaded(Open + "z.writestr(\"x\", bytes(40 << 20), zipfile.ZIP_DEFLATED)\nz.close()"), EQuillonZipError);
}

}  // namespace
