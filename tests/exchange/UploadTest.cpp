#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "exchange/UploadJobs.h"

namespace {

using namespace std::chrono_literals;

const TQuillonHttpResponse Login{.Status = 200, .StatusText = "OK", .Body = R"({"data": {"token": "abc-1"}})"};
const TQuillonHttpResponse Good{.Status = 200, .StatusText = "OK", .Body = ""};

TEST(Upload, SendsWhatHasChangedWithTheTimeOutsOfItsService) {
  TUploadJobs Jobs;
  EXPECT_TRUE(Jobs.Upload<TSduiWriter>({Login, Good}));
  const auto& [First, Second] = std::tie(Jobs.Client.Requests[0], Jobs.Client.Requests[1]);
  EXPECT_EQ(First.Url + " " + Second.Url,
            "https://sdui.invalid/auth/login https://sdui.invalid/upload/velmora-6/velmora-upload-1.0.0");
  EXPECT_TRUE(Second.TimeOuts.Connect == 1'200'000ms && Second.TimeOuts.Stall == 1'200s);
  EXPECT_TRUE(Jobs.Upload<TIServWriter>({Good}));
  const auto& TimeOuts = Jobs.Client.Requests.at(0).TimeOuts;
  EXPECT_TRUE(TimeOuts.Connect == 60s && TimeOuts.Stall == 5min);
  EXPECT_EQ(Jobs.State.Versions,
            (std::map<std::string, std::int64_t>{{"fileversion.iserv", 7}, {"fileversion.sdui", 7}}));
  EXPECT_FALSE(Jobs.Upload<TSduiWriter>({Login}));
  EXPECT_FALSE(Jobs.Upload<TIServWriter>({}));
}

TEST(Upload, KeepsNothingWhenACallFails) {
  TUploadJobs Jobs;
  const auto ErrorOf = [](const auto& AnUpload) -> std::string {
    try {
      AnUpload();
      return "no error";
    } catch (const EQuillonHttpError& Error) {
      return Error.what();
    }
  };
  const std::string Error = "no answer, and the pin is ***";
  EXPECT_EQ(ErrorOf([&] { Jobs.Upload<TSduiWriter>({}); }), Error);
  EXPECT_EQ(ErrorOf([&] { Jobs.Upload<TSduiWriter>({Login}); }), Error);
  EXPECT_EQ(ErrorOf([&] { Jobs.Upload<TIServWriter>({}); }), Error);
  EXPECT_TRUE(Jobs.State.Versions.empty());
}

TEST(Upload, ErrorsTellTheStatusOfTheService) {
  TUploadJobs Jobs;
  const TQuillonHttpResponse Refused{.Status = 422, .StatusText = "No 0815-4711", .Body = R"({"message": 81.5})"};
  try {
    Jobs.Upload<TIServWriter>({Refused});
    FAIL();
  } catch (const EIServApiError& Error) {
    EXPECT_EQ(Error.FStatusText + " " + std::to_string(Error.FStatusCode) + Error.what(), "81.5 422[IServ] 81.5");
  }
  try {
    Jobs.Upload<TSduiWriter>({Login, Refused});
    FAIL();
  } catch (const ESduiApiError& Error) {
    EXPECT_EQ(Error.FStatusText + " " + std::to_string(Error.FStatusCode) + Error.what(), "No *** 422[Sdui] No ***");
  }
}

TEST(Upload, SecretsAreMaskedInEveryNotation) {
  TVELSecrets Secrets;
  Secrets.Hide("p\"1N\u00e4/+ 7<");
  for (const std::string Told : {"P\"1N\u00c4/+ 7<", "p\\\"1n\\u00E4\\/+ 7<", "p\\\\\\\"1n\\\\u00e4/+ 7<",
                                 "p%221N%C3%a4%2F%2B+7%3C", "p&quot;1N&#228;/+&#x20;7&lt;", "p\"1N\xE4/+\r\n7<",
                                 "p\"1N%E4%2f+ 7<", "cCIxTsOkLysgNzw=", "cCIxTsOkLysgNzw"}) {
    EXPECT_THAT(Secrets.Clean("no " + Told + " here"), testing::MatchesRegex("no \\*\\*\\*=? here")) << Told;
  }
  TVELSecrets Other;
  Other.Hide("s3rv3r");
  std::string Often;
  for (int Time = 0; Time < 1000; ++Time) {
    Often += "s3rv3r\n";
  }
  EXPECT_THAT(Other.Clean(Often), testing::Not(testing::HasSubstr("s3")));
  EXPECT_THAT(Other.Clean(std::string(4090, '\n') + Often), testing::Not(testing::HasSubstr("s3")));
  // Time does not grow with the product of the lengths.
  TVELSecrets Long;
  Long.Hide(std::string(1'000'000, 'a'));
  EXPECT_EQ(Long.Clean(std::string(4'000'000, 'A')), "***");
  EXPECT_EQ(Other.Clean("100% & \\ + \xC2\x9B[31m %41 &lt; \\u0041"), "100% & \\ +  [31m %41 &lt; \\u0041");
}

}  // namespace
