#include "LocalSource.h"

#include "QuillonFileSystem.h"

namespace LocalSource {

void RequireFile(const std::string& AFileName) {
  if (!TQuillonFileSystem::IsFile(AFileName)) {
    throw EQuillonException("Local Velmora file does not exist.");
  }
}

}  // namespace LocalSource
