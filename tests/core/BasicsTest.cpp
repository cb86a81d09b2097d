#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "QuillonGuid.h"
#include "QuillonNumbers.h"
#include "QuillonText.h"
#include "QuillonTypes.h"

namespace {

std::string FloatText(double AValue) {
  std::string Text;
  QuillonNumbers::AppendFloat(Text, AValue);
  return Text;
}

std::u16string Utf16(std::u32string_view AText) {
  std::u16string Result;
  for (const char32_t C : AText) {
    if (C > 0xFFFF) {
      Result.push_back(static_cast<char16_t>(0xD7C0 + (C >> 10)));
      Result.push_back(static_cast<char16_t>(0xDC00 + (C & 0x3FF)));
    } else {
      Result.push_back(static_cast<char16_t>(C));
    }
  }
  return Result;
}

}  // namespace

TEST(Guid, NamesGiveThePublishedIdentifiers) {
  // The vector of RFC 4122's name space for domain names, and one from Python's uuid module.
  const TGUID Dns = QuillonGuid::Parse("{6BA7B810-9DAD-11D1-80B4-00C04FD430C8}");
  EXPECT_EQ(QuillonGuid::Plain(QuillonGuid::FromName(Dns, "www.example.com")), "2ed6657d-e927-568b-95e1-2665a8aea6a2");
  const TGUID Oid = QuillonGuid::Parse("{6ba7b812-9dad-11d1-80b4-00c04fd430c8}");
  EXPECT_EQ(QuillonGuid::Plain(QuillonGuid::FromName(Oid, "Größe")), "2fe32a45-bc0d-5160-ad14-c0fd2ae68f78");
}

TEST(Guid, OnlyTheBracedFormIsRead) {
  const std::string Text = "{0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0}";
  EXPECT_EQ(QuillonGuid::Braced(QuillonGuid::Parse(Text)), Text);
  EXPECT_EQ(QuillonGuid::Plain(QuillonGuid::Parse(Text)), "0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0");
  EXPECT_EQ(QuillonGuid::Parse(QuillonText::ToLower(Text)), QuillonGuid::Parse(Text));
  for (std::size_t Place = 0; Place < Text.size(); ++Place) {
    for (int Byte = 0; Byte < 256; ++Byte) {
      std::string Other = Text;
      Other[Place] = static_cast<char>(Byte);
      const bool IsDigit = std::isxdigit(static_cast<unsigned char>(Text[Place])) != 0;
      const auto Guid = QuillonGuid::TryParse(Other);
      ASSERT_EQ(Guid.has_value(), IsDigit ? std::isxdigit(Byte) != 0 : Other == Text) << Place << " " << Byte;
      EXPECT_EQ(Guid ? QuillonGuid::Braced(*Guid) : "", Guid ? QuillonText::ToUpper(Other) : "");
    }
    EXPECT_FALSE(QuillonGuid::TryParse(Text.substr(0, Place)));
  }
  EXPECT_THROW(QuillonGuid::Parse(Text.substr(1, 36)), EQuillonConvertError);
}

TEST(Guid, NewOnesAreRandomAndOfVersion4) {
  std::set<TGUID> Seen;
  for (int I = 0; I < 10'000; ++I) {
    const TGUID Guid = QuillonGuid::New();
    ASSERT_EQ(Guid.Bytes[6] >> 4, 4);
    ASSERT_EQ(Guid.Bytes[8] >> 6, 2);
    ASSERT_TRUE(Seen.insert(Guid).second);
  }
}

TEST(Text, OrderIsThatOfUtf16) {
  const std::vector<std::pair<std::u32string, std::string>> Texts = {{U"", ""},
                                                                     {U"a", "a"},
                                                                     {U"ab", "ab"},
                                                                     {U"b", "b"},
                                                                     {U"ß", "ß"},
                                                                     {U"\uD7FF", "\uD7FF"},
                                                                     {U"\U00010000", "\U00010000"},
                                                                     {U"\U0010FFFF", "\U0010FFFF"},
                                                                     {U"\uE000", "\uE000"},
                                                                     {U"\uFFFD", "\uFFFD"}};
  for (const auto& [WideA, A] : Texts) {
    for (const auto& [WideB, B] : Texts) {
      const int Expected = Utf16(WideA).compare(Utf16(WideB));
      const int Actual = QuillonText::CompareOrdinal(A, B);
      EXPECT_EQ(Expected < 0, Actual < 0) << A << " " << B;
      EXPECT_EQ(Expected > 0, Actual > 0) << A << " " << B;
    }
  }
}

