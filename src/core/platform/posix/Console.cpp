#include "platform/Console.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <utf8.h>

#include <cerrno>
#include <csignal>
#include <iterator>

#include "QuillonTypes.h"

namespace {

/// Opens the null device in place of a closed standard handle, in the direction in which its use fails.
void OccupyIfClosed(int AHandle, int AMode) {
  if (fcntl(AHandle, F_GETFD) != -1 || errno != EBADF) {
    return;
  }
  // The lowest free handle is given: this one, as the ones below it are taken by now.
  const int Opened = open("/dev/null", AMode);
  if (Opened != -1 && Opened != AHandle) {
    close(Opened);
  }
}

/// Waits until a non-blocking output takes bytes again.
void AwaitWritable(int AHandle, std::string_view AName) {
  pollfd Output{.fd = AHandle, .events = POLLOUT, .revents = 0};
  constexpr int NoTimeOut = -1;
  if (poll(&Output, 1, NoTimeOut) == -1 && errno != EINTR) {
    throw EQuillonWin32Error(errno, AName);
  }
}

void WriteLineTo(int AHandle, std::string_view AName, std::string_view ALine) {
  std::string Text;
  Text.reserve(ALine.size() + 1);
  utf8::replace_invalid(ALine.begin(), ALine.end(), std::back_inserter(Text));
  Text.push_back('\n');
  std::string_view Left = Text;
  while (!Left.empty()) {
    const ssize_t Written = write(AHandle, Left.data(), Left.size());
    if (Written >= 0) {
      Left.remove_prefix(static_cast<std::size_t>(Written));
    } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
      AwaitWritable(AHandle, AName);
    } else if (errno != EINTR) {
      throw EQuillonWin32Error(errno, AName);
    }
  }
}

}  // namespace

namespace Platform {

TConsole::TConsole() {
  OccupyIfClosed(STDIN_FILENO, O_WRONLY);
  OccupyIfClosed(STDOUT_FILENO, O_RDONLY);
  OccupyIfClosed(STDERR_FILENO, O_RDONLY);
  // A pipe without a reader and a file at the size limit end in an error of the call, not in the process's end.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

std::vector<std::string> TConsole::Arguments(int ACount, const char* const* AValues) const {
  return ACount > 0 ? std::vector<std::string>(AValues + 1, AValues + ACount) : std::vector<std::string>();
}

void WriteOutputLine(std::string_view ALine) { WriteLineTo(STDOUT_FILENO, "standard output", ALine); }

void WriteErrorLine(std::string_view ALine) { WriteLineTo(STDERR_FILENO, "standard error", ALine); }

void WriteDebugLine(std::string_view ALine) { WriteErrorLine(ALine); }

}  // namespace Platform
