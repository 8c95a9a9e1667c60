#include "netkit/commands/run_control.h"

#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <utility>

namespace siphons {

namespace {

volatile std::sig_atomic_t interrupted = 0;

void Interrupt(int) {
  interrupted = 1;
  for (const int signal : {SIGINT, SIGTERM}) std::signal(signal, SIG_DFL);
}

}  // namespace

RunControl::RunControl(double seconds, std::string what, bool quiet)
    : seconds_(seconds), what_(std::move(what)), showsProgress_(!quiet && isatty(STDERR_FILENO) == 1) {
  for (const int signal : {SIGINT, SIGTERM}) {
    if (std::signal(signal, Interrupt) == SIG_IGN) std::signal(signal, SIG_IGN);
  }
}

bool RunControl::Interrupted() {
  return interrupted != 0;
}

void RunControl::EndProgress() {
  if (lineLength_ > 0) std::fprintf(stderr, "\r%*s\r", static_cast<int>(lineLength_), "");
  lineLength_ = 0;
}

std::string RunControl::LastWords(const std::string& output) const {
  if (!showsProgress_ || reason_.empty()) return "";
  return reason_ + ": " + std::to_string(count_) + " " + what_ + " found so far, written to " +
         (output.empty() ? "standard output" : output) + "\n";
}

bool RunControl::Stop() {
  if (Interrupted()) {
    reason_ = "interrupted";
    return true;
  }
  if (seconds_ == 0 && !showsProgress_) return false;
  const double elapsed = std::chrono::duration<double>(Clock::now() - start_).count();
  if (seconds_ > 0 && elapsed + reserved_ >= seconds_) {
    reason_ = "time limit";
    return true;
  }
  if (showsProgress_ && elapsed >= nextLine_) ShowProgress(elapsed);
  return false;
}

void RunControl::ShowProgress(double elapsed) {
  constexpr double kInterval = 0.2;
  nextLine_ = elapsed + kInterval;
  const std::string line = std::to_string(count_) + " " + what_ + " so far, " +
                           std::to_string(static_cast<int64_t>(elapsed)) + " s";
  lineLength_ = line.size();  // numbers only grow, so each line covers the one before
  std::fprintf(stderr, "\r%s", line.c_str());
}

}  // namespace siphons
