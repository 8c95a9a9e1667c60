// The jobs stand in one list, in the order of their answers; what a job is split into takes its place. A
// thread takes the first one that waits. The calling thread hands on the answers of the first job as long as
// it is done. A job is short (JobLimits), so little has to wait for the first one.
#include "netkit/siphons/job_order.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <iterator>
#include <list>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include "netkit/siphons/job_search.h"
#include "netkit/siphons/last_parts.h"

namespace siphons {

namespace {

void ToNet(const Component& component, PlaceList& places) {
  for (int32_t& p : places) p = component.places[static_cast<size_t>(p)];
}

bool RunInThisThread(std::vector<SiphonJob> jobs, const JobLimits& limits,
                     const std::function<bool(const PlaceList&)>& found, const std::function<bool()>& stop) {
  LastParts parts;
  PlaceList siphon;
  std::vector<SiphonJob> waiting(std::make_move_iterator(jobs.rbegin()),
                                 std::make_move_iterator(jobs.rend()));
  while (!waiting.empty()) {
    const SiphonJob job = std::move(waiting.back());
    waiting.pop_back();
    JobSearch search(job, limits, parts.Of(job.component));
    const auto take = [&](const PlaceList& places) {
      siphon = places;
      ToNet(*job.component, siphon);
      return found(siphon);
    };
    const JobEnd end = search.Run(take, stop);
    if (end == JobEnd::kStopped) return false;
    if (end == JobEnd::kExhausted) continue;
    std::vector<SiphonJob> rest = search.Remainder();
    std::move(rest.rbegin(), rest.rend(), std::back_inserter(waiting));
  }
  return true;
}

class JobCrew {
 public:
  JobCrew(std::vector<SiphonJob> jobs, const JobLimits& limits) : limits_(limits) {
    for (SiphonJob& job : jobs) entries_.push_back({std::move(job), State::kWaiting, {}});
  }

  bool Run(int32_t threads, const std::function<bool(const PlaceList&)>& found,
           const std::function<bool()>& stop) {
    std::vector<std::jthread> crew;
    for (int32_t i = 0; i < threads; ++i) crew.emplace_back([this] { Work(); });
    const bool complete = HandOn(found, stop);
    stop_ = true;
    {
      const std::lock_guard lock(mutex_);
      ended_ = true;
    }
    changed_.notify_all();
    crew.clear();
    return complete;
  }

 private:
  enum class State { kWaiting, kRunning, kDone };

  struct Entry {
    SiphonJob job;
    State state;
    std::vector<PlaceList> answers;
  };

  /// What each thread does: takes the first job that waits, until all is done.
  void Work() {
    LastParts parts;
    std::unique_lock lock(mutex_);
    for (;;) {
      auto entry = entries_.end();
      changed_.wait(lock, [&] {
        entry = std::find_if(entries_.begin(), entries_.end(),
                             [](const Entry& e) { return e.state == State::kWaiting; });
        return ended_ || entry != entries_.end();
      });
      if (ended_) return;
      entry->state = State::kRunning;
      lock.unlock();
      JobSearch search(entry->job, limits_, parts.Of(entry->job.component));
      const auto take = [&](const PlaceList& places) {
        entry->answers.push_back(places);
        ToNet(*entry->job.component, entry->answers.back());
        return true;
      };
      const JobEnd end = search.Run(take, [this] { return stop_.load(); });
      std::list<Entry> rest;
      if (end == JobEnd::kSplit) {
        for (SiphonJob& job : search.Remainder()) rest.push_back({std::move(job), State::kWaiting, {}});
      }
      lock.lock();
      entry->state = State::kDone;
      entries_.splice(std::next(entry), rest);
      changed_.notify_all();
    }
  }

  /// Hands on the answers in the order of the list; whether all of them were. While `stop` thinks about its
  /// answer, no job begins and none ends.
  bool HandOn(const std::function<bool(const PlaceList&)>& found, const std::function<bool()>& stop) {
    constexpr std::chrono::milliseconds kBetweenQuestions{20};
    std::unique_lock lock(mutex_);
    while (!entries_.empty()) {
      if (stop()) return false;
      if (entries_.front().state != State::kDone) {
        changed_.wait_for(lock, kBetweenQuestions, [this] { return entries_.front().state == State::kDone; });
        continue;
      }
      const std::vector<PlaceList> answers = std::move(entries_.front().answers);
      entries_.pop_front();
      lock.unlock();
      for (const PlaceList& siphon : answers) {
        if (!found(siphon)) return false;
      }
      lock.lock();
    }
    return true;
  }

  const JobLimits limits_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::list<Entry> entries_;  ///< guarded by mutex_, but for the job and the answers of a running one
  bool ended_ = false;
  std::atomic<bool> stop_ = false;
};

}  // namespace

bool RunJobs(std::vector<SiphonJob> jobs, const JobLimits& limits, int32_t threads,
             const std::function<bool(const PlaceList&)>& found, const std::function<bool()>& stop) {
  if (threads <= 1) return RunInThisThread(std::move(jobs), limits, found, stop);
  return JobCrew(std::move(jobs), limits).Run(threads, found, stop);
}

}  // namespace siphons
