#include "cli/file_queue.h"

#include <condition_variable>
#include <exception>
#include <map>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "cli/interruption.h"

namespace tremvik::cli {
namespace {

// The files handed out and what came back, in order. A worker that is far ahead waits, so memory stays small.
class Queue {
 public:
  struct Job {
    std::size_t number;
    std::string path;
  };

  Queue(FileNames& names, const FileWork& work)
      : names_(names), work_(work), ahead_(std::size_t{work.threads} * work.ahead) {}

  // The next file. Names may come slowly, so what others have to say is written meanwhile.
  std::optional<Job> Take() {
    const std::scoped_lock taking(take_mutex_);
    {
      std::unique_lock lock(mutex_);
      room_.wait(lock, [this] { return given_ < told_ + ahead_ || Ended(); });
      if (Ended()) return std::nullopt;
    }
    auto path = names_.Next();
    if (!path) return std::nullopt;
    return Job{given_++, std::move(*path)};
  }

  void Give(std::size_t number, std::function<void()> tell) {
    const std::scoped_lock lock(mutex_);
    ready_.emplace(number, std::move(tell));
    for (auto next = ready_.find(told_); next != ready_.end(); next = ready_.find(told_)) {
      next->second();
      ready_.erase(next);
      ++told_;
    }
    room_.notify_all();
  }

  // Ends the work for all; the first failure is kept.
  void Fail(std::exception_ptr failure) {
    const std::scoped_lock lock(mutex_);
    if (!failure_) failure_ = std::move(failure);
    room_.notify_all();
  }

  [[nodiscard]] std::exception_ptr failure() const { return failure_; }

 private:
  [[nodiscard]] bool Ended() const { return failure_ || work_.hopeless() || Interrupted(); }

  FileNames& names_;
  const FileWork& work_;
  std::size_t ahead_;
  std::mutex take_mutex_;
  std::size_t given_ = 0;  ///< under `take_mutex_`
  std::mutex mutex_;       ///< guards what follows and what is told
  std::condition_variable room_;
  std::size_t told_ = 0;
  std::map<std::size_t, std::function<void()>> ready_;  ///< waiting for an earlier one
  std::exception_ptr failure_;
};

// The workers are made one after the other: the first one makes what the folder lacks.
void RunJobs(Queue& queue, const FileWork& work, std::mutex& making) {
  auto job = queue.Take();
  if (!job) return;
  FileWorker worker;
  {
    const std::scoped_lock alone(making);
    worker = work.make_worker();
  }
  for (; job; job = queue.Take())
    queue.Give(job->number, worker(job->path));
}

void Work(Queue& queue, const FileWork& work, std::mutex& making) {
  try {
    RunJobs(queue, work, making);
  } catch (...) {
    queue.Fail(std::current_exception());
  }
}

// As many threads as can be had, `wanted` at most: those that start do the work of all.
std::vector<std::jthread> Start(unsigned wanted, const std::function<void()>& work) {
  std::vector<std::jthread> threads;
  try {
    while (threads.size() < wanted)
      threads.emplace_back(work);
  } catch (const std::system_error&) {
    return threads;
  }
  return threads;
}

}  // namespace

void WorkOnFiles(FileNames& names, const FileWork& work) {
  WatchForInterruption();
  Queue queue(names, work);
  std::mutex making;
  const auto run = [&] { Work(queue, work, making); };
  {
    const auto threads = Start(work.threads - 1, run);
    run();
  }
  if (queue.failure()) std::rethrow_exception(queue.failure());
}

}  // namespace tremvik::cli
