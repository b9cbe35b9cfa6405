#include "core/last_session.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "core/atomic_file.h"
#include "core/number_text.h"

namespace drenik {

namespace {

// The line is short: only its first bytes are read, and a file much larger
// than any session file is not one.
constexpr size_t kLongestLine = 4096;
constexpr off_t kLargestFile = 64 * 1024;

std::string_view Trim(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

std::optional<int16_t> ReadInteger(std::string_view text) {
  text = Trim(text);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  int value = 0;
  auto res = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || res.ec != std::errc() || res.ptr != text.data() + text.size())
    return std::nullopt;
  if (value < std::numeric_limits<int16_t>::min() || value > std::numeric_limits<int16_t>::max())
    return std::nullopt;
  return static_cast<int16_t>(value);
}

// Decimal text with "." as the point: "4500000", ".044", "0.044", "-2",
// "1E+10". Infinities, NaN and values beyond the float range do not read.
std::optional<float> ReadReal(std::string_view text) {
  text = Trim(text);
  std::string_view body = text;
  if (!body.empty() && (body.front() == '+' || body.front() == '-')) body.remove_prefix(1);
  if (body.empty() || !((body.front() >= '0' && body.front() <= '9') || body.front() == '.'))
    return std::nullopt;
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  float value = 0;
  auto res =
      std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::general);
  if (res.ec != std::errc() || res.ptr != text.data() + text.size()) return std::nullopt;
  return value;
}

// The topology: in double quotes, or bare.
std::optional<std::string> ReadText(std::string_view text) {
  text = Trim(text);
  if (!text.empty() && text.front() == '"') {
    if (text.size() < 2 || text.back() != '"') return std::nullopt;
    text = text.substr(1, text.size() - 2);
    if (text.find('"') != std::string_view::npos) return std::nullopt;
  } else if (text.find('"') != std::string_view::npos) {
    return std::nullopt;
  }
  return std::string(text);
}

// Splits at commas outside double quotes.
std::vector<std::string_view> SplitFields(std::string_view line) {
  std::vector<std::string_view> fields;
  size_t start = 0;
  bool quoted = false;
  for (size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"') quoted = !quoted;
    if (line[i] == ',' && !quoted) {
      fields.push_back(line.substr(start, i - start));
      start = i + 1;
    }
  }
  fields.push_back(line.substr(start));
  return fields;
}

}  // namespace

