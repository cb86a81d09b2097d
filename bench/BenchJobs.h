#pragma once

#include <cstdint>
#include <string>

/// The jobs that are measured.
namespace Bench {

/// Makes the school of a scale and saves it.
void MakeSchool(const std::string& AFileName, int AScale);
/// Saves the school of scale 1 with ACount further substitutions over the school year, at the times of lessons, each
/// fourth of them with an absence of the class.
void MakeChangedSchool(const std::string& AFileName, int ACount);

/// Reads a file into memory and parses it, with the XML library's default options.
/// @returns the file's length in bytes
std::uint64_t Parse(const std::string& AFileName);
/// The same with the options of the program's reader of whole documents, which leave the least to do.
std::uint64_t ParseWithReaderOptions(const std::string& AFileName);

/// Loads a plan.
/// @returns the number of its objects
std::uint64_t Load(const std::string& AFileName);

/// Loads a plan from its binary form, which lies beside the data file, or is made there first.
std::uint64_t LoadBinary(const std::string& AFileName);

/// Saves a plan that was loaded before the clock starts, to another file.
/// @returns the file's length in bytes
std::uint64_t SaveXML(const std::string& AFileName);
std::uint64_t SaveBinary(const std::string& AFileName);

/// Takes a snapshot in memory of a plan that was loaded before the clock starts.
/// @returns 0
std::uint64_t Snapshot(const std::string& AFileName);

/// Runs the program's export: load and writing of all files.
/// @returns 0
/// @throws std::runtime_error where the job fails, as those below
std::uint64_t Export(const std::string& AFileName, const std::string& AFolder);

/// The same from the binary form of the file, which is made first if it does not lie beside it.
std::uint64_t ExportBinary(const std::string& AFileName, const std::string& AFolder);
/// The same from a data server on this machine.
std::uint64_t ExportFromServer(const std::string& AFileName, const std::string& AFolder);

/// Imports an OCF set into the file and saves it.
std::uint64_t Import(const std::string& AFileName, const std::string& AFolder);

/// Publishes the school as the host program does: load, document, file.
/// @param AForm "dated", with changes and absences, or "undated"
/// @returns the document's length in bytes
std::uint64_t Publish(const std::string& AFileName, const std::string& AForm);

/// Gives the objects of the file new identifiers and saves it.
std::uint64_t NewGuids(const std::string& AFileName);

}  // namespace Bench
