#include "TestPlatform.h"

#include <time.h>

#include <cerrno>
#include <cstdlib>

bool TestPlatform::SetLocalZone(const char* AName) {
  setenv("TZ", AName, 1);
  tzset();
  return true;
}

const int TestPlatform::UnsupportedError = ENOTSUP;
