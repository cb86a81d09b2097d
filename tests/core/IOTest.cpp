#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

#include "QuillonFileReplacement.h"
#include "QuillonFileSystem.h"
#include "core/TestFiles.h"

namespace {

using testing::HasSubstr;

/// A stream that gives a few bytes per call and claims to be huge.
class LyingStream final : public TQuillonStream {
 public:
  explicit LyingStream(std::size_t ASize) : FLeft(ASize) {}

  std::size_t Read(std::span<char> ABuffer) override {
    FLargestPiece = std::max(FLargestPiece, ABuffer.size());
    const std::size_t Count = std::min({ABuffer.size(), FLeft, std::size_t{1000}});
    std::fill_n(ABuffer.begin(), Count, 'x');
    FLeft -= Count;
    return Count;
  }
  void Write(std::string_view /*ABytes*/) override {}
  std::int64_t Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) override {
    return AnOrigin == TQuillonSeekOrigin::End ? INT64_MAX : AnOffset;
  }
  void SetEndOfFile() override {}

  std::size_t FLargestPiece = 0;

 private:
  std::size_t FLeft;
};

class IO : public testing::Test {
 protected:
  TemporaryFolder FFolder;
};

}  // namespace

TEST_F(IO, AMemoryStreamIsAFileInMemory) {
  TQuillonMemoryStream Stream("0123456789");
  EXPECT_EQ(Stream.Seek(-3, TQuillonSeekOrigin::End), 7);
  Stream.Write("abcdef");
  EXPECT_EQ(Stream.Content(), "0123456abcdef");
  Stream.Seek(2, TQuillonSeekOrigin::Begin);
  Stream.Write("--");
  EXPECT_EQ(Stream.Position(), 4);
  EXPECT_EQ(Stream.Size(), 13);
  Stream.SetEndOfFile();
  EXPECT_EQ(Stream.Content(), "01--");
  Stream.Seek(6, TQuillonSeekOrigin::Begin);
  std::array<char, 4> Buffer{};
  EXPECT_EQ(Stream.Read(Buffer), 0U);
  Stream.Write("!");
  EXPECT_EQ(Stream.Content(), std::string("01--\0\0!", 7));
  EXPECT_THROW(Stream.Seek(-1, TQuillonSeekOrigin::Begin), EQuillonStreamError);
  EXPECT_THROW(Stream.Seek(INT64_MAX, TQuillonSeekOrigin::Current), EQuillonStreamError);
  Stream.Seek(5, TQuillonSeekOrigin::Begin);
  EXPECT_THROW(Stream.ReadBuffer(Buffer), EQuillonStreamError);
  Stream.Clear();
  EXPECT_EQ(Stream.TakeContent(), "");
}

