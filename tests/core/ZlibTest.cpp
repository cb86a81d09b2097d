#include <gtest/gtest.h>

#include "QuillonZlib.h"

namespace {

/// Text that compresses, and noise behind it that does not.
std::string Plain(std::size_t ASize) {
  std::string Text;
  for (std::uint32_t Noise = 1; Text.size() < ASize; Noise = Noise * 1'664'525 + 1'013'904'223) {
    Text += Text.size() < ASize / 2 ? 'a' : static_cast<char>(Noise >> 24);
  }
  return Text;
}

std::string Compressed(const std::string& AText, int ALevel = TQuillonZCompressionStream::DefaultLevel) {
  TQuillonMemoryStream Target;
  TQuillonZCompressionStream Stream(Target, ALevel);
  Stream.Write(std::string_view(AText).substr(0, AText.size() / 3));
  Stream.Write(std::string_view(AText).substr(AText.size() / 3));
  EXPECT_EQ(Stream.Position(), static_cast<std::int64_t>(AText.size()));
  Stream.Finish();
  EXPECT_THROW(Stream.Write("more"), EQuillonZlibError);
  return Target.TakeContent();
}

std::string Decompressed(TQuillonStream& ASource) {
  TQuillonZDecompressionStream Stream(ASource);
  std::string Text = QuillonIO::ReadWholeFile(Stream);
  EXPECT_EQ(Stream.Position(), static_cast<std::int64_t>(Text.size()));
  return Text;
}

}  // namespace

TEST(Zlib, ContentComesBackAndTheSourceStandsBehindIt) {
  for (const std::size_t Size : std::initializer_list<std::size_t>{0, 1, 1000, 300'000}) {
    for (const int Level : {-1, 0, 1, 9}) {
      TQuillonMemoryStream Source(Compressed(Plain(Size), Level) + "behind");
      EXPECT_EQ(Decompressed(Source), Plain(Size)) << Level;
      EXPECT_EQ(QuillonIO::ReadWholeFile(Source), "behind");

      Source.Seek(0, TQuillonSeekOrigin::Begin);
      TQuillonZDecompressionStream Stream(Source);
      std::string Begin(Size / 2, ' ');
      Stream.ReadBuffer(Begin);
      Stream.Finish();
      EXPECT_EQ(QuillonIO::ReadWholeFile(Source), "behind") << "read to the half, then ended";
    }
  }
  EXPECT_EQ(Compressed("abc"), std::string("\x78\x9C\x4B\x4C\x4A\x06\x00\x02\x4D\x01\x27", 11));
}

TEST(Zlib, WhatIsCutOrDamagedIsRefused) {
  const std::string Whole = Compressed(Plain(200));
  const auto Expect = [](std::string ABytes, std::size_t APlace) {
    TQuillonMemoryStream Source(std::move(ABytes));
    EXPECT_THROW(Decompressed(Source), EQuillonZlibError) << APlace;
    Source.Seek(0, TQuillonSeekOrigin::Begin);
    EXPECT_THROW(TQuillonZDecompressionStream(Source).Finish(), EQuillonZlibError) << APlace;
  };
  for (std::size_t Place = 0; Place < Whole.size(); ++Place) {
    Expect(Whole.substr(0, Place), Place);
    std::string Damaged = Whole;
    Damaged[Place] = static_cast<char>(~Damaged[Place]);
    Expect(Damaged, Place);
  }
  EXPECT_THROW(Compressed("abc", 10), EQuillonZlibError);
}

TEST(Zlib, WhatGrowsBeyondReasonIsRefused) {
  TQuillonMemoryStream Stream;
  TQuillonZCompressionStream Target(Stream);
  for (int I = 0; I < 40; ++I) {
    Target.Write(std::string(1 << 20, 'x'));
  }
  Target.Finish();
  Stream.Seek(0, TQuillonSeekOrigin::Begin);
  EXPECT_THROW(TQuillonZDecompressionStream(Stream).Finish(), EQuillonZlibError);
}

TEST(Zlib, AFailureOfTheTargetLeavesNoWholeStream) {
  class FullStream final : public TQuillonMemoryStream {
   public:
    void Write(std::string_view ABytes) override {
      if (!std::exchange(IsWritten, true)) {
        throw EQuillonStreamError("full");
      }
      TQuillonMemoryStream::Write(ABytes);
    }
    bool IsWritten = false;
  } Target;
  TQuillonZCompressionStream Stream(Target);
  EXPECT_THROW(Stream.Write(Plain(400'000)), EQuillonStreamError);
  EXPECT_THROW(Stream.Finish(), EQuillonZlibError);
  EXPECT_EQ(Target.Content(), "");
  EXPECT_THROW(Stream.Seek(1, TQuillonSeekOrigin::Begin), EQuillonStreamError);
}
