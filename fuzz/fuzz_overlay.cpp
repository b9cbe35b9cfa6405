// Whatever the three overlay files hold, reading them back draws only dots
// inside the plot frame, shows at most the one missing-file message, and
// never faults. The input is the sweep's two limits (8 bytes, as floats)
// and then the files' contents separated by NUL bytes; a file missing from
// the input is missing from the folder.
#include <stdlib.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string_view>

#include "plot/overlay.h"
#include "plot/recording_canvas.h"

namespace {

struct CountingPlatform : drenik::NullPlatform {
  using Platform::ShowMessage;
  void ShowMessage(const std::string&, const std::string&, drenik::MessageIcon) override {
    ++messages;
  }
  int messages = 0;
};

// A folder of the fuzzer's own, removed when the run ends.
struct OwnFolder {
  OwnFolder() {
    char name[] = "/tmp/drenik-fuzz-overlay-XXXXXX";
    if (!mkdtemp(name)) std::abort();
    path = name;
  }
  ~OwnFolder() { std::filesystem::remove_all(path); }
  std::filesystem::path path;
};

const std::filesystem::path& Folder() {
  static const OwnFolder folder;
  return folder.path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 8) return 0;
  auto d = std::make_unique<drenik::DesignRecord>();
  std::memcpy(&d->Fstart, data, 4);
  std::memcpy(&d->Fstop, data + 4, 4);
  std::string_view rest(reinterpret_cast<const char*>(data + 8), size - 8);
  bool present = true;
  for (const char* name : {"Data.S21", "Data.S11", "Data.SWR"}) {
    const std::filesystem::path path = Folder() / name;
    if (!present) {
      std::filesystem::remove(path);
      continue;
    }
    const size_t end = rest.find('\0');
    std::ofstream(path, std::ios::binary) << rest.substr(0, end);
    present = end != std::string_view::npos;
    if (present) rest.remove_prefix(end + 1);
  }

  CountingPlatform platform;
  drenik::RecordingCanvas canvas;
  drenik::GetOverlay(*d, canvas, platform, Folder().string());
  if (platform.messages > 1) std::abort();
  for (const drenik::DrawOp& op : canvas.Ops()) {
    if (op.kind != drenik::DrawOp::Kind::Point) continue;
    if (!(op.x1 >= 3000 && op.x1 <= 8000 && op.y1 >= 4000 && op.y1 <= 8000)) std::abort();
  }
  return 0;
}
