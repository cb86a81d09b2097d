#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace uOstrel {

struct TCatalog;

/// The file that marks a set as complete.
inline constexpr std::string_view ManifestFile = "_Manifest.csv";

/// The files of a set that are not those of the catalogs.
inline constexpr std::array PlainFiles = {ManifestFile,
                                          std::string_view("Announcements.csv"),
                                          std::string_view("Courses.csv"),
                                          std::string_view("Departments.csv"),
                                          std::string_view("Holidays.csv"),
                                          std::string_view("LessonGaps.csv"),
                                          std::string_view("RoomAbsences.csv"),
                                          std::string_view("Rooms.csv"),
                                          std::string_view("ScheduledLessons.csv"),
                                          std::string_view("SchoolClassAbsences.csv"),
                                          std::string_view("SchoolClasses.csv"),
                                          std::string_view("StudentCourseAttendances.csv"),
                                          std::string_view("StudentSchoolClassAttendances.csv"),
                                          std::string_view("Students.csv"),
                                          std::string_view("Subjects.csv"),
                                          std::string_view("SubstituteLessons.csv"),
                                          std::string_view("TeacherAbsences.csv"),
                                          std::string_view("TeacherCourseAttendances.csv"),
                                          std::string_view("Teachers.csv"),
                                          std::string_view("TimeFrames.csv")};

/// The name of a file of the set. A text that is none of the table does not compile.
class TFileName {
 public:
  template <std::size_t Size>
  consteval TFileName(const char (&AName)[Size])  // NOLINT(google-explicit-constructor)
      : FStem(AName, Size - 1 - Extension.size()) {
    if (std::find(PlainFiles.begin(), PlainFiles.end(), AName) == PlainFiles.end()) {
      throw "no file of the set";
    }
  }
  explicit TFileName(const TCatalog& ACatalog);

  std::string Text() const { return std::string(FStem).append(Extension); }

 private:
  static constexpr std::string_view Extension = ".csv";

  std::string_view FStem;
};

/// All names that a set can have; no others are touched.
std::vector<std::string> AllFileNames();

}  // namespace uOstrel
