#include "TestPlatform.h"

#include <time.h>

#include <cerrno>
#include <cstdlib>
#include <ctime>

bool TestPlatform::SetLocalZone(const char* AName) {
  setenv("TZ", AName, 1);
  tzset();
  return true;
}

double TestPlatform::ProcessorTime() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

const double TestPlatform::ProcessorTimeStep = 1e-6;

const int TestPlatform::UnsupportedError = ENOTSUP;
