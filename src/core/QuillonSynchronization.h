#pragma once

#include <mutex>

/// A lock that one thread at a time holds, and may enter again.
class TQuillonCriticalSection {
 public:
  void Enter() { FSection.lock(); }
  void Leave() { FSection.unlock(); }
  /// @return false while another thread is inside
  bool TryEnter() { return FSection.try_lock(); }

 private:
  std::recursive_mutex FSection;
};

/// Is inside a critical section as long as it lives.
class TQuillonCriticalSectionLock {
 public:
  explicit TQuillonCriticalSectionLock(TQuillonCriticalSection& ASection) : FSection(ASection) { FSection.Enter(); }
  TQuillonCriticalSectionLock(const TQuillonCriticalSectionLock&) = delete;
  TQuillonCriticalSectionLock& operator=(const TQuillonCriticalSectionLock&) = delete;
  ~TQuillonCriticalSectionLock() { FSection.Leave(); }

 private:
  TQuillonCriticalSection& FSection;
};
