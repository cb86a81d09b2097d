#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "QuillonCSV.h"

namespace {

using testing::ElementsAre;

constexpr std::string_view Mark = "\xEF\xBB\xBF";

std::string Written(const std::function<void(TQuillonCSVWriter&)>& AWrite, std::size_t ABufferSize = 4096) {
  TQuillonMemoryStream Stream;
  {
    TQuillonCSVWriter Writer(Stream, false, ABufferSize);
    AWrite(Writer);
  }
  return Stream.TakeContent();
}

std::vector<TQuillonCSVLine> ReadLines(std::string AText, const std::function<void(TQuillonCSVReader&)>& APrepare = {},
                                       std::size_t ABufferSize = 4096) {
  TQuillonMemoryStream Stream(std::move(AText));
  TQuillonCSVReader Reader(Stream, true, ABufferSize);
  if (APrepare) {
    APrepare(Reader);
  }
  std::vector<TQuillonCSVLine> Lines;
  while (auto Line = Reader.ReadLine()) {
    Lines.push_back(std::move(*Line));
  }
  return Lines;
}

void BeStrict(TQuillonCSVReader& AReader) { AReader.FStrict = true; }

std::string ErrorOf(const std::string& AText, const std::function<void(TQuillonCSVReader&)>& APrepare = {}) {
  try {
    ReadLines(AText, APrepare);
  } catch (const EQuillonCSVReaderError& Error) {
    return Error.what();
  }
  return "";
}

}  // namespace

TEST(CSVWriter, QuotesOnlyWhatNeedsIt) {
  EXPECT_EQ(Written([](auto& Writer) {
              Writer.WriteValues(TQuillonCSVLine{"Id", "a;b", "say \"x\"", "", " blank ", "two\r\nlines", "#", "ä,"});
              Writer.WriteLine();
              Writer.WriteValue("");
              Writer.WriteValue("end");
              Writer.WriteLine();
            }),
            "Id;\"a;b\";\"say \"\"x\"\"\";; blank ;\"two\r\nlines\";#;ä,\r\n;end");
  EXPECT_EQ(Written([](auto& Writer) {
              Writer.FForceQuotes = true;
              Writer.FSeparator = ',';
              Writer.WriteValues(TQuillonCSVLine{"a;b", ""});
              Writer.FNoEmptyQuotes = true;
              Writer.WriteValues(TQuillonCSVLine{"", "\""});
            }),
            "\"a;b\",\"\",,\"\"\"\"");
}

TEST(CSVWriter, LineBreaksComeOnlyAheadOfText) {
  EXPECT_EQ(Written([](auto& Writer) {
              Writer.WriteLine();
              Writer.WriteLine(nullptr);
              Writer.WriteValue("a");
              Writer.WriteLine();
              Writer.WriteLine();
              Writer.WriteValue("");  // a row of one empty value leaves no trace
              Writer.WriteLine();
              const TQuillonCSVLine Line = {"b", "c"};
              Writer.WriteLine(&Line);
              Writer.WriteLine();
            }),
            "\r\na\r\nb;c");
  EXPECT_EQ(Written([](auto& Writer) {
              Writer.WriteValue("a");
              Writer.WriteComment(" a;b");
              Writer.WriteComment(" c");
              Writer.WriteValue("d");
            }),
            "a\r\n\"# a;b\"\r\n# c\r\nd");
}

TEST(CSVWriter, WritesTheMarkAndFlushesAsItsBufferFills) {
  TQuillonMemoryStream Stream;
  TQuillonCSVWriter Writer(Stream, true, 16);
  EXPECT_EQ(Stream.Content(), "");
  Writer.FlushBuffer();
  EXPECT_EQ(Stream.Content(), Mark);
  for (int I = 0; I < 10; ++I) {
    Writer.WriteValue("value");
  }
  EXPECT_GT(Stream.Content().size(), 40U);
  EXPECT_LT(Stream.Content().size(), Mark.size() + 59);
  Writer.FlushBuffer();
  EXPECT_EQ(Stream.Content().size(), Mark.size() + 59);
}

TEST(CSVReader, ReadsBackWhatWasWritten) {
  const TQuillonCSVLine Values = {"a\"b", "\"", "two\r\nlines", "x;y", "plain", "in ner", "Größe €", "", "last"};
  const std::string Text = Written([&](auto& Writer) {
    Writer.WriteLine(&Values);
    Writer.WriteLine(&Values);
  });
  for (const std::size_t BufferSize : {1U, 5U, 4096U}) {
    EXPECT_THAT(ReadLines(Text, {}, BufferSize), ElementsAre(Values, Values));
  }
  EXPECT_THAT(ReadLines(std::string(Mark) + Text), ElementsAre(Values, Values));
}

