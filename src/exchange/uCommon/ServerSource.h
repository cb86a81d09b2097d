#pragma once

#include <string>
#include <string_view>

#include "Globals.h"
#include "JobOptions.h"

/// The data file of a job on the data server. Each operation is a session of its own: log in, ask for the right, move
/// the plan, log off. What goes wrong after the login ends the job, without a logoff; nothing is tried again.
///
/// No error repeats the password, whatever the server says.
namespace ServerSource {

/// @param AProvider where the data file is: "Server", in any case, for the data server
bool IsServer(std::string_view AProvider);

/// The place of a data file, for people: its name, or "host:port {id}" of one on the data server.
std::string PlaceOf(std::string_view AProvider, const TVELServerOptions& AnOptions, const std::string& AFileName);

/// @throws EQuillonConvertError, ahead of all else, for settings whose file id is no GUID; EQuillonException "Cannot
///   open Velmora file. No access rights."; and what the client and the load raise
void Load(TVELGlobals& AGlobals, const TVELServerOptions& AnOptions);

/// As Load, with "Cannot store Velmora file. No access rights.". Every other error once there is a connection to be
/// made ends in a sentence that tells whether the server has confirmed the store.
void Store(TVELGlobals& AGlobals, const TVELServerOptions& AnOptions);

}  // namespace ServerSource
