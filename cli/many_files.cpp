#include "cli/many_files.h"

#include <algorithm>
#include <array>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

#include "cli/interruption.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

// What one file has to say.
struct Result {
  ExitStatus saida = ExitStatus::kFailure;
  std::string out;
  std::string err;
};

// The files handed out and what came back, in order. A worker that is far ahead waits, so memory stays small.
class Queue {
 public:
  struct Job {
    std::size_t number;
    std::string path;
  };

  Queue(FileNames& names, std::size_t ahead, Output& out, Output& err)
      : names_(names), ahead_(ahead), out_(out), err_(err) {}

  // The next file. Names may come slowly, so what others have to say is written meanwhile.
  std::optional<Job> Take() {
    const std::scoped_lock taking(take_mutex_);
    {
      std::unique_lock lock(mutex_);
      room_.wait(lock, [this] { return given_ < written_ + ahead_ || Ended(); });
      if (Ended()) return std::nullopt;
    }
    auto path = names_.Next();
    if (!path) return std::nullopt;
    return Job{given_++, std::move(*path)};
  }

  void Give(std::size_t number, Result result) {
    const std::scoped_lock lock(mutex_);
    results_.emplace(number, std::move(result));
    for (auto next = results_.find(written_); next != results_.end(); next = results_.find(written_)) {
      Write(next->second);
      results_.erase(next);
      ++written_;
    }
    out_.Flush();
    room_.notify_all();
  }

  // Ends the work for all; the first failure is kept.
  void Fail(std::exception_ptr failure) {
    const std::scoped_lock lock(mutex_);
    if (!failure_) failure_ = std::move(failure);
    room_.notify_all();
  }

  [[nodiscard]] std::exception_ptr failure() const { return failure_; }
  [[nodiscard]] std::size_t Total() const { return written_; }
  [[nodiscard]] std::size_t Of(ExitStatus saida) const { return counts_[static_cast<std::size_t>(saida)]; }
  [[nodiscard]] ExitStatus Worst() const {
    for (const ExitStatus saida : {ExitStatus::kFailure, ExitStatus::kEnvironment, ExitStatus::kRefused}) {
      if (Of(saida) > 0) return saida;
    }
    return ExitStatus::kAccepted;
  }

 private:
  [[nodiscard]] bool Ended() const { return failure_ || out_.failed() || Interrupted(); }

  void Write(const Result& result) {
    ++counts_[static_cast<std::size_t>(result.saida)];
    out_.Write(result.out);
    if (result.err.empty()) return;
    out_.Flush();
    err_.Write(result.err);
    err_.Flush();
  }

  FileNames& names_;
  std::size_t ahead_;
  Output& out_;
  Output& err_;
  std::mutex take_mutex_;
  std::size_t given_ = 0;  ///< under `take_mutex_`
  std::mutex mutex_;       ///< guards what follows and both outputs
  std::condition_variable room_;
  std::size_t written_ = 0;
  std::map<std::size_t, Result> results_;  ///< ready, waiting for an earlier one
  std::array<std::size_t, 4> counts_{};
  std::exception_ptr failure_;
};

// The hosts are made one after the other: the first one makes what the folder lacks.
void RunJobs(Queue& queue, const RunOptions& options, const Terminal& terminal, std::mutex& making) {
  auto job = queue.Take();
  if (!job) return;
  Output out;
  Output err;
  std::optional<Importer> importer;
  {
    const std::scoped_lock alone(making);
    importer.emplace(options, terminal, out, err);
  }
  for (; job; job = queue.Take()) {
    const ExitStatus saida = importer->Run(job->path);
    queue.Give(job->number, {saida, out.Take(), err.Take()});
  }
}

void Work(Queue& queue, const RunOptions& options, const Terminal& terminal, std::mutex& making) {
  try {
    RunJobs(queue, options, terminal, making);
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

std::string Summary(const Queue& queue) {
  std::string summary = text::Count(queue.Total(), "arquivo", "arquivos") + ": " +
                        text::Count(queue.Of(ExitStatus::kAccepted), "aceito", "aceitos") + ", " +
                        text::Count(queue.Of(ExitStatus::kRefused), "recusado", "recusados");
  const std::size_t unread = queue.Of(ExitStatus::kEnvironment) + queue.Of(ExitStatus::kFailure);
  if (unread > 0) summary += ", " + text::Count(unread, "não validado", "não validados");
  return summary + ".\n";
}

}  // namespace

ExitStatus ValidateMany(FileNames& names, const RunOptions& options, const Terminal& terminal,
                        unsigned workers, Output& out, Output& err) {
  WatchForInterruption();
  Queue queue(names, std::size_t{workers} * 16, out, err);
  std::mutex making;
  const auto work = [&] { Work(queue, options, terminal, making); };
  {
    const auto threads = Start(workers - 1, work);
    work();
  }
  if (queue.failure()) std::rethrow_exception(queue.failure());
  if (!options.json && queue.Total() > 0) out.Write(Summary(queue));
  const std::string problem =
      Interrupted() ? "interrompido; os arquivos que faltavam não foram validados." : names.problem();
  if (problem.empty()) return queue.Worst();
  out.Flush();
  err.Write("tremvik: " + problem + "\n");
  return std::max(queue.Worst(), ExitStatus::kEnvironment);
}

}  // namespace tremvik::cli
