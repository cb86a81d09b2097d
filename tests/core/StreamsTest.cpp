#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include "QuillonStreams/Extended.h"
#include "QuillonStreams/Reader.h"
#include "QuillonStreams/Writer.h"

namespace {

using TLimits = std::numeric_limits<double>;

std::string Unhex(std::string_view AText) {
  std::string Bytes;
  for (std::size_t I = 0; I + 1 < AText.size(); I += 2) {
    Bytes.push_back(static_cast<char>(std::stoi(std::string(AText.substr(I, 2)), nullptr, 16)));
  }
  return Bytes;
}

const TGUID Guid = QuillonGuid::Parse("{00112233-4455-6677-8899-AABBCCDDEEFF}");

/// A value of a kind: how it is written, its bytes, and whether what is read is the same.
struct TCase {
  std::string Bytes;
  std::function<void(TQuillonWriter&)> Write;
  std::function<bool(TQuillonReader&)> IsRead;
};

template <class TWriterClass, class TGiven, class TReaderClass, class TValue>
TCase Value(std::string ABytes, void (TWriterClass::*AWrite)(TGiven), TReaderClass ARead, TValue AValue) {
  return {std::move(ABytes), [=](TQuillonWriter& AWriter) { (AWriter.*AWrite)(static_cast<TGiven>(AValue)); },
          [=](TQuillonReader& AReader) { return (AReader.*ARead)() == AValue; }};
}

std::vector<TCase> Cases() {
  using W = TQuillonWriter;
  using R = TQuillonReader;
  using TLines = std::vector<std::string>;
  const auto WriteBlock = [](W& AWriter) {
    TQuillonMemoryStream Stream("abc");
    Stream.Seek(2, TQuillonSeekOrigin::Begin);
    AWriter.WriteBinary(Stream);
  };
  const auto ReadBlock = [](R& AReader) {
    TQuillonMemoryStream Stream("what was there");
    AReader.ReadBinary(Stream);
    return Stream.Content() == "abc" && Stream.Position() == 0;
  };
  return {
      Value("01", &W::WriteBoolean, &R::ReadBoolean, true),
      Value("FE", &W::WriteByte, &R::ReadByte, 0xFE),
      Value("FE", &W::WriteShortInt, &R::ReadShortInt, -2),
      Value("AC20", &W::WriteChar, &R::ReadChar, u'€'),
      Value("3412", &W::WriteWord, &R::ReadWord, 0x1234),
      Value("FEFF", &W::WriteSmallInt, &R::ReadSmallInt, -2),
      Value("EFCDAB89", &W::WriteLongWord, &R::ReadLongWord, 0x89ABCDEFU),
      Value("FEFFFFFF", &W::WriteLongInt, &R::ReadLongInt, -2),
      Value("EFCDAB8967452301", &W::WriteInt64, &R::ReadInt64, 0x0123456789ABCDEF),
      Value("FEFFFFFFFFFFFFFF", &W::WriteComp, &R::ReadComp, -2),
      Value("3930000000000000", &W::WriteCurrency, &R::ReadCurrency, 12'345),
      Value("000020C0", &W::WriteSingle, &R::ReadSingle, -2.5F),
      Value("00000000000004C0", &W::WriteDouble, &R::ReadDouble, -2.5),
      Value("000000000000E83F", &W::WriteDateTime, &R::ReadDateTime, TQuillonDateTime(0.75)),
      Value("00000000000000A000C0", &W::WriteExtended, &R::ReadExtended, -2.5),
      Value("33221100554477668899AABBCCDDEEFF", &W::WriteGuid, &R::ReadGuid, Guid),
      Value("FF0000FF", &W::WriteColor, &R::ReadColor, -0xFFFF01),
      Value("0200000041FF", &W::WriteGraphic, &R::ReadGraphic, std::string("A\xFF")),
      Value("0100000002", &W::WriteBrush, &R::ReadBrush, TQuillonBrush{1, 2}),
      Value("01000000020304000000", &W::WritePen, &R::ReadPen, TQuillonPen{1, 2, 3, 4}),
      Value("010000004100010000000200000003", &W::WriteFont, &R::ReadFont, TQuillonFont{"A", 1, 2, 3}),
      Value("00000000", &W::WriteString, &R::ReadString, std::string()),
      Value("040000004100E4003DD800DE", &W::WriteString, &R::ReadString, std::string("Aä😀")),
      Value("02000000FF00", &W::WriteAnsiString, &R::ReadAnsiString, std::string("\xFF\0", 2)),
      Value("03000000E282AC", &W::WriteUtf8String, &R::ReadUtf8String, std::string("€")),
      Value("0500000061000D000A000D000A00", &W::WriteStrings, &R::ReadStrings, TLines{"a", ""}),
      {"4F52", [](W& AWriter) { AWriter.WriteSignature("OR"); },
       [](R& AReader) { return AReader.ReadSignature("OR"); }},
      {"", [](W& AWriter) { AWriter.WriteSignature(""); }, [](R& AReader) { return AReader.ReadSignature(""); }},
      {"03000000616263", WriteBlock, ReadBlock},
  };
}

/// A memory stream that hands over few bytes at once, and raises at a call.
class FailingStream final : public TQuillonStream {
 public:
  explicit FailingStream(std::string AContent, int ACalls) : FStream(std::move(AContent)), FCalls(ACalls) {}

  std::size_t Read(std::span<char> ABuffer) override {
    Count();
    return FStream.Read(ABuffer.first(std::min<std::size_t>(ABuffer.size(), 3)));
  }
  void Write(std::string_view ABytes) override {
    Count();
    FStream.Write(ABytes);
  }
  std::int64_t Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) override {
    Count();
    return FStream.Seek(AnOffset, AnOrigin);
  }
  void SetEndOfFile() override {}
  const std::string& Content() const { return FStream.Content(); }

 private:
  void Count() {
    if (FCalls-- == 0) {
      throw EQuillonStreamError("broken");
    }
  }

  TQuillonMemoryStream FStream;
  int FCalls;
};

std::string AllBytes() {
  std::string Bytes;
  for (const TCase& Case : Cases()) {
    Bytes += Unhex(Case.Bytes);
  }
  return Bytes;
}

void WriteAll(TQuillonStream& AStream, std::size_t ABufferSize) {
  TQuillonStreamWriter Writer(AStream, ABufferSize);
  for (const TCase& Case : Cases()) {
    Case.Write(Writer);
  }
  Writer.FlushBuffer();
}

/// Reads all the values; each must come as it was written.
void ReadAll(TQuillonStream& AStream, std::size_t ABufferSize) {
  TQuillonStreamReader Reader(AStream, ABufferSize);
  for (const TCase& Case : Cases()) {
    EXPECT_TRUE(Case.IsRead(Reader)) << Case.Bytes;
  }
}

constexpr std::array<std::size_t, 5> BufferSizes = {0, 1, 2, 7, 4096};

}  // namespace

