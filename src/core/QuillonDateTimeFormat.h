#pragma once

#include <array>
#include <string>
#include <string_view>

/// How people write dates and times; the settings of the product's home unless changed.
struct TQuillonFormatSettings {
  char DateSeparator = '.';
  char TimeSeparator = ':';
  std::string ShortDateFormat = "dd/mm/yyyy";
  std::string LongTimeFormat = "hh:nn:ss";
  std::array<std::string, 12> ShortMonthNames = {"Jan", "Feb", "Mrz", "Apr", "Mai", "Jun",
                                                 "Jul", "Aug", "Sep", "Okt", "Nov", "Dez"};
  std::array<std::string, 12> LongMonthNames = {"Januar", "Februar", "März",      "April",   "Mai",      "Juni",
                                                "Juli",   "August",  "September", "Oktober", "November", "Dezember"};
  /// The week begins with Sunday.
  std::array<std::string, 7> ShortDayNames = {"So", "Mo", "Di", "Mi", "Do", "Fr", "Sa"};
  std::array<std::string, 7> LongDayNames = {"Sonntag",    "Montag",  "Dienstag", "Mittwoch",
                                             "Donnerstag", "Freitag", "Samstag"};
};

namespace QuillonDateTimeFormat {

/// Fills a picture in: "d" and "dd" day, "ddd" and "dddd" its name; "m" and "mm" month, "mmm" and "mmmm" its name;
/// "yy" year of the century, "yyyy" year, more of them for more digits; "h", "n", "s" and "z" hour, minute, second and
/// millisecond, each letter a digit at least. "m" straight behind hours means minutes, "/" and ":" are the separators
/// of the settings. Quoted text and everything else stands for itself.
std::string Format(std::string_view AFormat, double AValue, const TQuillonFormatSettings& ASettings = {});

/// Reads a date in the order of the short date's day, month and year, and a time behind a blank, if there is one.
/// A year of two digits is the one nearest to the present.
/// @throws EQuillonConvertError for any other text
double Parse(std::string_view AText, const TQuillonFormatSettings& ASettings = {});

}  // namespace QuillonDateTimeFormat
