#include "cli/progress_line.h"

#include <cmath>
#include <cstdio>

namespace drenik::cli {

namespace {
using Clock = std::chrono::steady_clock;
constexpr auto kRedraw = std::chrono::milliseconds(200);
// A run shorter than this needs no sign of life, and its rate is not yet
// worth an estimate.
constexpr auto kFirstDraw = std::chrono::milliseconds(500);
constexpr const char* kClearLine = "\r\x1b[K";
}  // namespace

ProgressLine::ProgressLine(std::ostream& err, bool show, std::string what, long long total)
    : err_(err), show_(show), what_(std::move(what)), total_(total), start_(Clock::now()) {}

ProgressLine::~ProgressLine() {
  if (drawn_) err_ << kClearLine << std::flush;
}

void ProgressLine::Update(double done) {
  if (!show_) return;
  const Clock::time_point now = Clock::now();
  if (now - start_ < kFirstDraw || (drawn_ && now - last_ < kRedraw)) return;
  last_ = now;
  drawn_ = true;
  const double seconds = std::chrono::duration<double>(now - start_).count();
  const double trials = done * static_cast<double>(total_);
  const double left = done > 0 ? std::ceil(seconds * (1 - done) / done) : 0.0;
  char text[160];
  if (total_ > 0)
    std::snprintf(text, sizeof text, "%s: %.0f of %lld trials, %.0f trials/s, %.0f s left",
                  what_.c_str(), trials, total_, trials / seconds, left);
  else
    std::snprintf(text, sizeof text, "%s: %.0f%% done, %.0f s left", what_.c_str(), 100 * done,
                  left);
  err_ << kClearLine << text << std::flush;
}

}  // namespace drenik::cli
