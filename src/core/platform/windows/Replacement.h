#pragma once

#include <windows.h>

#include <functional>
#include <string>

/// Files that take the place of others, and files that go, also while they are open with the right to rename and remove
/// them left to others. Programs that look at every new file, such as virus scanners, are waited for some moments.
namespace Replacement {

void Rename(const std::string& APath, const std::string& ANewPath, bool DoReplace);
void Remove(const std::string& APath);
/// A call for a file that its replacement in steps has moved out of the way is made again until the new one has its
/// name.
/// @param ACall gives the system's code
/// @return the code of the last call
DWORD AwaitName(const std::wstring& APath, const std::function<DWORD()>& ACall);
/// @throws EQuillonWin32Error for a file that Rename could not replace, as it is open without those rights
void DemandGivesWay(const std::string& APath);

}  // namespace Replacement