TEST(Streams, AnyBufferGivesTheBytesAndTheValuesAgain) {
  for (const std::size_t Size : BufferSizes) {
    TQuillonMemoryStream Stream;
    WriteAll(Stream, Size);
    EXPECT_EQ(Stream.Content(), AllBytes()) << Size;
    FailingStream Few(AllBytes(), std::numeric_limits<int>::max());
    ReadAll(Few, Size);
  }
}

TEST(Streams, EveryFailureOfTheStreamIsToldAndNothingIsWrittenBehindIt) {
  for (const std::size_t Size : BufferSizes) {
    bool HasFailed = true;
    const auto Try = [&](auto ACall, FailingStream& AStream) {
      try {
        ACall(AStream, Size);
      } catch (const EQuillonStreamError&) {
        HasFailed = true;
      }
    };
    for (int Calls = 0; HasFailed; ++Calls) {
      HasFailed = false;
      FailingStream Target("", Calls);
      Try(WriteAll, Target);
      EXPECT_TRUE(AllBytes().starts_with(Target.Content()));
      EXPECT_EQ(HasFailed, Target.Content().size() < AllBytes().size());
      FailingStream Source(AllBytes(), Calls);
      Try(ReadAll, Source);
    }
  }
}

TEST(Streams, AValueThatIsCutOrHasALengthBelowZeroIsRefused) {
  for (const TCase& Case : Cases()) {
    const std::string Whole = Unhex(Case.Bytes);
    for (std::size_t Size = 0; Size < Whole.size(); ++Size) {
      TQuillonMemoryStream Stream(Whole.substr(0, Size));
      TQuillonStreamReader Reader(Stream, 8);
      EXPECT_THROW(Case.IsRead(Reader), EQuillonReaderError) << Case.Bytes << ' ' << Size;
    }
  }
  for (const std::string_view Length : {"FFFFFFFF", "00000080", "FFFFFF7F41"}) {
    TQuillonMemoryStream Stream(Unhex(Length));
    TQuillonStreamReader Reader(Stream);
    EXPECT_THROW(Reader.ReadString(), EQuillonReaderError);
    Stream.Seek(0, TQuillonSeekOrigin::Begin);
    EXPECT_THROW(Reader.ReadBinary(), EQuillonReaderError);
  }
}