TEST_F(IO, TheSizeAStreamClaimsIsNotTrusted) {
  LyingStream Stream(300'000);
  EXPECT_EQ(QuillonIO::ReadWholeFile(Stream), std::string(300'000, 'x'));
  EXPECT_LE(Stream.FLargestPiece, 600'000U);

  for (const std::size_t Size : {0U, 1U, 65'535U, 65'536U, 65'537U, 131'072U, 1'000'000U}) {
    std::string Content(Size, 'a');
    std::generate(Content.begin(), Content.end(), [I = 0]() mutable { return static_cast<char>('a' + I++ % 26); });
    TQuillonMemoryStream Honest("head" + Content);
    Honest.Seek(4, TQuillonSeekOrigin::Begin);
    EXPECT_EQ(QuillonIO::ReadWholeFile(Honest), Content);
  }
}

TEST_F(IO, OpenModesOfAFile) {
  const std::string Name = FFolder.Path("data.txt");
  EXPECT_THROW(TQuillonFileStream(Name, fomOpenRead, famShareDenyNone), EQuillonFileHandleError);
  EXPECT_THROW(TQuillonFileStream(Name, fomOpenReadWrite, famShareDenyNone), EQuillonFileHandleError);
  {
    TQuillonFileStream Stream(Name, fomOpenReadWriteOrCreate, famShareExclusive);
    EXPECT_EQ(Stream.OpenMode(), fomCreate);
    Stream.Write("one two");
    Stream.Seek(4, TQuillonSeekOrigin::Begin);
    EXPECT_EQ(QuillonIO::ReadWholeFile(Stream), "two");
    Stream.Close();
    EXPECT_THROW(Stream.Write("x"), EQuillonFileHandleError);
  }
  {
    TQuillonFileStream Stream(Name, fomOpenReadWriteOrCreate, famShareExclusive);
    EXPECT_EQ(Stream.OpenMode(), fomOpenReadWrite);
    Stream.Seek(3, TQuillonSeekOrigin::Begin);
    Stream.SetEndOfFile();
  }
  EXPECT_EQ(QuillonIO::ReadWholeFile(Name), "one");
  {
    TQuillonFileStream Stream(Name, fomOpenRead, famShareDenyNone);
    EXPECT_THROW(Stream.Write("x"), EQuillonFileHandleError);
  }
  {
    // The fallback is what counts where the first way fails.
    TQuillonFileStream Stream(FFolder.Path("new.txt"), fomOpenRead, famShareDenyNone, fomCreate, famShareExclusive);
    EXPECT_EQ(Stream.OpenMode(), fomCreate);
    EXPECT_EQ(Stream.AccessMode(), famShareExclusive);
  }
  TQuillonFileStream(Name, fomCreate, famShareExclusive).Close();
  EXPECT_EQ(TQuillonFileSystem::GetSize(Name), 0);

  try {
    QuillonIO::ReadWholeFile(FFolder.Path("missing.txt"));
    FAIL();
  } catch (const EQuillonFileHandleError& Error) {
    EXPECT_THAT(Error.what(), HasSubstr("Systemfehler (Fehlercode: 2)."));
    EXPECT_THAT(Error.what(), HasSubstr(FFolder.Path("missing.txt")));
  }
  EXPECT_THROW(QuillonIO::ReadWholeFile(FFolder.Path("")), EQuillonFileHandleError);  // a folder
  EXPECT_THROW(TQuillonFileStream("/dev/full", fomOpenWrite, famShareDenyNone).Write("x"), EQuillonFileHandleError);
}

TEST_F(IO, AFileIsSharedAsFarAsItsHolderLets) {
  const std::string Name = FFolder.Path("data.txt");
  QuillonIO::ReplaceFile(Name, "kept");
  const auto CanOpen = [&](TQuillonFileOpenMode AnOpenMode, TQuillonFileAccessMode AnAccessMode) {
    try {
      TQuillonFileStream(Name, AnOpenMode, AnAccessMode).Close();
      return true;
    } catch (const EQuillonFileHandleError&) {
      return false;
    }
  };
  {
    const TQuillonFileStream Reader(Name, fomOpenRead, famShareDenyWrite);
    EXPECT_TRUE(CanOpen(fomOpenRead, famShareDenyWrite));
    EXPECT_TRUE(CanOpen(fomOpenRead, famShareDenyNone));
    EXPECT_FALSE(CanOpen(fomOpenRead, famShareExclusive));
    EXPECT_FALSE(CanOpen(fomOpenReadWrite, famShareDenyWrite));
    EXPECT_FALSE(CanOpen(fomCreate, famShareExclusive));
  }
  EXPECT_EQ(QuillonIO::ReadWholeFile(Name), "kept") << "a refused creation has emptied the file";
  {
    const TQuillonFileStream Writer(Name, fomOpenReadWrite, famShareExclusive);
    EXPECT_FALSE(CanOpen(fomOpenRead, famShareDenyWrite));
    EXPECT_FALSE(CanOpen(fomOpenReadWriteOrCreate, famShareDenyWrite));
    EXPECT_FALSE(CanOpen(fomOpenRead, famShareDenyNone)) << "a reader that lets others do all is refused too";
    // A lock is not denied access: the time-out form does not wait for it.
    EXPECT_THROW(TQuillonFileStream(Name, fomOpenRead, famShareExclusive, std::chrono::hours(1)),
                 EQuillonFileHandleError);
  }
  {
    const TQuillonFileStream Writer(Name, fomOpenReadWrite, famShareDenyWrite);
    EXPECT_FALSE(CanOpen(fomOpenRead, famShareDenyWrite));
    EXPECT_TRUE(CanOpen(fomOpenRead, famShareDenyNone));
  }
  EXPECT_TRUE(CanOpen(fomCreate, famShareExclusive));
}

TEST_F(IO, DeniedAccessIsTriedAgainUntilTheTimeOut) {
  const std::string Name = FFolder.Path("data.txt");
  QuillonIO::ReplaceFile(Name, "x");
  FailingFiles Files;
  const Platform::FilesReplacement Replacement(Files);
  Files.FailFrom(1, Platform::NotWriteableError(Name), 2);
  TQuillonFileStream Late(Name, fomOpenRead, famShareDenyNone, std::chrono::milliseconds(200));
  EXPECT_TRUE(Late.IsOpen());

  Files.FailFrom(1, Platform::NotWriteableError(Name));
  TQuillonFileStream Never(Name, fomOpenRead, famShareDenyNone, std::chrono::milliseconds(150));
  EXPECT_FALSE(Never.IsOpen());
  EXPECT_EQ(Files.Calls(), 2);
  EXPECT_THROW(QuillonIO::ReadWholeFile(Never), EQuillonFileHandleError);
}
