// progress.h: a line on a terminal that says how many drawings have been read.
#ifndef TOOLS_PROGRESS_H
#define TOOLS_PROGRESS_H

#include <chrono>
#include <cstdio>

class Progress {
public:
  Progress(bool wanted, size_t total) : wanted_(wanted), total_(total) {}
  ~Progress() { clear(); }
  Progress(const Progress &) = delete;
  Progress &operator=(const Progress &) = delete;

  // Repaints the line, at most ten times a second.
  void show(size_t done) {
    const auto now = Clock::now();
    if (!wanted_ || (painted_once_ && now - painted_ < std::chrono::milliseconds(100))) return;
    fprintf(stderr, "\r%zu of %zu ", done, total_);
    painted_ = now;
    painted_once_ = visible_ = true;
  }

  // Removes the line, before anything else is printed.
  void clear() {
    if (visible_) fputs("\r\033[K", stderr);
    visible_ = false;
  }

private:
  using Clock = std::chrono::steady_clock;

  bool wanted_;
  size_t total_;
  Clock::time_point painted_;
  bool painted_once_ = false;
  bool visible_ = false;
};

#endif
