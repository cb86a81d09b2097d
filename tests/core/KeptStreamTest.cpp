#include <gtest/gtest.h>

#include <algorithm>

#include "QuillonStreams/Kept.h"
#include "core/TestFiles.h"

namespace {

constexpr std::size_t Window = std::size_t{256} << 10;

/// Gives small pieces, then fails; nobody may ask again.
class TPipe final : public TQuillonMemoryStream {
 public:
  using TQuillonMemoryStream::TQuillonMemoryStream;

  std::size_t Read(std::span<char> ABuffer) override {
    EXPECT_FALSE(FIsBroken);
    const std::size_t Got = TQuillonMemoryStream::Read(ABuffer.first(std::min<std::size_t>(ABuffer.size(), 60'013)));
    FIsBroken = Got == 0;
    return Got > 0 ? Got : throw EQuillonStreamError("broken");
  }

 private:
  bool FIsBroken = false;
};

std::string Take(TQuillonStream& AStream, std::size_t ASize) {
  std::string Taken(ASize, '\0');
  try {
    AStream.ReadBuffer(Taken);
  } catch (const EQuillonStreamError& Error) {
    EXPECT_STREQ(Error.what(), "broken");
    Taken.resize(static_cast<std::size_t>(AStream.Position()));
  }
  return Taken;
}

TEST(KeptStreamTest, GivesAllOnceMoreWithOrWithoutATemporaryFile) {
  constexpr int NoFailure = 1'000'000;
  std::string Content(9 * Window + 17, '\0');
  std::ranges::generate(Content, [I = 0U]() mutable { return static_cast<char>((I += 7) / 11); });
  // The first call opens the file, the next ones write.
  for (const int FirstFailure : {NoFailure, 1, 2, 5}) {
    for (const std::size_t Size : {std::size_t{0}, Window, Content.size()}) {
      for (const std::size_t Passed : {std::size_t{0}, std::size_t{5}, Size / 2, Size + 1}) {
        SCOPED_TRACE(testing::Message() << FirstFailure << " " << Size << " " << Passed);
        const std::string Whole = Content.substr(0, Size);
        FailingFiles Files;
        const Platform::FilesReplacement Replacement(Files);
        Files.FailFrom(FirstFailure, Platform::NotWriteableError("/"));
        TPipe Pipe(Whole);
        TQuillonKeptStream Stream(Pipe);
        EXPECT_TRUE(Take(Stream, Passed) == Whole.substr(0, Passed));
        EXPECT_EQ(Files.Calls() > 0, std::min(Size, Passed) > Window);
        Files.FailFrom(NoFailure, 0);
        EXPECT_EQ(Stream.Seek(0, TQuillonSeekOrigin::Begin), 0);
        EXPECT_TRUE(Take(Stream, Size + 1) == Whole);
      }
    }
  }
}

}  // namespace
