#pragma once

#include <memory>
#include <string>

/// Reads the settings of a job: the member "Velmora" of a JSON file. Keys that are missing leave the defaults, unknown
/// ones are ignored. Each settings class stands with its table of keys in a source of its own, which instantiates this.
/// @throws EQuillonException for a value of another JSON type than its key takes, naming key and file, and for a
///         file that cannot be read or holds no such settings
template <class TConfiguration>
std::unique_ptr<TConfiguration> LoadConfiguration(const std::string& AFileName);
