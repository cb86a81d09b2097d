#include "OcfConfiguration.h"

#include <array>

#include "JsonMapping.h"

namespace JsonMapping {

template <>
constexpr std::array Fields<TOcfExportFile>{Field<TOcfExportFile, &TOcfExportFile::FName>("FName")};

template <>
constexpr std::array Fields<TOcfImportFile>{Field<TOcfImportFile, &TOcfImportFile::FName>("FName")};

template <>
constexpr auto Fields<TOcfExportOptions> =
    Join(ServerFields<TOcfExportOptions>,
         std::array{
             Field<TOcfExportOptions, &TOcfExportOptions::FFiles>("FFiles"),
             Field<TOcfExportOptions, &TOcfExportOptions::FOnlyScheduledCourses>("FOnlyScheduledCourses"),
             Field<TOcfExportOptions, &TOcfExportOptions::FOnlyScheduledLessons>("FOnlyScheduledLessons"),
             Field<TOcfExportOptions, &TOcfExportOptions::FSourceFileName>("FSourceFileName"),
             Field<TOcfExportOptions, &TOcfExportOptions::FSourceProvider>("FSourceProvider"),
             Field<TOcfExportOptions, &TOcfExportOptions::FTargetFolderName>("FTargetFolderName"),
         });

template <>
constexpr auto Fields<TOcfImportOptions> =
    Join(ServerFields<TOcfImportOptions>,
         std::array{
             Field<TOcfImportOptions, &TOcfImportOptions::FFiles>("FFiles"),
             Field<TOcfImportOptions, &TOcfImportOptions::FSourceFolderName>("FSourceFolderName"),
             Field<TOcfImportOptions, &TOcfImportOptions::FTargetFileName>("FTargetFileName"),
             Field<TOcfImportOptions, &TOcfImportOptions::FTargetProvider>("FTargetProvider"),
         });

template <>
constexpr std::array Fields<TOcfConfiguration>{
    Field<TOcfConfiguration, &TOcfConfiguration::FOcfExport>("FOcfExport"),
    Field<TOcfConfiguration, &TOcfConfiguration::FOcfImport>("FOcfImport"),
};

}  // namespace JsonMapping

template std::unique_ptr<TOcfConfiguration> LoadConfiguration(const std::string& AFileName);
