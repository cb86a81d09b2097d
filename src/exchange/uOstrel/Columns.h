#pragma once

#include <span>
#include <string_view>

#include "uOstrel/CsvFile.h"

class TVELFach;
class TVELKalendereintrag;
class TVELKlasse;
class TVELKlassenfehlzeit;
class TVELLehrer;
class TVELLehrerfehlzeit;
class TVELMitteilung;
class TVELRaum;
class TVELRaumfehlzeit;
class TVELSchluessel;
class TVELSchluesselverzeichnis;
class TVELSchueler;
class TVELTeam;
class TVELVerzeichnisse;
class TVELZeitrahmen;

/// The columns of the OCF files, in their order.
namespace uOstrel {

/// A catalog: a file of its own for one key directory.
struct TCatalog {
  std::string_view Name;  ///< of the file, without extension
  TVELSchluesselverzeichnis& (*Keys)(TVELVerzeichnisse& ADirectories);
};

/// The catalogs in writing order.
std::span<const TCatalog> Catalogs();

std::span<const TColumn<TVELSchluessel>> CatalogColumns();
std::span<const TColumn<TVELKalendereintrag>> HolidayColumns();
std::span<const TColumn<TVELZeitrahmen>> TimeFrameColumns();
std::span<const TColumn<TVELTeam>> DepartmentColumns();
std::span<const TColumn<TVELRaum>> RoomColumns();
std::span<const TColumn<TVELFach>> SubjectColumns();
std::span<const TColumn<TVELLehrer>> TeacherColumns();
std::span<const TColumn<TVELSchueler>> StudentColumns();
std::span<const TColumn<TVELKlasse>> SchoolClassColumns();
std::span<const TColumn<TVELRaumfehlzeit>> RoomAbsenceColumns();
std::span<const TColumn<TVELKlassenfehlzeit>> SchoolClassAbsenceColumns();
std::span<const TColumn<TVELLehrerfehlzeit>> TeacherAbsenceColumns();
std::span<const TColumn<TVELMitteilung>> AnnouncementColumns();

}  // namespace uOstrel
