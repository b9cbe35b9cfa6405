#pragma once
// What a page asks of the application that holds it: going to another page,
// ending the program and the address of the user guide.

#include <string>

namespace drenik {

class PageHost {
 public:
  virtual ~PageHost() = default;
  virtual void ShowDesignPage() = 0;
  virtual void ShowDisplayPage() = 0;
  // Ends the program; writes the last-session file first when asked to.
  virtual void EndProgram(bool writeSession) = 0;
  // The maker's page opened by the web links: the program's user guide.
  virtual const std::string& UserGuideUrl() const = 0;
};

}  // namespace drenik
