// What may end a long enumeration early, and what a person at a terminal sees of it meanwhile.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <utility>

namespace siphons {

class RunControl {
 public:
  /// Takes over SIGINT and SIGTERM, unless they are ignored, until the process ends: the first one stops the
  /// run, the next one ends the process. `seconds` is the time limit, 0 for none; `what` is being counted. A
  /// quiet run shows no progress.
  RunControl(double seconds, std::string what, bool quiet = false);

  void Count() { ++count_; }
  void SetCount(int64_t count) { count_ = count; }

  /// Keeps some of the time for what comes after the run: it is to stop that much earlier.
  void Reserve(double seconds) { reserved_ += seconds; }

  /// Whether the run is to stop. Asked often; on a terminal this also rewrites the progress line on standard
  /// error, from two seconds on.
  bool Stop();

  /// Takes the progress line away.
  void EndProgress();

  /// What a person at a terminal is told in the end of a run that was cut short, with a line end, or nothing:
  /// how many were found, and where they went.
  std::string LastWords(const std::string& output) const;

  /// Whether a signal asked for the end of the run.
  static bool Interrupted();

  /// Why the run stopped, or empty.
  const std::string& Reason() const { return reason_; }
  void SetReason(std::string reason) { reason_ = std::move(reason); }

 private:
  using Clock = std::chrono::steady_clock;

  void ShowProgress(double elapsed);

  Clock::time_point start_ = Clock::now();
  double seconds_;
  double reserved_ = 0;
  std::string what_;
  std::string reason_;
  int64_t count_ = 0;
  bool showsProgress_;
  double nextLine_ = 2;
  size_t lineLength_ = 0;
};

}  // namespace siphons
