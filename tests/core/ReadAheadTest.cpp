#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <atomic>

#include "QuillonStreams/Content.h"
#include "QuillonStreams/ReadAhead.h"

namespace {

constexpr std::size_t Block = 256 << 10;

/// Gives bytes in pieces of many sizes, up to a failure if it is to have one.
class TSource final : public TQuillonOneWayStream {
 public:
  TSource(std::size_t ASize, bool AFails) : FSize(ASize), FFails(AFails) {}

  static char ByteAt(std::size_t APosition) { return static_cast<char>(APosition * 7 + APosition / 251); }

  std::size_t Read(std::span<char> ABuffer) override {
    const std::size_t Count = std::min({ABuffer.size(), FSize - FDone, FDone * 7 % (2 * Block) + 1});
    if (Count == 0 && FFails) {
      throw EQuillonStreamError("broken");
    }
    for (char& Byte : ABuffer.first(Count)) {
      Byte = ByteAt(FDone++);
    }
    return Count;
  }

 private:
  const std::size_t FSize;
  const bool FFails;
  std::size_t FDone = 0;
};

TEST(ReadAheadTest, AllBytesComeInOrderAndTheFailureBehindThem) {
  for (const std::size_t Size :
       {std::size_t{0}, std::size_t{1}, Block - 1, Block, Block + 1, 9 * Block, 9 * Block + 5}) {
    for (const bool Fails : {false, true}) {
      SCOPED_TRACE(testing::Message() << Size << (Fails ? " and a failure" : ""));
      TSource Source(Size, Fails);
      TQuillonReadAheadStream Stream(Source);
      std::size_t Done = 0;
      std::array<char, 10'007> Piece{};
      const auto ReadAll = [&] {
        while (const std::size_t Got = Stream.Read(Piece)) {
          Stream.Seek(-static_cast<std::int64_t>(Got), TQuillonSeekOrigin::Current);
          ASSERT_EQ(Stream.Read(std::span(Piece).first(Got)), Got);
          for (std::size_t I = 0; I < Got; ++I, ++Done) {
            ASSERT_EQ(Piece[I], TSource::ByteAt(Done));
          }
        }
      };
      if (Fails) {
        EXPECT_THROW(ReadAll(), EQuillonStreamError);
        EXPECT_THROW(Stream.Finish(), EQuillonStreamError);
      } else {
        ReadAll();
        EXPECT_EQ(Stream.Finish(), static_cast<std::int64_t>(Size));
      }
      EXPECT_EQ(Done, Size);
      EXPECT_EQ(Stream.Position(), static_cast<std::int64_t>(Size));
    }
  }
}

TEST(ReadAheadTest, WhoStopsEarlyWaitsForNobody) {
  for (const std::size_t Taken : {std::size_t{0}, std::size_t{10}, 2 * Block, 5 * Block}) {
    TSource Source(50 * Block, true);
    TQuillonReadAheadStream Stream(Source);
    std::string Bytes(Taken, '\0');
    Stream.ReadBuffer(Bytes);
    EXPECT_TRUE(
        std::ranges::all_of(Bytes, [I = std::size_t{0}](char AByte) mutable { return AByte == TSource::ByteAt(I++); }));
  }
}

TEST(ReadAheadTest, AContentIsMadeAsItIsReadAndNoFurther) {
  constexpr std::size_t Pieces = 50;
  std::atomic<std::size_t> Made = 0;
  const TQuillonContent Content = [&Made](const TQuillonContentSink& ASink) {
    for (std::size_t I = 0; I < Pieces; ++I) {
      Made = I + 1;
      ASink(std::string(I * 7, static_cast<char>('0' + I)));
    }
    throw EQuillonStreamError("broken");
  };
  std::string Whole;
  EXPECT_THROW(Content([&Whole](std::string_view APiece) { Whole.append(APiece); }), EQuillonStreamError);
  for (const std::size_t Piece : {std::size_t{1}, std::size_t{64}, Whole.size()}) {
    TQuillonContentStream Stream(Content);
    std::string Read(Whole.size(), '\0');
    for (std::span<char> Left(Read); !Left.empty();) {
      const std::size_t Got = Stream.Read(Left.first(std::min(Piece, Left.size())));
      ASSERT_NE(Got, 0U);
      Left = Left.subspan(Got);
    }
    EXPECT_EQ(Read, Whole);
    EXPECT_EQ(Stream.Position(), static_cast<std::int64_t>(Whole.size()));
    EXPECT_THROW(Stream.Read(Read), EQuillonStreamError);
  }
  {
    TQuillonContentStream Stream(Content);
    std::array<char, 8> Buffer{};
    EXPECT_EQ(Stream.Read(Buffer), 7U);
  }
  EXPECT_LE(Made, 3U);
}

}  // namespace
