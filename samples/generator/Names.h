#pragma once

#include <span>
#include <string>
#include <string_view>

/// What people, places and texts of the generated schools are made of.
namespace SchoolGenerator {

extern const std::span<const std::string_view> GirlNames;
extern const std::span<const std::string_view> BoyNames;
extern const std::span<const std::string_view> Surnames;
extern const std::span<const std::string_view> Streets;
extern const std::span<const std::string_view> Towns;
/// Remarks with all that makes text hard: quotes, separators, line breaks, markup.
extern const std::span<const std::string_view> Remarks;

/// Lower case without umlauts and blanks, for user names and mail addresses.
std::string PlainName(std::string_view AName);

}  // namespace SchoolGenerator
