#pragma once
// A long run's sign of life on a terminal: one line with the trials done,
// the rate and the time left (or, for a run that counts no trials, the
// share done and the time left), redrawn in place a few times a second and
// cleared when the run ends. Off when standard error is not a terminal or
// the user asked for quiet.

#include <chrono>
#include <ostream>
#include <string>

namespace drenik::cli {

class ProgressLine {
 public:
  // total: the trials of the run; 0 for a run told only its share done.
  ProgressLine(std::ostream& err, bool show, std::string what, long long total = 0);
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  // The share of the work done, 0..1.
  void Update(double done);
  // The same, as a run that may be cancelled is told it: a command line
  // run goes on to the end (an interrupt ends the process instead).
  bool Continue(double done) {
    Update(done);
    return true;
  }

 private:
  std::ostream& err_;
  bool show_;
  bool drawn_ = false;
  std::string what_;
  long long total_;
  std::chrono::steady_clock::time_point start_, last_;
};

}  // namespace drenik::cli
