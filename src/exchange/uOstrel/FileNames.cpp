#include "uOstrel/FileNames.h"

#include "uOstrel/Columns.h"

namespace uOstrel {

TFileName::TFileName(const TCatalog& ACatalog) : FStem(ACatalog.Name) {}

std::vector<std::string> AllFileNames() {
  std::vector<std::string> Names(PlainFiles.begin(), PlainFiles.end());
  for (const TCatalog& Catalog : Catalogs()) {
    Names.push_back(TFileName(Catalog).Text());
  }
  return Names;
}

}  // namespace uOstrel
