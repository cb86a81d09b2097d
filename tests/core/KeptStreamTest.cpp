#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "QuillonFileSystem.h"
#include "QuillonStreams/Kept.h"
#include "core/TestFiles.h"

namespace {

constexpr std::size_t Window = std::size_t{256} << 10;

/// Gives small pieces, then ends or fails; nobody may ask again.
class TPipe final : public TQuillonOneWayStream {
 public:
  TPipe(std::string_view AContent, bool AFails) : FLeft(AContent), FFails(AFails) {}

  std::size_t Read(std::span<char> ABuffer) override {
    EXPECT_FALSE(FIsOver);
    const std::size_t Count = FLeft.copy(ABuffer.data(), std::min<std::size_t>(ABuffer.size(), 60'013));
    FLeft.remove_prefix(Count);
    FIsOver = Count == 0;
    if (FIsOver && FFails) {
      throw EQuillonStreamError("broken");
    }
    return Count;
  }

 private:
  std::string_view FLeft;
  bool FFails;
  bool FIsOver = false;
};

/// Bytes up to ASize, or to the end or failure.
std::string Take(TQuillonStream& AStream, std::size_t ASize, bool AFails) {
  std::string Taken;
  try {
    for (std::string Piece(100'003, '\0'); Taken.size() < ASize;) {
      const std::size_t Got = AStream.Read(std::span(Piece).first(std::min(Piece.size(), ASize - Taken.size())));
      if (Got == 0) {
        EXPECT_FALSE(AFails);
        break;
      }
      Taken.append(Piece, 0, Got);
    }
  } catch (const EQuillonStreamError& Error) {
    EXPECT_TRUE(AFails) << Error.what();
  }
  EXPECT_EQ(AStream.Position(), static_cast<std::int64_t>(Taken.size()));
  return Taken;
}

TEST(KeptStreamTest, GivesAllOnceMoreWithOrWithoutATemporaryFile) {
  constexpr int NoFailure = 1'000'000;
  std::string Content(9 * Window + 17, '\0');
  std::ranges::generate(Content, [I = 0U]() mutable {
    ++I;
    return static_cast<char>(I * 7 + I / 251);
  });
  // The first call opens the file, the next ones write.
  for (const int FirstFailure : {NoFailure, 1, 2, 5}) {
    for (const std::size_t Size : {std::size_t{0}, Window, Content.size()}) {
      for (const std::size_t Passed : {std::size_t{0}, std::size_t{5}, Size / 2, Size + 1}) {
        for (const bool Fails : {false, true}) {
          SCOPED_TRACE(testing::Message() << FirstFailure << " " << Size << " " << Passed << " " << Fails);
          const std::string_view Whole = std::string_view(Content).substr(0, Size);
          FailingFiles Files;
          const Platform::FilesReplacement Replacement(Files);
          Files.FailFrom(FirstFailure, Platform::NotWriteableError("/"));
          TPipe Pipe(Whole, Fails);
          TQuillonKeptStream Stream(Pipe);
          EXPECT_TRUE(Take(Stream, Passed, Fails) == Whole.substr(0, Passed));
          EXPECT_EQ(Files.Calls() > 0, std::min(Size, Passed) > Window);
          Files.FailFrom(NoFailure, 0);
          EXPECT_EQ(Stream.Seek(0, TQuillonSeekOrigin::Begin), 0);
          EXPECT_TRUE(Take(Stream, Size + 1, Fails) == Whole);
          EXPECT_THROW(Stream.Seek(0, TQuillonSeekOrigin::Begin), EQuillonStreamError);
        }
      }
    }
  }
}

}  // namespace
