#pragma once
// The user guide in the browser, or, where no browser can be started, a
// message that says where the guide is, so that a click never goes unanswered.

#include <string>
#include <string_view>

#include "core/platform.h"

namespace drenik {

void OpenUserGuide(Platform& platform, const std::string& url);

}  // namespace drenik
