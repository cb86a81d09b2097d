#include <array>
#include <iostream>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "QuillonNumbers.h"
#include "QuillonRemoteServices/StorageService.h"
#include "data/PlainContent.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Raeume.h"

// Two users at work on one plan of a data server, each at a host of their own.

namespace {

class THost {
 public:
  THost(std::uint16_t APort, const std::string& AUser, const std::string& APassword, const TGUID& AFile)
      : FFile(AFile) {
    FChannel.SetHost("127.0.0.1");
    FChannel.SetPort(APort);
    FClient.FUserName = AUser;
    FClient.FPassword = APassword;
    FClient.Login();
    Load();
  }

  void Load() { FService.Load(FFile, "Plan"); }
  /// @return the result as a word, with the server's message where there is one
  std::string Synchronize() {
    constexpr std::array<const char*, 4> Words = {"nothing", "new", "conflict", "out of sync"};
    std::string Message;
    const std::string Word = Words[FService.Synchronize(Message)];
    return Message.empty() ? Word : Word + ": " + Message;
  }
  void Store() { FService.Store(); }
  void LogOff() { FClient.Logoff(); }
  TVELPlan& Plan() { return *FPlan; }
  std::string Content() { return PlainContent(*FPlan); }

 private:
  const TGUID FFile;
  TQuillonTCPRemoteChannel FChannel;
  TQuillonRemoteClient FClient{&FChannel};
  const TQuillonDataHandle<TVELPlan> FPlan = QuillonDataObjects::CreateStorage<TVELPlan>();
  TQuillonRemoteStorageServiceProxy FService{FClient, *FPlan};
};

void Require(bool AHolds, const std::string& AText) {
  if (!AHolds) {
    throw EQuillonException(AText);
  }
}

/// Does something to the rooms of a plan.
void Act(TVELPlan& APlan, std::minstd_rand& ARandom) {
  TVELRaumliste& Rooms = APlan.FRaeume;
  const auto Draw = [&](int ACount) { return static_cast<int>(ARandom() % static_cast<unsigned>(ACount)); };
  TVELRaum* Room = Rooms.GetItem(Draw(Rooms.Count()));
  switch (Draw(4)) {
    case 0:
      Room->Set(Room->FBezeichnung, "Raum " + std::to_string(ARandom()));
      break;
    case 1:
      Room = QuillonDataObjects::Create<TVELRaum>(&APlan);
      Room->Set(Room->FKuerzel, "Neu" + std::to_string(ARandom()));
      Rooms.Add(Room);
      break;
    case 2:
      Rooms.Move(Rooms.IndexOf(Room), Draw(Rooms.Count()));
      break;
    default:
      if (Room->FKuerzel.starts_with("Neu")) {
        Rooms.Remove(Room);
      }
  }
}

/// Each works while the other looks on, and both have the same then.
void WorkInTurn(THost& AnA, THost& AB, unsigned ASeed) {
  constexpr int Turns = 10;
  constexpr int Steps = 20;
  std::array<THost*, 2> Hosts = {&AnA, &AB};
  std::minstd_rand Random(ASeed);
  for (int Turn = 0; Turn < Turns; ++Turn) {
    std::swap(Hosts[0], Hosts[1]);
    for (int Step = 0; Step < Steps; ++Step) {
      Act(Hosts[0]->Plan(), Random);
    }
    Require(Hosts[0]->Synchronize() == "nothing", "the changes are refused");
    Require(Hosts[1]->Synchronize() == "new", "the changes do not come");
    Require(Hosts[0]->Content() == Hosts[1]->Content(), "the copies differ");
  }
}

/// @return the results of both, in the order of their coming
std::vector<std::string> MeetAtOneRoom(THost& AnA, THost& AB) {
  std::vector<std::string> Results;
  const auto Rename = [](THost& AHost, const std::string& AName) {
    TVELRaum& Room = *AHost.Plan().FRaeume.GetItem(0);
    Room.Set(Room.FBezeichnung, AName);
  };
  Rename(AnA, "Aula");
  Rename(AB, "Bad");
  Results.push_back(AnA.Synchronize());
  Results.push_back(AB.Synchronize());
  AB.Load();
  Results.push_back(AB.Synchronize());
  Rename(AB, "Bad");
  Results.push_back(AB.Synchronize());
  Results.push_back(AnA.Synchronize());
  Rename(AnA, "Chor");
  AB.Store();
  Results.push_back(AnA.Synchronize());
  return Results;
}

int Run(const std::vector<std::string>& AWords) {
  Require(AWords.size() == 5, "Usage: velmora-hosts PORT USER PASSWORD FILE-ID SEED");
  uPlandaten::RegisterClasses(TQuillonDataClassRegistry::Instance());
  const auto Number = [](const std::string& AText) {
    return static_cast<unsigned>(QuillonNumbers::ParseInteger(AText, 0, std::numeric_limits<std::int32_t>::max()));
  };
  const auto Port = static_cast<std::uint16_t>(Number(AWords[0]));
  const TGUID File = QuillonGuid::Parse(AWords[3]);
  THost A(Port, AWords[1], AWords[2], File);
  THost B(Port, AWords[1], AWords[2], File);
  WorkInTurn(A, B, Number(AWords[4]));
  THost Third(Port, AWords[1], AWords[2], File);
  Require(Third.Content() == A.Content(), "the server has another plan than the hosts");
  for (const std::string& Result : MeetAtOneRoom(A, B)) {
    std::cout << Result << '\n';
  }
  for (THost* Host : {&A, &B, &Third}) {
    Host->LogOff();
  }
  return 0;
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
