#include <gmock/gmock.h>

#include "QuillonJson/Parser.h"

namespace {

using ::testing::IsNull;
using ::testing::NotNull;

std::string Bytes(const TQuillonJSONAncestor& ANode) {
  std::string Result(ANode.EstimatedByteSize(), '\0');
  Result.resize(ANode.ToBytes(Result, 0));
  return Result;
}

TEST(Json, BothWritersKeepTheOrderAndOnlyOneEscapes) {
  TQuillonJSONObject Plan;
  Plan.AddPair("code", "5a \"x\"/\n");
  Plan.AddPair("empty", "");
  Plan.AddPair("", 1);
  Plan.AddPair(nullptr);
  Plan.AddPair("count", 12);
  Plan.AddPair("shown", true);
  auto List = std::make_unique<TQuillonJSONArray>();
  List->Add("");
  List->Add(0.25);
  List->Add(false);
  List->AddElement(std::make_unique<TQuillonJSONNull>());
  List->Add("ä😀\x7F");
  Plan.AddPair("list", std::move(List));

  EXPECT_EQ(Plan.ContentToString(),
            "\"code\":\"5a \"x\"/\n\",\"count\":12,\"shown\":true,"
            "\"list\":[\"\",0.25,false,null,\"ä😀\x7F\"]");
  EXPECT_EQ(Plan.ToString(), "{" + Plan.ContentToString() + "}");
  EXPECT_EQ(Bytes(Plan), R"({"code":"5a \"x\"\/\n","count":12,"shown":true,)"
                         R"("list":["",0.25,false,null,"\u00E4\uD83D\uDE00)"
                         "\x7F\"]}");
  EXPECT_EQ(Bytes(*Plan.Clone()), Bytes(Plan));
  std::string Small(Bytes(Plan).size() - 1, '\0');
  EXPECT_THROW(Plan.ToBytes(Small, 0), EQuillonJSONError);
}

TEST(Json, WhatIsWrittenAlreadyStaysAsItIs) {
  TQuillonJSONArray Array;
  Array.AddElement(std::make_unique<TQuillonJSONWritten>(R"({"a":"\"/ä😀"})"));
  EXPECT_EQ(Array.ToString(), R"([{"a":"\"/ä😀"}])");
  EXPECT_EQ(Bytes(Array), R"([{"a":"\"/\u00E4\uD83D\uDE00"}])");
  EXPECT_EQ(Bytes(*Array.Clone()), Bytes(Array));
}

TEST(Json, SizesAreCountedInUtf16) {
  EXPECT_EQ(TQuillonJSONString("ä😀").EstimatedByteSize(), 3 * 6 + 2);
  EXPECT_EQ(TQuillonJSONString().EstimatedByteSize(), 4U);
  EXPECT_EQ(TQuillonJSONNumber(std::int64_t{-12}).EstimatedByteSize(), 3U);
  EXPECT_EQ(TQuillonJSONObject().EstimatedByteSize(), 2U);
  EXPECT_EQ(TQuillonJSONPair("a", false).EstimatedByteSize(), 8U + 5U + 1U);
}

TEST(Json, ValuesWithoutTextAreNullOrNothing) {
  EXPECT_EQ(TQuillonJSONString().ToString(), "");
  EXPECT_EQ(Bytes(TQuillonJSONString()), "null");
  EXPECT_EQ(TQuillonJSONNumber("1.50e1").Value(), "15");
  EXPECT_EQ(TQuillonJSONNumber("1e999").Value(), "1e999");
  EXPECT_EQ(TQuillonJSONTrue().Value(), "");
}

TEST(Json, MembersAreFoundReadAndTakenOut) {
  TQuillonJSONArray Kept;
  Kept.FOwned = false;
  TQuillonJSONObject Object;
  Object.AddPair("a", 1);
  Object.AddPair("a", "second");
  Object.AddPair("list", TQuillonJSONOwner<TQuillonJSONValue>(&Kept));
  std::int64_t Number = 0;
  std::string Text = "unchanged";
  bool IsOn = false;
  const TQuillonJSONArray* List = nullptr;
  EXPECT_TRUE(Object.Get("a", Number));
  EXPECT_EQ(Number, 1);
  EXPECT_FALSE(Object.Get("a", Text));
  EXPECT_FALSE(Object.Get("A", IsOn));
  EXPECT_TRUE(Object.Get("list", List));
  EXPECT_EQ(List, &Kept);
  EXPECT_EQ(Object.RemovePair("a")->ToString(), "\"a\":1");
  EXPECT_TRUE(Object.Get("a", Text));
  EXPECT_EQ(Text, "second");
  EXPECT_THAT(Object.RemovePair("b"), IsNull());
  EXPECT_THAT(Object.Get(2), IsNull());
}

