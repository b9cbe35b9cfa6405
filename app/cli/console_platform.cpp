#include "cli/console_platform.h"

#include <ctime>

namespace drenik::cli {

std::string ConsolePlatform::TodayShort() {
  std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char text[16];
  std::strftime(text, sizeof text, "%d.%m.%Y", &local);
  return text;
}

}  // namespace drenik::cli
