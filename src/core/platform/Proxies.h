#pragma once

#include <string>

namespace Platform {

/// The proxy by which the system's settings lead to an address; empty for none, and where the environment has proxies
/// or the system has no such settings.
/// @param AUrl an address of http or https
/// @return "host:port", with a scheme ahead or without
std::string SystemProxyFor(const std::string& AUrl);

}  // namespace Platform
