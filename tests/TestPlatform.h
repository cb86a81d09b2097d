#pragma once

/// What tests need of the operating system.
namespace TestPlatform {

/// @return false where the zone of a process is that of the system, and another one
bool SetLocalZone(const char* AName);

/// A code of IsUnsupported.
extern const int UnsupportedError;

}  // namespace TestPlatform
