// jobs.cpp: see jobs.h. Workers read ahead of what has been shown, but not far, to save memory.
#include "tools/jobs.h"

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace {

class Reader {
public:
  Reader(const std::vector<std::string> &files, const ReadSettings &settings, size_t workers);
  ~Reader();
  std::unique_ptr<Drawing> next(); // in the order of files

private:
  void work();

  const std::vector<std::string> &files_;
  const ReadSettings &settings_;
  std::vector<std::unique_ptr<Drawing>> drawings_; // read and not yet shown
  size_t begun_ = 0;
  size_t shown_ = 0;
  size_t ahead_;
  bool stop_ = false;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::thread> workers_;
};

} // namespace

void read_drawings(const std::vector<std::string> &files, const ReadSettings &settings, int jobs,
                   const std::function<bool(const Drawing &)> &show) {
  const size_t workers = std::min(static_cast<size_t>(jobs), files.size());
  std::unique_ptr<Reader> reader;
  if (workers > 1) reader = std::make_unique<Reader>(files, settings, workers);
  for (size_t i = 0; i < files.size(); ++i) {
    const auto drawing = reader ? reader->next() : std::make_unique<Drawing>(files[i], settings);
    if (!show(*drawing)) break;
  }
}

Reader::Reader(const std::vector<std::string> &files, const ReadSettings &settings, size_t workers)
    : files_(files), settings_(settings), drawings_(files.size()), ahead_(2 * workers) {
  for (size_t i = 0; i < workers; ++i) workers_.emplace_back([this] { work(); });
}

Reader::~Reader() {
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
  }
  changed_.notify_all();
  for (std::thread &worker : workers_) worker.join();
}

void Reader::work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock,
                  [this] { return stop_ || begun_ == files_.size() || begun_ < shown_ + ahead_; });
    if (stop_ || begun_ == files_.size()) return;
    const size_t i = begun_++;
    lock.unlock();
    auto drawing = std::make_unique<Drawing>(files_[i], settings_);
    lock.lock();
    drawings_[i] = std::move(drawing);
    changed_.notify_all();
  }
}

std::unique_ptr<Drawing> Reader::next() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return drawings_[shown_] != nullptr; });
  changed_.notify_all();
  return std::move(drawings_[shown_++]);
}
