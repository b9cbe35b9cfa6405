#include "pages/user_guide.h"

namespace drenik {

void OpenUserGuide(Platform& platform, const std::string& url) {
  if (!url.empty() && platform.OpenUrl(url)) return;
  if (url.empty()) {
    platform.ShowMessage("The user guide (user-guide.html) was not found next to the program.");
    return;
  }
  // A local guide is named by its path, which a file manager also takes.
  constexpr std::string_view kFileScheme = "file://";
  const std::string where = url.starts_with(kFileScheme) ? url.substr(kFileScheme.size()) : url;
  platform.ShowMessage("No web browser could be started to show the user guide.\nIt is at " +
                       where);
}

}  // namespace drenik