TEST(Text, CaseIsMappedOneToOne) {
  EXPECT_EQ(QuillonText::ToUpper("straße äöü é 10 ж"), "STRAßE ÄÖÜ É 10 Ж");
  EXPECT_EQ(QuillonText::ToLower("STRASSE ÄÖÜ É Ж"), "strasse äöü é ж");
  EXPECT_EQ(QuillonText::ToUpper("a\xFFä\xC3"), "A\xFFÄ\xC3");
  EXPECT_TRUE(QuillonText::EqualsIgnoreCase("Größe", "GRÖßE"));
  EXPECT_FALSE(QuillonText::EqualsIgnoreCase("Größe", "Grösse"));
  EXPECT_LT(QuillonText::CompareIgnoreCase("B", "c"), 0);
  EXPECT_EQ(QuillonText::CompareIgnoreAsciiCase("aBc1", "AbC1"), 0);
  EXPECT_LT(QuillonText::CompareIgnoreAsciiCase("a", "B1"), 0);
  EXPECT_LT(QuillonText::CompareIgnoreAsciiCase("b", "B1"), 0);
  EXPECT_LT(QuillonText::CompareIgnoreAsciiCase("z", "_"), 0) << "letters count as capitals";
  EXPECT_LT(QuillonText::CompareIgnoreAsciiCase("Ä", "ä"), 0);
}

TEST(Text, DamageIsFoundWhereItBegins) {
  EXPECT_EQ(QuillonText::FindInvalidUtf8(""), std::string::npos);
  EXPECT_EQ(QuillonText::FindInvalidUtf8("Größe 😀 of a longer text"), std::string::npos);
  for (const std::string_view Damage :
       {"\x80", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xFF", "\xE2\x82"}) {
    for (std::size_t Place = 0; Place < 20; ++Place) {
      EXPECT_EQ(QuillonText::FindInvalidUtf8(std::string(Place, 'a') + std::string(Damage)), Place);
      EXPECT_EQ(QuillonText::FindInvalidUtf8(std::string(Place, 'a') + std::string(Damage) + "tail of it"), Place);
    }
  }
}

TEST(Numbers, IntegersStayWithinTheirBounds) {
  EXPECT_EQ(QuillonNumbers::ParseInteger("  -42", -100, 100), -42);
  EXPECT_EQ(QuillonNumbers::ParseInteger("\n +7\t\r\n", 0, 7), 7);
  constexpr auto Least = std::numeric_limits<std::int64_t>::min();
  constexpr auto Most = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(QuillonNumbers::ParseInteger("-9223372036854775808", Least, Most), Least);
  for (const char* Text : {"", " ", "-", "+", "+-1", "--1", "1 1", "1.0", "0x10", "1a", "9223372036854775808", "8"}) {
    EXPECT_THROW(QuillonNumbers::ParseInteger(Text, -7, 7), EQuillonConvertError) << Text;
  }
}

TEST(Numbers, FloatsHaveFifteenDigitsAndOneForm) {
  EXPECT_EQ(FloatText(0), "0");
  EXPECT_EQ(FloatText(-0.0), "0");
  EXPECT_EQ(FloatText(1.5), "1.5");
  EXPECT_EQ(FloatText(-0.25), "-0.25");
  EXPECT_EQ(FloatText(0.1 + 0.2), "0.3");
  EXPECT_EQ(FloatText(1.0 / 3), "0.333333333333333");
  EXPECT_EQ(FloatText(123456789012345.0), "123456789012345");
  EXPECT_EQ(FloatText(1e15), "1E15");
  EXPECT_EQ(FloatText(-1.25e-7), "-1.25E-7");
  EXPECT_EQ(FloatText(0.00001), "0.00001");
  for (const double Value : {1.0, -2.5, 1e100, 46235.75, 1e-300, 99999999999999.9}) {
    EXPECT_EQ(QuillonNumbers::ParseFloat(FloatText(Value)), Value);
  }
  EXPECT_EQ(QuillonNumbers::ParseFloat(" +1,5"), 1.5);
  for (const char* Text : {"", "x", "1.2.3", "nan", "inf", "-inf", "1e999", "1 2", "+-1", "0x10"}) {
    EXPECT_THROW(QuillonNumbers::ParseFloat(Text), EQuillonConvertError) << Text;
  }
}

TEST(Types, SystemErrorsNameCodeAndSubject) {
  const EQuillonWin32Error Error(2, "/missing/file");
  EXPECT_EQ(Error.ErrorCode(), 2);
  EXPECT_EQ(std::string(Error.what()), "Systemfehler (Fehlercode: 2).\r\n" + Error.ErrorMsg());
  EXPECT_NE(Error.ErrorMsg().find("/missing/file"), std::string::npos);
}
