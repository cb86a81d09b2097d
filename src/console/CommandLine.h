#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The program's arguments: one command, options with a value, switches without.
///
/// An option is written `-name value`, `-name:value` or `-namevalue`; "/" serves as "-" does. Case does not count.
class TCommandLine {
 public:
  /// @param AnArguments the arguments behind the program's name
  /// @param APathsBeginWithSlash where true, an argument that begins with "/" and has a second "/" ahead of any ":"
  ///        is a path and never a switch: "/srv/plan.velmora" is one, "/c:/etc/cfg.json" is none
  TCommandLine(std::vector<std::string> AnArguments, bool APathsBeginWithSlash);

  /// The first argument, whatever it is; none without arguments.
  std::optional<std::string_view> Command() const;

  /// Looks for the first switch that begins with the name and takes its value: the rest of the switch without one
  /// leading ":", or else the next argument if that is no switch, or else nothing. As the name's length alone counts,
  /// a short name also catches a longer option that stands ahead: "s" finds "-sn" with the value "n".
  /// @param AValue the value; empty unless the option is found with one
  /// @return whether the option is found
  bool FindOption(std::string_view AName, std::string& AValue) const;

  /// Whether some switch has exactly this name.
  bool FindSwitch(std::string_view AName) const;

 private:
  bool IsSwitch(std::string_view AnArgument) const;

  std::vector<std::string> FArguments;
  bool FPathsBeginWithSlash;
};
