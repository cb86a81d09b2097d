#pragma once

#include <string>
#include <string_view>

#include "JobOptions.h"
#include "uPlandaten/Plan.h"

/// The local data file of a job.
namespace LocalSource {

/// @param AProvider where the data file is: "Server", in any case, for the data server
/// @throws EQuillonException for the data server
void RequireLocal(std::string_view AProvider);

/// @throws EQuillonException "Local Velmora file does not exist."
void RequireFile(const std::string& AFileName);

/// Loads the data file that the settings name.
/// @throws EQuillonException as above, and what the load raises
void Load(TVELPlan& APlan, const TVELSourceOptions& AnOptions);

}  // namespace LocalSource
