#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "core/TestFiles.h"
#include "uOstrel/FileSet.h"

/// Sets of up to three files; each holds what the set is called.
class FileSets : public testing::Test {
 protected:
  void Write(const std::string& ASet, const std::vector<std::string>& ANames, std::chrono::milliseconds ATimeOut = {}) {
    uOstrel::TFileSet Set(FFolder.Path(""), {"a", "b", "c", "mark"}, "mark", ATimeOut);
    for (const std::string& Name : ANames) {
      TQuillonStream& File = Set.Begin(Name);
      File.Write(ASet);
      Set.End(File);
    }
    Set.Place();
  }
  std::string Content(const std::string& AName) const { return QuillonIO::ReadWholeFile(FFolder.Path(AName)); }

  TemporaryFolder FFolder;
};
