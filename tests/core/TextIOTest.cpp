#include <gtest/gtest.h>

#include "QuillonTextIO.h"

namespace {

std::string ReadAll(std::string AText, TQuillonEncoding AnEncoding, bool DoDetectBOM = false,
                    std::size_t ABufferSize = 4) {
  TQuillonMemoryStream Stream(std::move(AText));
  TQuillonTextReader Reader(Stream, AnEncoding, DoDetectBOM, ABufferSize);
  return Reader.ReadLine();
}

std::string Written(std::string_view AText, TQuillonEncoding AnEncoding) {
  TQuillonMemoryStream Stream;
  TQuillonTextWriter(Stream, AnEncoding, true, 4096).Write(AText);
  return Stream.TakeContent();
}

}  // namespace

TEST(TextIO, LinesEndInAnyWayAndEmptyOnesArePassedOver) {
  TQuillonMemoryStream Stream("\r\none\rtwo\n\n\r\nthree\r\nfour");
  TQuillonTextReader Reader(Stream, false, 4096);
  for (const char* Line : {"one", "two", "three", "four", "", ""}) {
    EXPECT_EQ(Reader.ReadLine(), Line);
  }
}

TEST(TextIO, DamagedTextIsReadAsReplacementCharacters) {
  using enum TQuillonEncoding;
  EXPECT_EQ(ReadAll("Grün €", Utf8), "Grün €");
  EXPECT_EQ(ReadAll("a\xC4;b", Utf8),
            "a\uFFFD"
            "b");  // the byte behind belongs to the sequence
  EXPECT_EQ(ReadAll("\xF0\x9F\x98\x80;x", Utf8), "😀;x");
  EXPECT_EQ(ReadAll("\xED\xA0\x80x", Utf8), "\uFFFDx");  // a surrogate
  EXPECT_EQ(ReadAll("\xC0\x80x", Utf8), "\uFFFDx");      // too long
  EXPECT_EQ(ReadAll("a\xE2\x82", Utf8), "a\uFFFD");      // cut off
  EXPECT_EQ(ReadAll("Gr\xFCn", Latin1), "Grün");
  EXPECT_EQ(ReadAll(std::string("a\0=\xD8\0\xDEx\0", 8), Utf16LE), "a😀x");
  EXPECT_EQ(ReadAll(std::string("=\xD8x\0\0\xDE=\xD8", 8), Utf16LE), "\uFFFDx\uFFFD\uFFFD");
  EXPECT_EQ(ReadAll(std::string("a\0b", 3), Utf16LE), "a");
  EXPECT_EQ(ReadAll(std::string("\0a\xD8=\xDE\0\0x", 8), Utf16BE), "a😀x");
}

TEST(TextIO, AMarkIsWrittenAndFound) {
  using enum TQuillonEncoding;
  EXPECT_EQ(Written("Grün", Utf8), "\xEF\xBB\xBFGrün");
  EXPECT_EQ(Written("Grün 😀", Latin1), "Gr\xFCn ?");
  EXPECT_EQ(Written("ü😀", Utf16LE), std::string("\xFF\xFE\xFC\0=\xD8\0\xDE", 8));
  EXPECT_EQ(Written("ü😀", Utf16BE), std::string("\xFE\xFF\0\xFC\xD8=\xDE\0", 8));
  for (const auto Encoding : {Utf8, Utf16LE, Utf16BE}) {
    EXPECT_EQ(ReadAll(Written("Grün", Encoding), Latin1, true), "Grün");
  }
  EXPECT_EQ(ReadAll("\xEF\xBB", Latin1, true), "ï»");
  EXPECT_EQ(ReadAll("a", Utf8, true), "a");
}

TEST(TextIO, TriesConsumeWhatTheyRead) {
  TQuillonMemoryStream Stream("PRÄFIX;next");
  TQuillonTextReader Reader(Stream, false, 4096);
  std::string Read = "old";
  EXPECT_TRUE(Reader.TryReadText("prÄf", Read));
  EXPECT_EQ(Read, "PRÄF");
  EXPECT_FALSE(Reader.TryReadStr("Ix", Read));
  EXPECT_EQ(Read, "IX");
  EXPECT_TRUE(Reader.TryReadStr("", Read));
  EXPECT_EQ(Read, "");
  EXPECT_TRUE(Reader.TryReadStr(";next", Read));
  EXPECT_FALSE(Reader.TryReadStr("x", Read));
  EXPECT_EQ(Read, "");
}

TEST(TextIO, ErrorsOfTheStreamAreToldByFlush) {
  TQuillonFileStream Full("/dev/full", fomOpenWrite, famShareDenyNone);
  TQuillonTextWriter Writer(Full, false, 4096);
  Writer.Write("x");
  EXPECT_THROW(Writer.FlushBuffer(), EQuillonFileHandleError);
}