namespace {

bool IdealParts(const DesignRecord& d) {
  return d.InductorQLaw == QLaw::Constant && d.CapacitorQ == kInfiniteQcap &&
         d.WindingCapacitance == 0 && d.CapacitorEsl == 0;
}

// The part models as the display page's dialog takes them: a known law, a
// capacitor Q above 0, capacitances and inductances of 0 or more. Anything
// else leaves the ideal parts (the design itself still loads).
void ReadPartModels(const std::vector<std::string_view>& fields, DesignRecord& d) {
  const auto law = ReadInteger(fields[10]);
  const auto q = ReadReal(fields[11]), cp = ReadReal(fields[12]), esl = ReadReal(fields[13]);
  if (!law || *law < 0 || *law > static_cast<int16_t>(QLaw::Linear) || !q || !(*q > 0) || !cp ||
      !(*cp >= 0) || !esl || !(*esl >= 0))
    return;
  d.InductorQLaw = static_cast<QLaw>(*law);
  d.CapacitorQ = *q;
  d.WindingCapacitance = *cp;
  d.CapacitorEsl = *esl;
}

// The kept setup, after the part models: the capacitor series, the
// inductor series, pairs, the winding (quoted) and the mask.
constexpr size_t kSetupStart = 14;
constexpr size_t kSetupEnd = kSetupStart + 4 + kKeptMaskFields;

bool HasKeptSetup(const DesignRecord& d) {
  return d.KeptCapacitorSeries != 0 || d.KeptInductorSeries != 0 || d.KeptPairs != 0 ||
         !d.KeptWinding.empty() || d.KeptMask[0] != 0;
}

void ClearKeptSetup(DesignRecord& d) {
  d.KeptCapacitorSeries = d.KeptInductorSeries = d.KeptPairs = 0;
  d.KeptWinding.clear();
  d.KeptMask.fill(0);
}

std::string KeptSetupText(const DesignRecord& d) {
  std::string text = "," + std::to_string(d.KeptCapacitorSeries) + "," +
                     std::to_string(d.KeptInductorSeries) + "," + std::to_string(d.KeptPairs) +
                     ",\"" + d.KeptWinding + "\"";
  for (float v : d.KeptMask) text += "," + ShortestText(v);
  return text;
}

// Series counts and pairs as whole numbers of 0 or more (which series a
// count names is the chooser's to say), the winding as text without commas
// (a 0 for none, as a zero-filled group has it), the mask's shape 0 to 3 and
// its values 0 or more. Anything else keeps none of the setup; the design
// itself still loads.
void ReadKeptSetup(const std::vector<std::string_view>& fields, DesignRecord& d) {
  const auto cap = ReadInteger(fields[kSetupStart]), ind = ReadInteger(fields[kSetupStart + 1]),
             pairs = ReadInteger(fields[kSetupStart + 2]);
  const std::string_view windingField = Trim(fields[kSetupStart + 3]);
  const auto winding =
      windingField == "0" ? std::optional<std::string>("") : ReadText(windingField);
  if (!cap || *cap < 0 || !ind || *ind < 0 || !pairs || *pairs < 0 || *pairs > 1 || !winding ||
      winding->find(',') != std::string::npos)
    return;
  std::array<float, kKeptMaskFields> mask{};
  for (int k = 0; k < kKeptMaskFields; ++k) {
    const auto v = ReadReal(fields[kSetupStart + 4 + k]);
    if (!v || !(*v >= 0)) return;
    mask[k] = *v;
  }
  if (mask[0] != 0 && mask[0] != 1 && mask[0] != 2 && mask[0] != 3) return;
  d.KeptCapacitorSeries = *cap;
  d.KeptInductorSeries = *ind;
  d.KeptPairs = *pairs;
  d.KeptWinding = *winding;
  d.KeptMask = mask;
}

}  // namespace

std::string LastSessionLine(const DesignRecord& d) {
  // A group is written when it holds something, and so is every group
  // before a written one, zero-filled where it holds nothing.
  const bool ideal = IdealParts(d), setup = HasKeptSetup(d);
  const bool models = !ideal || setup, band = d.Center > 0 || models;
  std::string line = std::to_string(d.Order) + "," + ShortestText(d.Width) + "," +
                     std::to_string(d.Family) + "," + ShortestText(d.Apass) + "," +
                     ShortestText(d.Astop) + ",\"" + d.Topology + "\"," + ShortestText(d.Rsource) +
                     "," + ShortestText(d.Qind);
  if (band)
    line += "," + ShortestText(std::max(d.Center, 0.0f)) + "," +
            ShortestText(d.Center > 0 ? d.ResonatorL : 0.0f);
  if (models)
    line += ideal ? ",0,0,0,0"
                  : "," + std::to_string(static_cast<int>(d.InductorQLaw)) + "," +
                        ShortestText(d.CapacitorQ) + "," + ShortestText(d.WindingCapacitance) +
                        "," + ShortestText(d.CapacitorEsl);
  if (setup) line += KeptSetupText(d);
  return line;
}

