#pragma once

#include <functional>
#include <string>

/// The local data file of a job.
namespace LocalSource {

/// @throws EQuillonException "Local Velmora file does not exist.", with the name behind it
void RequireFile(const std::string& AFileName);

/// Does what loads the plan from that file, which must be there; an error that concerns its release names it too.
void Load(const std::string& AFileName, const std::function<void()>& ALoad);

}  // namespace LocalSource