TEST(Json, WhatParsesAndWhatDoesNot) {
  const std::string Deepest = std::string(QuillonJSONMaxLevels, '[') + std::string(QuillonJSONMaxLevels, ']');
  for (const std::string& Good : {std::string("[1,]"), std::string(" {\"a\" : [ ] }"), std::string("-0.5e+3"),
                                  std::string("0e1"), std::string("\"\\u00E4\""), std::string("null"), Deepest}) {
    EXPECT_THAT(QuillonJson::ParseJSONValue(Good), NotNull()) << Good;
  }
  for (const std::string& Bad :
       {std::string(), std::string("01"), std::string("-"), std::string("1."), std::string("1e"), std::string(".5"),
        std::string("{\"a\":1,}"), std::string("[,]"), std::string("[1,,]"), std::string("[1"), std::string("\"\\x\""),
        std::string("\"\\u12G4\""), std::string("\"a"), std::string("True"), std::string("nul"), std::string("1 "),
        std::string("{a:1}"), "[" + Deepest + "]"}) {
    EXPECT_THAT(QuillonJson::ParseJSONValue(Bad), IsNull()) << Bad;
  }
}

TEST(Json, TextsComeInAnyForm) {
  const auto Text = [](std::string_view ABytes, bool AnIsUtf8) {
    return QuillonJson::ParseJSONValue(ABytes, 0, ABytes.size(), AnIsUtf8)->Value();
  };
  EXPECT_EQ(Text("\"\\ud83d\\ude00\\ud83d\\n\"", false), "😀\uFFFD\n");
  EXPECT_EQ(Text("\"ä€😀\"", true), "ä€😀");
  EXPECT_EQ(Text("\"\xE4\"", false), "ä");
  EXPECT_EQ(Text("\xEF\xBB\xBF\"ä\"", false), "ä");
}

TEST(Json, AnObjectTellsWhereItsTextFails) {
  struct TCase {
    std::string Text;
    std::int64_t Pos;
    std::int64_t Count;
    std::int64_t Result;
  };
  for (const TCase& Case :
       {TCase{R"({"a":1})", 0, 7, 7}, TCase{R"(xx{"a":1}yy)", 2, 7, 9}, TCase{R"({"a":x})", 0, 7, -5},
        TCase{R"({"a":1} )", 0, 8, -7}, TCase{R"({"a":1)", 0, 6, -6}, TCase{"x", 0, 1, -1}, TCase{"{}", 2, 0, -1},
        TCase{"{}", 0, 3, -1}, TCase{"{}", -1, 1, -1}}) {
    TQuillonJSONObject Object;
    EXPECT_EQ(Object.Parse(Case.Text, Case.Pos, Case.Count), Case.Result) << Case.Text;
    EXPECT_EQ(Object.Size(), Case.Result > 0 ? 1U : 0U) << Case.Text;
  }
}

TEST(Json, TheReaderNamesTheByteThatIsWrong) {
  struct TCase {
    std::string Text;
    std::string Message;
  };
  for (const TCase& Case :
       {TCase{"\"\x80\"", "UTF8: Typ kann aus dem Header-Byte an Position 1 nicht ermittelt werden"},
        TCase{"\"\xE2\x82x\"", "UTF8: Unerwartetes Fortsetzungs-Byte in 3-Byte UTF8 an Position 3"},
        TCase{"\"\xED\xA0\x80\"", "UTF8: Unerwartetes Fortsetzungs-Byte in 3-Byte UTF8 an Position 2"},
        TCase{"\"\xF0\x9F\"", "UTF8: Ein Start-Byte ohne ausreichende Anzahl von Fortsetzungs-Bytes an Position 1"}}) {
    try {
      QuillonJson::ParseJSONValue(Case.Text);
      ADD_FAILURE() << Case.Message;
    } catch (const EQuillonJSONError& Error) {
      EXPECT_EQ(Error.what(), Case.Message);
    }
  }
}

}  // namespace