bool ParseLastSession(std::string_view text, DesignRecord& d) {
  // Only the first line counts; what follows its line end is ignored.
  size_t lineEnd = text.find_first_of("\r\n");
  std::string_view line = text.substr(0, lineEnd);
  std::vector<std::string_view> fields = SplitFields(line);
  if (fields.size() != 8 && fields.size() != 10 && fields.size() != 14 &&
      fields.size() != kSetupEnd)
    return false;

  auto order = ReadInteger(fields[0]);
  auto width = ReadReal(fields[1]);
  auto family = ReadInteger(fields[2]);
  auto apass = ReadReal(fields[3]);
  auto astop = ReadReal(fields[4]);
  auto topology = ReadText(fields[5]);
  auto rsource = ReadReal(fields[6]);
  auto qind = ReadReal(fields[7]);
  if (!order || !width || !family || !apass || !astop || !topology || !rsource || !qind)
    return false;
  std::optional<float> center = 0.0f, resonatorL = 0.0f;
  if (fields.size() >= 10) center = ReadReal(fields[8]), resonatorL = ReadReal(fields[9]);
  if (!center || !resonatorL) return false;

  // Values outside the design page's choices are kept as they are; the page
  // sorts them out when it loads.
  d.Order = *order;
  d.Width = *width;
  d.Family = *family;
  d.Apass = *apass;
  d.Astop = *astop;
  d.Topology = *topology;
  d.Rsource = *rsource;
  d.Qind = *qind;
  d.Center = *center;
  d.ResonatorL = *resonatorL;
  const DesignRecord ideal;
  d.InductorQLaw = ideal.InductorQLaw;
  d.CapacitorQ = ideal.CapacitorQ;
  d.WindingCapacitance = ideal.WindingCapacitance;
  d.CapacitorEsl = ideal.CapacitorEsl;
  if (fields.size() >= 14) ReadPartModels(fields, d);
  ClearKeptSetup(d);
  if (fields.size() >= kSetupEnd) ReadKeptSetup(fields, d);
  return true;
}

void SetLastSessionDefaults(DesignRecord& d) {
  d.Order = 5;
  d.Width = 4200000;
  d.Family = kFirstStartFamily;
  d.Apass = kFirstStartRipple;
  d.Astop = kFirstStartDepth;
  d.Topology = kFirstStartTopology;
  d.Rsource = 50;
  d.Qind = kInfiniteQind;
  d.Center = 0;
  d.ResonatorL = 0;
  ClearKeptSetup(d);
  // Ideal parts: a file the program does not take gives none of its fields.
  const DesignRecord ideal;
  d.InductorQLaw = ideal.InductorQLaw;
  d.CapacitorQ = ideal.CapacitorQ;
  d.WindingCapacitance = ideal.WindingCapacitance;
  d.CapacitorEsl = ideal.CapacitorEsl;
}

void ReadLastSession(DesignRecord& d, const std::string& path) {
  // Only a plain file of a plausible size is read: a FIFO there would wait
  // for a writer forever, and a device or a huge file is no session file.
  std::string content;
  const int fd = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  struct stat found {};
  if (fd >= 0 && fstat(fd, &found) == 0 && S_ISREG(found.st_mode) &&
      found.st_size <= kLargestFile) {
    content.resize(static_cast<size_t>(kLongestLine));
    const ssize_t n = read(fd, content.data(), content.size());
    content.resize(n > 0 ? static_cast<size_t>(n) : 0);
  }
  if (fd >= 0) close(fd);
  // A missing, unreadable or malformed file starts every choice afresh,
  // never a mixture of read and default values.
  if (!ParseLastSession(content, d)) SetLastSessionDefaults(d);
}

void WriteLastSession(const DesignRecord& d, Platform& platform, const std::string& path) {
  // The session is kept in a plain file only, as it is read from one: a
  // FIFO there would hold Exit until something read it, and a device is no
  // place for it.
  struct stat found {};
  if (stat(path.c_str(), &found) == 0 && !S_ISREG(found.st_mode)) {
    platform.ShowMessage("We did not read the last-session file.");
    return;
  }
  AtomicFile file(path);
  file.Line(LastSessionLine(d));
  if (!file.Commit()) platform.ShowMessage("We did not read the last-session file.");
}

}  // namespace drenik
