#pragma once

namespace Platform {

/// Puts another implementation of a service in the system's place, for tests, as long as it lives. Not for use beside
/// running threads.
template <class TService>
class ServiceReplacement {
 public:
  explicit ServiceReplacement(TService& AService) : FReplaced(FCurrent) { FCurrent = &AService; }
  ServiceReplacement(const ServiceReplacement&) = delete;
  ServiceReplacement& operator=(const ServiceReplacement&) = delete;
  ~ServiceReplacement() { FCurrent = FReplaced; }

  /// The service in use: the system's, which is made then, if none was put in its place.
  static TService& Current(TService& (*ASystem)()) { return FCurrent != nullptr ? *FCurrent : ASystem(); }

 private:
  inline static TService* FCurrent = nullptr;
  TService* FReplaced;
};

}  // namespace Platform
