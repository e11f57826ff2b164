#include "cli/many_files.h"

#include <algorithm>
#include <array>
#include <condition_variable>
#include <csignal>
#include <cstddef>
#include <exception>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "cli/text.h"

namespace tremvik::cli {
namespace {

volatile std::sig_atomic_t g_told_to_end = 0;

// The first Ctrl-C lets the files at work end, so that no temporary folder stays; the second ends at once.
void EndOnSignal() {
  struct sigaction action {};
  action.sa_handler = [](int) { g_told_to_end = 1; };
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP})
    sigaction(signal, &action, nullptr);
}

// What one file has to say.
struct Report {
  Saida saida = Saida::kFalha;
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

  void Give(std::size_t number, Report report) {
    const std::scoped_lock lock(mutex_);
    reports_.emplace(number, std::move(report));
    for (auto next = reports_.find(written_); next != reports_.end(); next = reports_.find(written_)) {
      Write(next->second);
      reports_.erase(next);
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
  [[nodiscard]] std::size_t Of(Saida saida) const { return counts_[static_cast<std::size_t>(saida)]; }
  [[nodiscard]] Saida Worst() const {
    for (const Saida saida : {Saida::kFalha, Saida::kAmbiente, Saida::kRecusado}) {
      if (Of(saida) > 0) return saida;
    }
    return Saida::kAceito;
  }

 private:
  [[nodiscard]] bool Ended() const { return failure_ || out_.failed() || g_told_to_end != 0; }

  void Write(const Report& report) {
    ++counts_[static_cast<std::size_t>(report.saida)];
    out_.Write(report.out);
    if (report.err.empty()) return;
    out_.Flush();
    err_.Write(report.err);
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
  std::map<std::size_t, Report> reports_;  ///< ready, waiting for an earlier one
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
    const Saida saida = importer->Run(job->path);
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

std::string Summary(const Queue& queue) {
  std::string summary = Count(queue.Total(), "arquivo", "arquivos") + ": " +
                        Count(queue.Of(Saida::kAceito), "aceito", "aceitos") + ", " +
                        Count(queue.Of(Saida::kRecusado), "recusado", "recusados");
  const std::size_t unread = queue.Of(Saida::kAmbiente) + queue.Of(Saida::kFalha);
  if (unread > 0) summary += ", " + Count(unread, "não validado", "não validados");
  return summary + ".\n";
}

}  // namespace

Saida ValidateMany(FileNames& names, const RunOptions& options, const Terminal& terminal, unsigned workers,
                   Output& out, Output& err) {
  EndOnSignal();
  Queue queue(names, std::size_t{workers} * 16, out, err);
  std::mutex making;
  std::vector<std::jthread> threads;
  for (unsigned i = 1; i < workers; ++i)
    threads.emplace_back([&] { Work(queue, options, terminal, making); });
  Work(queue, options, terminal, making);
  for (auto& thread : threads)
    thread.join();
  if (queue.failure()) std::rethrow_exception(queue.failure());
  if (!options.json) out.Write(Summary(queue));
  if (g_told_to_end == 0) return queue.Worst();
  err.Write("tremvik: interrompido; os arquivos que faltavam não foram validados.\n");
  return Saida::kAmbiente;
}

}  // namespace tremvik::cli
