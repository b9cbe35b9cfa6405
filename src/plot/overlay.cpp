#include "plot/overlay.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "core/atomic_file.h"
#include "core/number_text.h"

namespace drenik {
namespace {

struct OverlayFile {
  const char* name;
  const SweepArray DesignRecord::*values;
  float top, bottom;
  int mode;
};

constexpr OverlayFile kFiles[] = {
    {"Data.S21", &DesignRecord::Transmission, 0, -70, 0},
    {"Data.S11", &DesignRecord::Reflection, 0, -70, 0},
    {"Data.SWR", &DesignRecord::VSWR, 2.4f, 1, 1},
};

std::filesystem::path InFolder(const std::string& folder, const std::string& name) {
  return folder.empty() ? std::filesystem::path(name) : std::filesystem::path(folder) / name;
}

std::string Upper(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

// The file in the folder whose upper-cased name is `upperName`; empty when
// there is none.
std::filesystem::path FindFile(const std::string& folder, const std::string& upperName) {
  const std::filesystem::path exact = InFolder(folder, upperName);
  std::error_code error;
  if (std::filesystem::is_regular_file(exact, error)) return exact;
  const std::filesystem::path dir = folder.empty() ? "." : folder;
  for (std::filesystem::directory_iterator it(dir, error), end; !error && it != end;
       it.increment(error)) {
    if (Upper(it->path().filename().string()) == upperName && it->is_regular_file(error)) {
      return it->path();
    }
  }
  return {};
}

bool ReadNumber(std::istream& in, float& value) {
  std::string token;
  if (!(in >> token)) return false;
  const char* begin = token.c_str();
  char* end = nullptr;
  const float number = std::strtof(begin, &end);
  if (end == begin || *end != '\0' || !std::isfinite(number)) return false;
  value = number;
  return true;
}

// Reads pairs into Freq and Overlay; returns how many were read.
int ReadPairs(DesignRecord& d, const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  int count = 0;
  float freq = 0, value = 0;
  while (count < kSweepSlots && ReadNumber(in, freq) && ReadNumber(in, value)) {
    d.Freq[count] = freq;
    d.Overlay[count] = value;
    ++count;
  }
  return count;
}

}  // namespace

void SaveOverlay(DesignRecord& d, Platform& platform, const std::string& folder) {
  for (const OverlayFile& file : kFiles) {
    if (d.NrIntervals >= kSweepSlots) {
      platform.ShowMessage(kOverlayFailure);
      return;
    }
    AtomicFile out(InFolder(folder, file.name).string());
    const SweepArray& values = d.*file.values;
    for (int i = 0; i <= d.NrIntervals; ++i) out.Line(ValueText(d.Freq[i]) + ValueText(values[i]));
    if (!out.Commit()) {
      platform.ShowMessage(kOverlayFailure);
      return;
    }
  }
}

void GetOverlay(DesignRecord& d, Canvas& canvas, Platform& platform, const std::string& folder) {
  for (const OverlayFile& file : kFiles) {
    d.FileName = Upper(file.name);
    const std::filesystem::path path = FindFile(folder, d.FileName);
    if (path.empty()) {
      platform.ShowMessage("File  is not available.", "File Test", MessageIcon::Exclamation);
      return;
    }
    const int count = ReadPairs(d, path);
    DrawOverlay(d, canvas, count - 1, file.top, file.bottom, file.mode);
  }
}

void DrawOverlay(DesignRecord& d, Canvas& canvas, int lastPoint, float top, float bottom,
                 int mode) {
  canvas.SetDrawWidth(2);
  const double logStart = std::log(double{d.Fstart});
  const double logSpan = std::log(double{d.Fstop}) - logStart;
  lastPoint = std::min(lastPoint, kSweepSlots - 1);
  for (int i = 0; i <= lastPoint && (mode == 0 || mode == 1); ++i) {
    double x = 3000 + 5000 * (std::log(double{d.Freq[i]}) - logStart) / logSpan;
    double y = 4000 - 4000 * (double{d.Overlay[i]} - top) / (top - bottom);
    // A frequency of zero or below, or an empty sweep span, lands on the left
    // edge; a value that cannot be placed, on the top edge.
    if (!(x >= 3000)) x = 3000;
    if (x > 8000) x = 8000;
    if (!(y >= 4000)) y = 4000;
    if (y > 8000) y = 8000;
    canvas.Point(static_cast<float>(x), static_cast<float>(y), kOverlayColor);
  }
  canvas.SetDrawWidth(1);
}

}  // namespace drenik
