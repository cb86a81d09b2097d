#pragma once

#include <string>

/// Files that take the place of others, and files that go, also while they are open with the right to rename and remove
/// them left to others. Programs that look at every new file, such as virus scanners, are waited for some moments.
namespace Replacement {

void Rename(const std::string& APath, const std::string& ANewPath, bool DoReplace);
void Remove(const std::string& APath);
/// @throws EQuillonWin32Error for a file that Rename could not replace, as it is open without those rights
void DemandGivesWay(const std::string& APath);

}  // namespace Replacement
