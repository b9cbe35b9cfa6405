#pragma once
// ngspice in batch mode on the program's own SPICE netlist of a design: the
// voltage at the load at each frequency of the netlist's .ac sweep (the
// design's own sweep points), for the tests that hold the analysis against
// an independent simulator.

#include <complex>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "core/design_record.h"
#include "export/writers.h"

namespace drenik::testing {

inline bool HaveNgspice() {
  return std::system("ngspice -v > /dev/null 2>&1") == 0;
}

inline std::vector<std::pair<double, std::complex<double>>> Simulate(
    const DesignRecord& d, const std::filesystem::path& dir) {
  const std::string net = SpiceNetlistText(d);
  const std::filesystem::path out = dir / "vout.txt", cir = dir / "ladder.cir";
  std::ofstream(cir) << net.substr(0, net.rfind(".end")) << ".control\nset wr_singlescale\nrun\n"
                     << "wrdata " << out.string() << " v(out)\n.endc\n.end\n";
  std::filesystem::remove(out);
  // ngspice -b exits with 1 without a .print line: the data file tells.
  (void)std::system(("ngspice -b " + cir.string() + " > /dev/null 2>&1").c_str());
  std::vector<std::pair<double, std::complex<double>>> points;
  std::ifstream in(out);
  double f, re, im;
  while (in >> f >> re >> im) points.push_back({f, {re, im}});
  return points;
}

// |S21| in dB from ngspice's V(out) behind a 2 V source in Rsource.
inline double SimulatedDb(const DesignRecord& d, std::complex<double> v) {
  return 20 * std::log10(std::abs(v)) + 10 * std::log10(d.Rsource / d.Rload);
}

}  // namespace drenik::testing
