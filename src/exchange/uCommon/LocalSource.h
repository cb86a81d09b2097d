#pragma once

#include <string>

/// The local data file of a job.
namespace LocalSource {

/// @throws EQuillonException "Local Velmora file does not exist."
void RequireFile(const std::string& AFileName);

}  // namespace LocalSource
