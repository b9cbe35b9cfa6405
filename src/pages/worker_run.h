#pragma once
// Work on a thread of its own that a page watches from its own thread (the
// tolerance analysis, the design-from-a-mask search): while it runs only the
// share done and the cancel flag pass between the two; what the work fills
// in is the page's once the run has ended and been taken up.

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

namespace drenik {

template <typename Outcome>
class WorkerRun {
 public:
  // Tells the run how far the work has got (0..1); false once it is to stop.
  using Progress = std::function<bool(double done)>;
  using Work = std::function<void(const Progress&, Outcome&)>;

  WorkerRun() = default;
  // A run still going is cancelled and waited for.
  ~WorkerRun() { Stop(); }
  WorkerRun(const WorkerRun&) = delete;
  WorkerRun& operator=(const WorkerRun&) = delete;

  // Runs work(progress, outcome) on a new thread, the outcome starting as
  // given (the work's inputs); a run still going is stopped first.
  void Start(Outcome outcome, Work work) {
    Stop();
    auto state = std::make_shared<State>();
    state->outcome = std::move(outcome);
    state_ = state;
    thread_ = std::thread([state, work = std::move(work)] {
      const auto start = std::chrono::steady_clock::now();
      work(
          [&s = *state](double done) {
            s.done = done;
            return !s.cancel;
          },
          state->outcome);
      state->seconds =
          std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
      state->finished = true;
    });
  }

  // Started and not yet taken up.
  bool Running() const { return state_ != nullptr; }
  bool Finished() const { return state_ && state_->finished; }
  double Done() const { return state_ ? state_->done.load() : 0.0; }
  bool Cancelling() const { return state_ && state_->cancel; }
  void Cancel() {
    if (state_) state_->cancel = true;
  }
  // Waits for the thread to end.
  void Join() {
    if (thread_.joinable()) thread_.join();
  }
  // Waits for the run to end and hands over its outcome and the seconds it
  // took; nothing when no run was started.
  std::optional<Outcome> Take(double* seconds = nullptr) {
    Join();
    if (!state_) return std::nullopt;
    const std::shared_ptr<State> state = std::move(state_);
    if (seconds) *seconds = state->seconds;
    return std::move(state->outcome);
  }
  // Cancels a run, waits for it and drops its outcome.
  void Stop() {
    Cancel();
    Take();
  }

 private:
  struct State {
    std::atomic<double> done{0};
    std::atomic<bool> cancel{false};
    std::atomic<bool> finished{false};
    double seconds = 0;
    Outcome outcome;
  };
  std::shared_ptr<State> state_;
  std::thread thread_;
};

}  // namespace drenik
