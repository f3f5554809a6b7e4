// jobs.h: makes many things, several at a time, and shows them in order.
#ifndef TOOLS_JOBS_H
#define TOOLS_JOBS_H

#include <functional>
#include <memory>

#include "tools/progress.h"

// What run_jobs does, whatever it makes.
void run_jobs_of(size_t count, int jobs, Progress &progress,
                 const std::function<std::shared_ptr<void>(size_t)> &make,
                 const std::function<bool(const void *)> &show);

// Makes things 0 to count - 1, up to jobs at a time, and calls show for each in this order, from
// the calling thread, and progress goes on. make returns a std::shared_ptr<Thing>. Stops when show
// returns false.
template <class Thing, class Make, class Show>
void run_jobs(size_t count, int jobs, Progress &progress, const Make &make, const Show &show) {
  run_jobs_of(count, jobs, progress, make,
              [&](const void *thing) { return show(*static_cast<const Thing *>(thing)); });
}

#endif
