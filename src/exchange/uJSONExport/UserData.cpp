#include "uJSONExport/UserData.h"

#include <algorithm>
#include <array>

#include "QuillonText.h"
#include "uJSONExport/JSONExport.h"
#include "uJSONExport/Nodes.h"
#include "uPlandaten/Klassen.h"
#include "uPlandaten/Schueler.h"

namespace {

struct TProfile {
  std::int32_t Policy;
  std::string_view Name;
};

constexpr std::int32_t TeamPolicy = 6;
constexpr std::int32_t TeamMasterPolicy = 7;
constexpr std::int32_t LogButtonShown = 2;

constexpr std::array<TProfile, 8> Profiles = {{{3, "student"},
                                               {4, "class"},
                                               {5, "teacher"},
                                               {14, "teacher"},
                                               {TeamPolicy, "team"},
                                               {TeamMasterPolicy, "teammaster"},
                                               {8, "staff"},
                                               {9, "master"}}};

void WriteHome(uJSONExport::TNode& ANode, const TVELPlanobjekt* AHome) {
  if (AHome != nullptr) {
    ANode.Reference("homeId", AHome);
    ANode.Text("homeType", QuillonText::ToLower(AHome->GetPublicClassName()));
  }
}

void WriteStudent(uJSONExport::TNode& ANode, const TVELPlanobjekt* AHome) {
  if (const auto* const Student = uDataObjects::As<TVELSchueler>(AHome)) {
    ANode.Text("studentNo", Student->FSchuelerNr);
    ANode.Text("lastName", Student->FNachname);
    ANode.Text("firstName", Student->FVorname);
    ANode.Text("classCode", uJSONExport::CodeOf(Student->FKlasse));
  }
}

}  // namespace

bool TVELJSONUserData::HasProfile(std::int32_t APolicy) const {
  return std::ranges::find(UserPolicies, APolicy) != UserPolicies.end();
}

std::string_view TVELJSONUserData::GetProfile(std::int32_t AUserPolicy) {
  const auto* const Found = std::ranges::find(Profiles, AUserPolicy, &TProfile::Policy);
  return Found != Profiles.end() ? Found->Name : "guest";
}

bool TVELJSONUserData::IsOfTeam(std::int32_t APolicy) { return APolicy == TeamPolicy || APolicy == TeamMasterPolicy; }

void TVELJSONUserData::Write_User(TQuillonJSONObject& AParentNode) const {
  const bool IsOne = UserPolicies.size() == 1;
  uJSONExport::TNodes Users;
  for (std::size_t I = 0; I < UserPolicies.size(); ++I) {
    uJSONExport::TNode User;
    User.Text("profile", GetProfile(UserPolicies[I]));
    WriteHome(User, Home(I));
    if (IsOne) {
      User.Number("policy", UserPolicies[I], 0);
      User.True("logbutton", LogButtonPolicy == LogButtonShown);
    }
    WriteStudent(User, Home(I));
    if (IsOne) {
      AParentNode.AddPair("user", User.Take());
      return;
    }
    Users.Add(User);
  }
  if (!Users.IsEmpty()) {
    AParentNode.AddPair("users", Users.Take());
  }
}
