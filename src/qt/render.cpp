// Placeholder: replaced by the QPainter renderer.
#include "qt/render.h"
namespace drenik {
bool RenderPageToFile(const RecordingCanvas&, const std::string&, int, int, std::string& error) {
  error = "rendering is not available yet";
  return false;
}
}  // namespace drenik