TEST(CSVReader, BlanksAndLineEnds) {
  const auto Only = [](const std::string& AText) {
    const auto Lines = ReadLines(AText);
    EXPECT_EQ(Lines.size(), 1U) << AText;
    return Lines.empty() ? TQuillonCSVLine() : Lines.front();
  };
  EXPECT_THAT(Only("  \"x\"  ;y"), ElementsAre("x", "y"));
  EXPECT_THAT(Only(" \t a b\tc ;\x01z\x15"), ElementsAre("a b c ", "z\x15"));
  EXPECT_THAT(Only("\"\ta\nb\";c"), ElementsAre("\ta\nb", "c"));
  EXPECT_THAT(Only("a;b;\n"), ElementsAre("a", "b"));
  EXPECT_THAT(Only("a;;b"), ElementsAre("a", "", "b"));
  EXPECT_THAT(Only("a;b;"), ElementsAre("a", "b"));
  EXPECT_THAT(Only(";\r\n"), ElementsAre(""));
  EXPECT_THAT(Only("\"\"\r\n"), ElementsAre(""));
  EXPECT_THAT(Only("a;\"never closed\r\n"), ElementsAre("a", "never closed\r\n"));
  EXPECT_THAT(ReadLines("\n\n   \r\na\r\r  \nb\n\n"), ElementsAre(ElementsAre("a"), ElementsAre("b")));
  EXPECT_THAT(ReadLines(""), ElementsAre());
  EXPECT_THAT(ReadLines(std::string(Mark)), ElementsAre());
  EXPECT_THAT(ReadLines("  \n \n"), ElementsAre());
}

TEST(CSVReader, CommentsAndQuotesAreSettings) {
  const std::string Text = "# head;\"\na#;\"q\" # why\n#\nb";
  EXPECT_THAT(ReadLines(Text, [](auto& Reader) { Reader.FAllowComments = true; }),
              ElementsAre(ElementsAre("a#"), ElementsAre("b")));
  EXPECT_THAT(ReadLines("a\"b|\"c;d\"",
                        [](auto& Reader) {
                          Reader.FIgnoreQuotes = true;
                          Reader.FSeparator = '|';
                        }),
              ElementsAre(ElementsAre("a\"b", "\"c;d\"")));
}

TEST(CSVReader, WrongQuotesAreToldWithTheLine) {
  EXPECT_EQ(ErrorOf("x\"y;z"), "Falsches CSV-Format: Fehlendes Begrenzungszeichen am Feldanfang in Zeile 1.");
  EXPECT_EQ(ErrorOf("a;b\n\n\"x\"y"),
            "Falsches CSV-Format: Fehlendes Trennzeichen nach Begrenzungszeichen in Zeile 2.");
  EXPECT_EQ(ErrorOf("a\nb\n\"x\" y"), "Falsches CSV-Format: Fehlendes Trennzeichen in Zeile 3.");
  EXPECT_EQ(ErrorOf("a\nb\n\"x\" \"y\""), "Falsches CSV-Format: Fehlendes Trennzeichen in Zeile 3.");
}

TEST(CSVReader, AStrictOneTakesNoTornText) {
  EXPECT_EQ(ErrorOf("a\nb;\"c\nd;e\n", BeStrict),
            "Falsches CSV-Format: Fehlendes Begrenzungszeichen am Feldende in Zeile 2.");
  for (const char* Text : {"a\nM\xFCller;b", "a\nb;\"\xFC\"\n", "a\nb\xE2\x82"}) {
    EXPECT_EQ(ErrorOf(Text, BeStrict), "Falsches CSV-Format: Ungültige Zeichenkodierung in Zeile 2.") << Text;
  }
  EXPECT_EQ(ErrorOf(std::string("\xFF\xFE\x61\x00\x62", 5), BeStrict),
            "Falsches CSV-Format: Ungültige Zeichenkodierung in Zeile 1.");
  EXPECT_EQ(ErrorOf("\"a\"\n\uFFFD;Müller", BeStrict), "");
  EXPECT_EQ(ErrorOf("a\n" + std::string(1'000'000, ';'), BeStrict), "");
  EXPECT_EQ(ErrorOf("a\n" + std::string(1'000'000, ';') + "x", BeStrict),
            "Falsches CSV-Format: Zu viele Felder in Zeile 2.");
}

TEST(CSVReader, TellsWhereInTheTextItIs) {
  TQuillonMemoryStream Stream("\r\na;\"two\r\nthree\"\r\n\n\rb;c\"");
  TQuillonCSVReader Reader(Stream, false, 4096);
  Reader.ReadLine();
  EXPECT_EQ(Reader.TextLine(), 2);
  EXPECT_EQ(Reader.FieldCount(), 2U);
  EXPECT_THROW(Reader.ReadLine(), EQuillonCSVReaderError);
  EXPECT_EQ(Reader.TextLine(), 6);
  EXPECT_EQ(Reader.FieldCount(), 1U);
}
