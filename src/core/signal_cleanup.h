#pragma once
// Temporary files that an interrupt must not strand. On SIGINT, SIGTERM or
// SIGHUP the files still registered are removed and the program then ends
// by the signal as it would have without us. Only a signal whose action is
// still the default is taken over: an ignored one (nohup) stays ignored and
// a handler of the host's stays in place.

#include <string>

namespace drenik {

// Registers a file for removal on a signal; the returned slot is handed
// back to ForgetOnSignal() once the file has been renamed or removed. -1
// when no slot is free (the file is then only removed the ordinary way).
int RemoveOnSignal(const std::string& path);
void ForgetOnSignal(int slot);

// While one lives, those signals wait: a file being rewritten in place is
// finished before the program ends.
class SignalsHeld {
 public:
  SignalsHeld();
  ~SignalsHeld();
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;
};

}  // namespace drenik
