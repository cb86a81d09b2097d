#include <array>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "QuillonDataObjects/ChangeLog.h"
#include "QuillonDataObjects/Conflict.h"
#include "QuillonFileReplacement.h"
#include "QuillonIO.h"
#include "model/RandomUser.h"
#include "uPlandaten/Plan.h"

// Takes a plan from one form of its file into another, for tests that look at both with other means.

namespace {

struct TForm {
  std::string_view Extension;
  void (*Load)(TVELPlan& APlan, TQuillonStream& AStream);
  void (*Save)(TVELPlan& APlan, TQuillonStream& AStream);
};

void LoadXML(TVELPlan& APlan, TQuillonStream& AStream) { APlan.LoadFromXML(QuillonIO::ReadIntoBuffer(AStream), "XML"); }

void SaveXML(TVELPlan& APlan, TQuillonStream& AStream) { AStream.Write(APlan.SaveToXML()); }

constexpr std::array<TForm, 5> Forms = {{
    {".velmora", LoadXML, SaveXML},
    {".xml", LoadXML, SaveXML},
    {".bin", [](TVELPlan& APlan, TQuillonStream& AStream) { APlan.LoadFromBinStream(AStream); },
     [](TVELPlan& APlan, TQuillonStream& AStream) { APlan.SaveToBinStream(AStream); }},
    {".z", [](TVELPlan& APlan, TQuillonStream& AStream) { APlan.LoadFromZIPStream(AStream); },
     [](TVELPlan& APlan, TQuillonStream& AStream) { APlan.SaveToZIPStream(AStream); }},
    {".snapshot", [](TVELPlan& APlan, TQuillonStream& AStream) { APlan.LoadFromMemorySnapshot(AStream); },
     [](TVELPlan& APlan, TQuillonStream& AStream) { APlan.SaveToMemorySnapshot(AStream); }},
}};

const TForm& FormOf(std::string_view AFileName) {
  for (const TForm& Form : Forms) {
    if (AFileName.ends_with(Form.Extension)) {
      return Form;
    }
  }
  throw EQuillonException("no form is known for " + std::string(AFileName));
}

using TWords = std::vector<std::string>;

void Load(TVELPlan& APlan, const std::string& AFileName) {
  TQuillonFileStream Stream(AFileName, fomOpenRead, famShareDenyNone);
  FormOf(AFileName).Load(APlan, Stream);
}

void Save(TVELPlan& APlan, const std::string& AFileName) {
  TQuillonMemoryStream Stream;
  FormOf(AFileName).Save(APlan, Stream);
  QuillonIO::ReplaceFile(AFileName, Stream.Content());
}

int Convert(TVELPlan& APlan, const TWords& AWords) {
  Load(APlan, AWords[0]);
  Save(APlan, AWords[1]);
  return 0;
}

/// Plays a log back on a plan and saves the plan, whether it has taken the log or not.
int Play(TVELPlan& APlan, const TWords& AWords) {
  Load(APlan, AWords[0]);
  TQuillonDataChangeLog Log;
  TQuillonFileStream Stream(AWords[1], fomOpenRead, famShareDenyNone);
  Log.LoadFromStream(Stream);
  try {
    Log.Playback(APlan);
  } catch (const EQuillonDataConflict& Conflict) {
    std::cout << "conflict " << static_cast<int>(Conflict.FConflictType) << ' ' << Conflict.what() << '\n';
    Save(APlan, AWords[2]);
    return 3;
  }
  Save(APlan, AWords[2]);
  return 0;
}

/// Edits a plan at random and saves it with the log of that.
int Record(TVELPlan& APlan, const TWords& AWords) {
  Load(APlan, AWords[0]);
  const auto Other = QuillonDataObjects::CreateStorage<TVELPlan>();
  Load(*Other, AWords[0]);
  APlan.ChangeLog().FUserName = TQuillonUserName("Anna");
  APlan.ChangeLog().Activate();
  TRandomUser User(APlan, *Other, static_cast<unsigned>(std::stoul(AWords[1])));
  for (auto Left = std::stoul(AWords[2]); Left > 0; --Left) {
    User.Act();
  }
  Save(APlan, AWords[3]);
  TQuillonMemoryStream Log;
  APlan.ChangeLog().SaveToStream(Log);
  QuillonIO::ReplaceFile(AWords[4], Log.Content());
  return 0;
}

struct TCommand {
  std::string_view Name;
  std::size_t Words;
  int (*Run)(TVELPlan& APlan, const TWords& AWords);
};

constexpr std::array<TCommand, 3> Commands = {{{"convert", 2, Convert}, {"play", 3, Play}, {"record", 5, Record}}};

int Run(const TWords& AWords) {
  uPlandaten::RegisterClasses(TQuillonDataClassRegistry::Instance());
  const auto Plan = QuillonDataObjects::CreateStorage<TVELPlan>();
  for (const TCommand& Command : Commands) {
    if (!AWords.empty() && AWords.front() == Command.Name && AWords.size() == Command.Words + 1) {
      return Command.Run(*Plan, {AWords.begin() + 1, AWords.end()});
    }
  }
  throw EQuillonException(
      "Usage: velmora-forms convert IN OUT | play STORAGE LOG OUT | record STORAGE SEED COUNT OUT LOG");
}

}  // namespace

int main(int ACount, char** AValues) {
  try {
    return Run({AValues + 1, AValues + ACount});
  } catch (const std::exception& Error) {
    std::cout << "[Error] " << Error.what() << '\n';
    return 1;
  }
}
