#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace Platform {

/// A file that is removed if the user or the system ends this process by a signal (hang-up, interrupt, termination)
/// while the object lives. A signal that the process was started to ignore, or handles, is left as it is.
class RemovalAtSignal {
 public:
  explicit RemovalAtSignal(const std::string& APath);
  RemovalAtSignal(const RemovalAtSignal&) = delete;
  RemovalAtSignal& operator=(const RemovalAtSignal&) = delete;
  ~RemovalAtSignal();

 private:
  std::optional<std::size_t> FPlace;
};

/// Runs a step that such a signal does not break off: it ends the process behind the step.
void WithSignalsDelayed(const std::function<void()>& AStep);

}  // namespace Platform
