#include "UploadConfiguration.h"

#include <array>

#include "JsonMapping.h"

namespace JsonMapping {

template <>
constexpr auto Fields<TSduiExportOptions> =
    Join(SourceFields<TSduiExportOptions>, std::array{
                                               Field<TSduiExportOptions, &TSduiExportOptions::FSduiPin>("FSduiPin"),
                                               Field<TSduiExportOptions, &TSduiExportOptions::FSduiUrl>("FSduiUrl"),
                                           });

template <>
constexpr std::array Fields<TSduiConfiguration>{
    Field<TSduiConfiguration, &TSduiConfiguration::FSduiExport>("FSduiExport")};

template <>
constexpr auto Fields<TIServExportOptions> =
    Join(SourceFields<TIServExportOptions>,
         std::array{
             Field<TIServExportOptions, &TIServExportOptions::FIServUrl>("FIServUrl"),
             Field<TIServExportOptions, &TIServExportOptions::FIServApiToken>("FIServApiToken"),
         });

template <>
constexpr std::array Fields<TIServConfiguration>{
    Field<TIServConfiguration, &TIServConfiguration::FIServExport>("FIServExport")};

}  // namespace JsonMapping

template std::unique_ptr<TSduiConfiguration> LoadConfiguration(const std::string& AFileName);
template std::unique_ptr<TIServConfiguration> LoadConfiguration(const std::string& AFileName);
