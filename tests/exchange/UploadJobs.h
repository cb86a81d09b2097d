#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "Globals.h"
#include "core/TestFiles.h"
#include "exchange/OcfExport.h"
#include "uIServ.h"
#include "uSdui.h"

/// Answers the calls of an upload one by one, and fails from the one on that has no answer.
class TAnsweringClient final : public TQuillonHttpClient {
 public:
  TQuillonHttpResponse Post(const TQuillonHttpRequest& ARequest) override {
    Requests.push_back(ARequest);
    if (Requests.size() > Answers.size()) {
      throw EQuillonHttpError("no answer, and the pin is 0815-4711");
    }
    return Answers[Requests.size() - 1];
  }

  std::vector<TQuillonHttpResponse> Answers;
  std::vector<TQuillonHttpRequest> Requests;  ///< the contents of their forms are gone
};

class TMemoryState final : public TVELUploadState {
 public:
  bool IsUnchanged(const std::string& AName, std::int64_t AVersion) override {
    const auto Found = Versions.find(AName);
    return Found != Versions.end() && Found->second == AVersion;
  }
  void Store(const std::string& AName, std::int64_t AVersion) override { Versions[AName] = AVersion; }

  std::map<std::string, std::int64_t> Versions;
};

/// Uploads of a small plan of version 7, with settings in a file.
class TUploadJobs {
 public:
  static constexpr const char* Pin = "0815-4711";

  TUploadJobs() {
    std::ofstream(FFolder.Path("plan.velmora")) << Document("<FileVersion>7</FileVersion>" + Settings());
    const std::string Source = R"("sourceFileName": ")" + FFolder.Path("plan.velmora") + "\"}";
    std::ofstream(FFolder.Path("config.json"))
        << R"({"Velmora": {"sduiExport": {"SDUIPIN": "0815-4711", "fSduiUrl": "https://sdui.invalid/", )" << Source
        << R"(, "iServExport": {"iServUrl": "https://iserv.invalid", "iServApiToken": "0815-4711", )" << Source << "}}";
  }

  /// Uploads with these answers; the requests and what is kept between runs can be looked at then.
  template <class TWriter>
  bool Upload(std::vector<TQuillonHttpResponse> AnAnswers) {
    Client.Answers = std::move(AnAnswers);
    Client.Requests.clear();
    TWriter Writer(FGlobals, FFolder.Path("config.json"), Client, State);
    Writer.LoadVelFile();
    return Writer.UploadVelFile();
  }

  TAnsweringClient Client;
  TMemoryState State;

 private:
  TemporaryFolder FFolder;
  TVELGlobals FGlobals;
};
