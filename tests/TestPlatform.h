#pragma once

/// What tests need of the operating system.
namespace TestPlatform {

/// @return false where the zone of a process is that of the system, and another one
bool SetLocalZone(const char* AName);

/// Seconds of the processor that this process has taken.
double ProcessorTime();
/// The steps in which that grows.
extern const double ProcessorTimeStep;

/// A code of IsUnsupported.
extern const int UnsupportedError;

}  // namespace TestPlatform
