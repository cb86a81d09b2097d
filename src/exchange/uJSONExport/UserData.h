#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

class TQuillonJSONObject;
class TVELPlanobjekt;

/// Whom a document is for. A policy is a number of the product's user administration.
class TVELJSONUserData {
 public:
  std::vector<TVELPlanobjekt*> UserProfils;  ///< the object of each policy, in their order; null for none
  std::vector<std::int32_t> UserPolicies;
  std::int32_t LogButtonPolicy = -1;
  std::int32_t TeacherNamesPolicy = 0;  ///< 2 shows the names of teachers

  bool HasProfile(std::int32_t APolicy) const;
  /// "student", "class", "teacher", "team", "teammaster", "staff" or "master"; "guest" for all others.
  static std::string_view GetProfile(std::int32_t AUserPolicy);
  /// True for the policies of those who see the teachers of their teams.
  static bool IsOfTeam(std::int32_t APolicy);
  /// The object of the policy at the place; null for none.
  TVELPlanobjekt* Home(std::size_t AnIndex) const {
    return AnIndex < UserProfils.size() ? UserProfils[AnIndex] : nullptr;
  }
  /// Adds "user", or for another number of policies than one the list "users", as written text.
  void Write_User(TQuillonJSONObject& AParentNode) const;
};
