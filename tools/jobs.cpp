// jobs.cpp: see jobs.h. Workers are ahead of what has been shown, but not far, to save memory.
#include "tools/jobs.h"

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace {

using Make = std::function<std::shared_ptr<void>(size_t)>;

class Workers {
public:
  Workers(size_t count, const Make &make, size_t workers);
  ~Workers();
  std::shared_ptr<void> next(); // in order

private:
  void work();

  const Make &make_;
  std::vector<std::shared_ptr<void>> things_; // made and not yet shown
  size_t begun_ = 0;
  size_t shown_ = 0;
  size_t ahead_;
  bool stop_ = false;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::thread> workers_;
};

} // namespace

void run_jobs_of(size_t count, int jobs, Progress &progress, const Make &make,
                 const std::function<bool(const void *)> &show) {
  const size_t workers = std::min(static_cast<size_t>(jobs), count);
  std::unique_ptr<Workers> team;
  if (workers > 1) team = std::make_unique<Workers>(count, make, workers);
  progress.show(0);
  for (size_t i = 0; i < count; ++i) {
    const std::shared_ptr<void> thing = team ? team->next() : make(i);
    if (!show(thing.get())) break;
    progress.show(i + 1);
  }
  progress.clear();
}

Workers::Workers(size_t count, const Make &make, size_t workers)
    : make_(make), things_(count), ahead_(2 * workers) {
  for (size_t i = 0; i < workers; ++i) workers_.emplace_back([this] { work(); });
}

Workers::~Workers() {
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
  }
  changed_.notify_all();
  for (std::thread &worker : workers_) worker.join();
}

void Workers::work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock,
                  [this] { return stop_ || begun_ == things_.size() || begun_ < shown_ + ahead_; });
    if (stop_ || begun_ == things_.size()) return;
    const size_t i = begun_++;
    lock.unlock();
    std::shared_ptr<void> thing = make_(i);
    lock.lock();
    things_[i] = std::move(thing);
    changed_.notify_all();
  }
}

std::shared_ptr<void> Workers::next() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return things_[shown_] != nullptr; });
  changed_.notify_all();
  return std::move(things_[shown_++]);
}
