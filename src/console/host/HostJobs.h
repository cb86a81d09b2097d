#pragma once

#include <string>
#include <vector>

#include "Jobs.h"

/// The jobs that the console has no command for, each with the settings of a configuration file.
namespace HostJobs {

/// @param AWords the job and its configuration file
/// @throws EQuillonException with a line that tells the usage for any other words, and what the job raises
void Run(const std::vector<std::string>& AWords, TVELGlobals& AGlobals, const TLineSink& AnOutput);

}  // namespace HostJobs
