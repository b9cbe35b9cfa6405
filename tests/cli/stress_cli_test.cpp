// The part stress against ngspice's AC node voltages of the exported
// netlist: each reported maximum where it falls (frequency and load), and
// no larger value anywhere on a grid over the band and the load phases.
// The command line's refusals of its options.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstdlib>
#include <iostream>
#include <map>
#include <regex>
#include <sstream>

#include "json_reader.h"
#include "support/run_cli.h"
#include "support/temp_folder.h"

namespace drenik::testing {
namespace {

using Cx = std::complex<double>;

// An ngspice run: the netlist with its load made a resistor and a reactance
// that each point sets, and every node voltage at each point.
struct Point {
  double f;  // Hz
  Cx gamma;  // the load's reflection, referred to the load resistance
};

std::vector<std::map<std::string, Cx>> Ngspice(std::string net, double rload,
                                               const std::vector<Point>& points,
                                               const TempFolder& dir) {
  net = net.substr(0, net.find(".ac "));
  net =
      std::regex_replace(net, std::regex("RLOAD out 0 [^\r\n]*"),
                         "RLOAD out xl1 1\r\nLXL xl1 xl2 1e-18\r\nCXL xl2 0 1e3\r\nRXL xl2 0 1e15");
  std::ostringstream deck;
  deck << net << ".control\n";
  for (const Point& p : points) {
    const double w = 2 * M_PI * p.f;
    const Cx z = rload * (1.0 + p.gamma) / (1.0 - p.gamma);
    deck << "alter rload = " << z.real() << "\n";
    deck << "alter lxl = " << (z.imag() > 0 ? z.imag() / w : 1e-18) << "\n";
    deck << "alter cxl = " << (z.imag() < 0 ? -1 / (w * z.imag()) : 1e3) << "\n";
    deck << "ac lin 1 " << p.f << " " << p.f << "\necho @point\nprint all\n";
  }
  deck << ".endc\n.end\n";
  WriteWhole(dir / "check.cir", deck.str());
  (void)std::system(
      ("ngspice -b " + (dir / "check.cir") + " > " + (dir / "check.out") + " 2> /dev/null")
          .c_str());
  std::vector<std::map<std::string, Cx>> out;
  std::istringstream text(ReadWhole(dir / "check.out"));
  const std::regex value(R"(^(\S+) = (\S+),(\S+))");
  for (std::string line; std::getline(text, line);) {
    std::smatch m;
    if (line.starts_with("@point")) out.emplace_back();
    if (!out.empty() && std::regex_search(line, m, value))
      out.back()[m[1]] = Cx(std::stod(m[2]), std::stod(m[3]));
  }
  return out;
}

// A part of the netlist: the nodes across it, and for an inductor the
// node between it and its loss resistor.
struct NetPart {
  std::string a, b, inner;
  double value;
};

std::map<std::string, NetPart> NetParts(const std::string& net) {
  std::map<std::string, NetPart> parts;
  std::map<std::string, std::string> lossTo;  // RSERk's far node
  std::istringstream lines(net);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string name, a, b, v;
    words >> name >> a >> b >> v;
    if (std::regex_match(name, std::regex("[LC][0-9]+"))) parts[name] = {a, b, b, std::stod(v)};
    if (std::regex_match(name, std::regex("RSER[0-9]+"))) lossTo["L" + name.substr(4)] = b;
  }
  for (auto& [name, p] : parts)
    if (lossTo.contains(name)) p.b = lossTo[name];
  return parts;
}

Cx V(const std::map<std::string, Cx>& at, const std::string& node) {
  return node == "0" ? Cx(0) : at.at(node);
}

// A part's voltage and current from the node voltages, at 1 V of EMF.
std::pair<double, double> Stress(const std::map<std::string, Cx>& at, const NetPart& p,
                                 bool inductor, double f) {
  const Cx jw(0, 2 * M_PI * f);
  const Cx v = V(at, p.a) - V(at, p.b);
  const Cx i = inductor ? (V(at, p.a) - V(at, p.inner)) / (jw * p.value) : jw * p.value * v;
  return {std::abs(v) / 2, std::abs(i) / 2};  // the netlist's generator is 2 V
}

TEST(StressCli, AgreesWithNgspiceAtItsMaximaAndNothingExceedsThem) {
  if (std::system("ngspice -v > /dev/null 2>&1") != 0) GTEST_SKIP() << "no ngspice";
  const TempFolder dir;
  const struct {
    const char* design;
    double tolerance;
  } cases[] = {
      {"--family chebyshev --order 5 --bandwidth 14.35M", 0.01},
      {"--family cauer --order 5 --bandwidth 14.35M --q 100 --vswr 2", 0.02},
      {"--family chebyshev --order 5 --topology Linhighpass --bandwidth 3M", 0.01},
      {"--family chebyshev --order 3 --topology Coupledbandpass --center 7.15M --bandwidth 300k",
       0.01},
      {"--family butterworth --order 4 --topology Cinbandpass --center 14.2M --bandwidth 1M", 0.01},
  };
  for (const auto& c : cases) {
    const std::string design = c.design;
    const Outcome r = Drenik("stress --power 100 --json " + design);
    ASSERT_EQ(r.status, 0) << r.err;
    const Json stress = ParseJson(r.out);
    const std::string vswrFree = std::regex_replace(design, std::regex(" --vswr \\S+"), "");
    ASSERT_EQ(Drenik("export --cir " + (dir / "f.cir") + " " + vswrFree).status, 0);
    const std::string net = ReadWhole(dir / "f.cir");
    const std::map<std::string, NetPart> parts = NetParts(net);
    const Json record = ParseJson(Drenik("design --json " + vswrFree).out);
    const double rload = record["Rload"].AsDouble(), emf = stress["emf"].AsDouble();
    const double s = stress["vswr"].AsDouble(), rho = (s - 1) / (s + 1);
    const bool mismatched = rho > 0;
    auto load = [&](double degrees) { return std::polar(rho, degrees * M_PI / 180); };

    // Each maximum where it falls, then a grid over the band and the
    // phases.
    std::vector<Point> points;
    for (const Json& p : stress["parts"].items) {
      points.push_back({p["f_v"].AsDouble(), load(p["phase_v"].AsDouble())});
      points.push_back({p["f_i"].AsDouble(), load(p["phase_i"].AsDouble())});
    }
    const size_t checks = points.size();
    for (const Json& band : stress["bands"].items)
      for (int k = 0; k <= 60; ++k) {
        const double lo = band.items[0].AsDouble(), hi = band.items[1].AsDouble();
        const double f = lo + (hi - lo) * (1 - std::cos(M_PI * k / 60)) / 2;
        for (int ph = 0; ph < (mismatched ? 12 : 1); ++ph) points.push_back({f, load(ph * 30.0)});
      }
    const auto at = Ngspice(net, rload, points, dir);
    ASSERT_EQ(at.size(), points.size()) << ReadWhole(dir / "check.out").substr(0, 2000);

    double worst = 0;
    size_t k = 0;
    for (const Json& p : stress["parts"].items) {
      const std::string name = p["name"].text;
      const bool inductor = p["kind"].text == "inductor";
      ASSERT_TRUE(parts.contains(name)) << name;
      const double v = emf * Stress(at[k], parts.at(name), inductor, points[k].f).first;
      const double i = emf * Stress(at[k + 1], parts.at(name), inductor, points[k + 1].f).second;
      k += 2;
      worst = std::max({worst, std::fabs(v / p["v_rms"].AsDouble() - 1),
                        std::fabs(i / p["i_rms"].AsDouble() - 1)});
      EXPECT_NEAR(v, p["v_rms"].AsDouble(), c.tolerance * v) << design << " " << name;
      EXPECT_NEAR(i, p["i_rms"].AsDouble(), c.tolerance * i) << design << " " << name;
      EXPECT_NEAR(p["v_peak"].AsDouble(), std::sqrt(2) * p["v_rms"].AsDouble(), 1e-9 * v);
      for (size_t g = checks; g < points.size(); ++g) {
        const auto [gv, gi] = Stress(at[g], parts.at(name), inductor, points[g].f);
        EXPECT_LE(emf * gv, p["v_rms"].AsDouble() * (1 + c.tolerance)) << design << " " << name;
        EXPECT_LE(emf * gi, p["i_rms"].AsDouble() * (1 + c.tolerance)) << design << " " << name;
      }
    }
    std::cout << "[ stress ] " << design << ": largest deviation from ngspice " << worst << "\n";
    const Json& total = stress["total"];
    EXPECT_NEAR(total["p_diss"].AsDouble(), total["p_in"].AsDouble() - total["p_out"].AsDouble(),
                1e-6 * total["p_in"].AsDouble());
  }
}

// The parts list rated at a power: each capacitor at the standard rating at
// or above twice the peak voltage the stress of the chosen parts gives it,
// each inductor with its RMS current; without --power the list is as ever.
TEST(StressCli, PartsListCarriesTheRatingsOfTheChosenParts) {
  const TempFolder dir;
  const std::string design = " --bandwidth 15M --power 1500 --vswr 2";
  const Json stress = ParseJson(Drenik("stress --values chosen --json" + design).out);
  ASSERT_EQ(Drenik("parts --quiet --bom " + (dir / "bom.csv") + design).status, 0);
  const std::string bom = ReadWhole(dir / "bom.csv");
  EXPECT_TRUE(
      bom.starts_with("Reference,Value,Series,Tolerance,Quantity,Voltage rating,RMS current"));
  const Json parts = ParseJson(Drenik("parts --quiet --json" + design).out);
  ASSERT_EQ(parts["ratings"].items.size(), stress["parts"].items.size());
  for (size_t k = 0; k < stress["parts"].items.size(); ++k) {
    const Json& s = stress["parts"].items[k];
    const Json& r = parts["ratings"].items[k];
    EXPECT_EQ(r["name"].text, s["name"].text);
    if (s["kind"].text == "capacitor") {
      const double peak = s["v_peak"].AsDouble();
      EXPECT_NEAR(r["v_peak"].AsDouble(), peak, 1e-9 * peak);
      const double rating = r["rating"].AsDouble();
      EXPECT_TRUE(rating >= 2 * peak || rating == 0) << rating << " for " << peak;
      EXPECT_NE(bom.find(s["name"].text + ","), std::string::npos);
    } else {
      EXPECT_NEAR(r["i_rms"].AsDouble(), s["i_rms"].AsDouble(), 1e-9);
    }
  }
  ASSERT_EQ(Drenik("parts --quiet --bom " + (dir / "plain.csv")).status, 0);
  EXPECT_EQ(ReadWhole(dir / "plain.csv").find("rating"), std::string::npos);
}

TEST(StressCli, RefusesBadPowerAndVswrNamingTheOption) {
  const std::pair<const char*, const char*> cases[] = {
      {"stress", "--power"},
      {"stress --power 0", "--power"},
      {"stress --power -5", "--power"},
      {"stress --power 100 --vswr 0.5", "--vswr"},
      {"stress --power 100 --band 14M", "--band"},
      {"parts --vswr 2", "--vswr"},
      {"design --power 100", "--power"},
  };
  for (const auto& [line, option] : cases) {
    const Outcome r = Drenik(line);
    EXPECT_EQ(r.status, 2) << line;
    EXPECT_NE(r.err.find(option), std::string::npos) << line << ": " << r.err;
    EXPECT_EQ(r.out, "") << line;
  }
}

}  // namespace
}  // namespace drenik::testing