TEST(Streams, AReaderLeavesTheStreamBehindWhatItHasRead) {
  const std::string Content = "0123456789";
  for (const std::size_t Size : BufferSizes) {
    for (std::size_t Cut = 0; Cut <= Content.size(); ++Cut) {
      TQuillonMemoryStream Stream(Content);
      {
        TQuillonStreamReader Reader(Stream, Size);
        std::string Begin(Cut, ' ');
        EXPECT_EQ(Reader.Read(Begin), Cut);
        EXPECT_EQ(Reader.CanRead(), Cut < Content.size());
        const auto Left = static_cast<std::int64_t>(Content.size() - Cut);
        EXPECT_TRUE(Reader.Available(Left) && !Reader.Available(Left + 1));
      }
      EXPECT_EQ(QuillonIO::ReadWholeFile(Stream), Content.substr(Cut)) << Size;
    }
  }
}

TEST(Streams, WhatIsNoTextBecomesTheReplacementCharacter) {
  TQuillonMemoryStream Stream;
  TQuillonStreamWriter Writer(Stream);
  Writer.WriteString("a\xFF\xE2\x82");
  Writer.WriteUtf8String("a\xFFz");
  Writer.WriteString("a\r\n\nb");
  Writer.WriteSignature(
      Unhex("0500000000D8410000DC00D83DD8"
            "02000000FFFE"
            "0200000061C3"));
  Stream.Seek(0, TQuillonSeekOrigin::Begin);
  TQuillonStreamReader Reader(Stream);
  EXPECT_EQ(Reader.ReadString(), "a\uFFFD\uFFFD");
  EXPECT_EQ(Reader.ReadUtf8String(), "a\uFFFDz");
  EXPECT_THAT(Reader.ReadStrings(), testing::ElementsAre("a", "", "b"));
  EXPECT_EQ(Reader.ReadString(), "\uFFFDA\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(Reader.ReadUtf8String(), "\uFFFD\uFFFD");
  EXPECT_EQ(Reader.ReadUtf8String(), "a\uFFFD");
}

TEST(Streams, AnExtendedValueIsTheNearestDouble) {
  struct TRow {
    std::string Bytes;
    double Read;
  };
  constexpr double Infinity = TLimits::infinity();
  constexpr double NaN = TLimits::quiet_NaN();
  constexpr double Min = TLimits::min();
  constexpr double Smallest = TLimits::denorm_min();
  constexpr double Epsilon = TLimits::epsilon();
  // clang-format off
  const std::vector<TRow> Exact = {
      {"00000000000000000000", 0.0}, {"00000000000000000080", -0.0}, {"0000000000000080FF3F", 1.0},
      {"00D0CCCCCCCCCCCCFB3F", 0.1}, {"00F8FFFFFFFFFFFFFE43", TLimits::max()}, {"0000000000000080013C", Min},
      {"00F0FFFFFFFFFFFF003C", Min - Smallest}, {"0000000000000080CD3B", Smallest},
      {"0000000000000080FF7F", Infinity}, {"0000000000000080FFFF", -Infinity}, {"00000000000000C0FF7F", NaN},
  };
  const std::vector<TRow> Rounded = {
      {"0004000000000080FF3F", 1.0}, {"000C000000000080FF3F", 1.0 + 2 * Epsilon}, // ties
      {"0104000000000080FF3F", 1.0 + Epsilon}, {"FFFFFFFFFFFFFFFFFF3F", 2.0},
      {"00FCFFFFFFFFFFFFFE43", Infinity}, {"0000000000000080FE7F", Infinity}, {"FFFFFFFFFFFFFFFF003C", Min},
      {"0000000000000080CC3B", 0.0}, {"0100000000000080CC3B", Smallest}, {"FFFFFFFFFFFFFFFFCB3B", 0.0},
      {"FFFFFFFFFFFFFFFF0000", 0.0}, {"0100000000000080FF7F", NaN}, {"0000000000000000FF7F", NaN},
      {"FFFFFFFFFFFFFF7FFF3F", NaN},
  };
  // clang-format on
  const auto Expect = [](const TRow& ARow) {
    QuillonExtended::TBytes Bytes{};
    const std::string Given = Unhex(ARow.Bytes);
    std::copy(Given.begin(), Given.end(), Bytes.begin());
    const double Read = QuillonExtended::Decode(Bytes);
    EXPECT_TRUE(std::isnan(ARow.Read) ? std::isnan(Read) : Read == ARow.Read) << ARow.Bytes << ": " << Read;
    EXPECT_EQ(std::signbit(Read), std::signbit(ARow.Read)) << ARow.Bytes;
    return QuillonExtended::Encode(ARow.Read) == Bytes;
  };
  for (const TRow& Row : Exact) {
    EXPECT_TRUE(Expect(Row)) << Row.Bytes;
  }
  std::for_each(Rounded.begin(), Rounded.end(), Expect);
}

TEST(Streams, AStreamOverABlockNeverGrows) {
  std::string Block = "0123456789";
  TQuillonBufferStream Stream{std::span(Block)};
  EXPECT_EQ(QuillonIO::ReadWholeFile(Stream), Block);
  Stream.Seek(-3, TQuillonSeekOrigin::Current);
  EXPECT_THROW(Stream.Write("abcd"), EQuillonStreamError);
  Stream.Write("abc");
  EXPECT_EQ(Block, "0123456abc");
  Stream.SetEndOfFile();
  EXPECT_THROW(Stream.Clear(), EQuillonStreamError);
  EXPECT_THROW(Stream.Seek(-1, TQuillonSeekOrigin::Begin), EQuillonStreamError);
  Stream.Seek(20, TQuillonSeekOrigin::Begin);
  EXPECT_THROW(Stream.Write("a"), EQuillonStreamError);
  Stream.Zero();
  EXPECT_EQ(Block, std::string(10, '\0'));

  TQuillonMemoryStream Zeros(3, 100);
  Zeros.Write("ab");
  EXPECT_EQ(Zeros.TakeContent(), std::string("ab\0", 3));
  EXPECT_EQ(Zeros.Size(), 0);
}

TEST(Streams, AWriterThatPlacesTooLittleIsTold) {
  class ShortWriter final : public TQuillonWriter {
   public:
    std::size_t Write(std::string_view ABytes) override { return ABytes.size() - (ABytes.empty() ? 0 : 1); }
  } Writer;
  for (const TCase& Case : Cases()) {
    if (!Case.Bytes.empty()) {
      EXPECT_THROW(Case.Write(Writer), EQuillonWriterError) << Case.Bytes;
    }
  }
}

TEST(Streams, AHandlerFollowsATransferAndEndsIt) {
  constexpr std::int64_t Total = 200'000;
  TQuillonMemoryStream Stream;
  TQuillonStreamWriter Writer(Stream);
  TQuillonStreamReader Reader(Stream);
  std::vector<std::int64_t> Positions;
  Writer.FOnProgress = [&](std::int64_t APosition, std::int64_t ATotal, bool& /*DoAbort*/) {
    Positions.push_back(APosition);
    EXPECT_EQ(ATotal, Total);
  };
  Writer.WriteBinary(std::string(Total, 'x'));
  EXPECT_THAT(Positions, testing::ElementsAre(65'536, 131'072, 196'608, Total));
  Stream.Seek(0, TQuillonSeekOrigin::Begin);
  Reader.FOnProgress = [](std::int64_t APosition, std::int64_t /*ATotal*/, bool& DoAbort) {
    DoAbort = APosition > Total / 2;
  };
  EXPECT_THROW(Reader.ReadBinary(), EQuillonStreamAbort);
  EXPECT_EQ(Stream.Position(), 131'072 + 4);
}
