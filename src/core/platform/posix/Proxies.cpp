#include "platform/Proxies.h"

std::string Platform::SystemProxyFor(const std::string& /*AUrl*/) { return {}; }
