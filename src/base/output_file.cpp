#include "base/output_file.h"

#include <csignal>

namespace siphons {

namespace {

/// Keeps the signals that users end programs with waiting while it lives.
class HeldSignals {
 public:
  HeldSignals() {
    sigset_t held;
    sigemptyset(&held);
    for (const int signal : {SIGHUP, SIGINT, SIGTERM}) sigaddset(&held, signal);
    sigprocmask(SIG_BLOCK, &held, &before_);
  }
  ~HeldSignals() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;

 private:
  sigset_t before_;
};

}  // namespace

bool WriteWholeFile(const char* path, const std::function<void(std::FILE*)>& write) {
  // Opening a pipe may take for ever: interrupts are held from then on only.
  std::FILE* const file = std::fopen(path, "w");
  if (file == nullptr) return false;
  const HeldSignals held;
  write(file);
  const bool written = Written(file);
  const bool closed = std::fclose(file) == 0;
  if (written && closed) return true;
  if (std::FILE* const emptied = std::fopen(path, "w"); emptied != nullptr) std::fclose(emptied);
  return false;
}

void IgnoreFileSizeSignal() {
  std::signal(SIGXFSZ, SIG_IGN);
}

bool Written(std::FILE* stream) {
  return std::fflush(stream) == 0 && std::ferror(stream) == 0;
}

}  // namespace siphons
