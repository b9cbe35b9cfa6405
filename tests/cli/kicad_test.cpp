// The KiCad schematic read back as KiCad reads it: an s-expression whose
// placed symbols' pins, worked out from the embedded library symbols, each
// meet a wire end, a junction, a label or another pin on the 1.27 mm grid,
// and whose circuit is the SPICE netlist's: the same parts between the same
// nets. Every topology and element kind, at every value stage.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <map>
#include <numeric>
#include <regex>
#include <set>
#include <sstream>

#include "support/run_cli.h"
#include "support/temp_folder.h"

namespace drenik::testing {
namespace {

struct Sexpr {
  std::string atom;  // empty for a list
  std::vector<Sexpr> items;
  const std::string& Head() const { return items.at(0).atom; }
  std::vector<const Sexpr*> All(const std::string& head) const {
    std::vector<const Sexpr*> out;
    for (const Sexpr& s : items)
      if (!s.items.empty() && s.Head() == head) out.push_back(&s);
    return out;
  }
  const Sexpr& Get(const std::string& head) const { return *All(head).at(0); }
  double Num(size_t k) const { return std::stod(items.at(k).atom); }
};

Sexpr Parse(const std::string& t, size_t& p) {
  while (std::isspace(static_cast<unsigned char>(t.at(p)))) ++p;
  Sexpr s;
  if (t[p] == '(') {
    ++p;
    for (;;) {
      while (std::isspace(static_cast<unsigned char>(t.at(p)))) ++p;
      if (t[p] == ')') return ++p, s;
      s.items.push_back(Parse(t, p));
    }
  }
  if (t[p] == '"') {
    for (++p; t.at(p) != '"'; ++p) s.atom += t[p] == '\\' ? t.at(++p) : t[p];
    return ++p, s;
  }
  while (!std::isspace(static_cast<unsigned char>(t.at(p))) && t[p] != '(' && t[p] != ')')
    s.atom += t[p++];
  return s;
}

// A point in hundredths of a millimetre, checked to lie on the grid.
using Pt = std::pair<long, long>;
Pt At(double x, double y) {
  const Pt p{std::lround(x * 100), std::lround(y * 100)};
  EXPECT_EQ(p.first % 127, 0) << x;
  EXPECT_EQ(p.second % 127, 0) << y;
  return p;
}

struct Circuit {
  std::map<std::string, std::pair<std::string, std::string>> parts;  // name: its two nets
  std::map<std::string, std::string> values;
};

// The drawn circuit: nets are the points joined by wires; the labels name
// "in" and "out", the ground symbols "0".
Circuit Drawn(const Sexpr& sch) {
  std::map<std::string, std::vector<Pt>> libraryPins;
  for (const Sexpr* sym : sch.Get("lib_symbols").All("symbol"))
    for (const Sexpr* unit : sym->All("symbol"))
      for (const Sexpr* pin : unit->All("pin"))
        libraryPins[sym->items[1].atom].push_back(
            {std::lround(pin->Get("at").Num(1) * 100), std::lround(pin->Get("at").Num(2) * 100)});

  std::map<Pt, Pt> parent;  // union of points
  std::function<Pt(Pt)> find = [&](Pt p) {
    if (!parent.contains(p)) parent[p] = p;
    return parent[p] == p ? p : parent[p] = find(parent[p]);
  };
  std::map<Pt, int> ends;  // wire ends, junctions, labels and pins at each point
  std::vector<std::pair<Pt, Pt>> wires;
  for (const Sexpr* w : sch.All("wire")) {
    const Sexpr& pts = w->Get("pts");
    const Pt a = At(pts.items[1].Num(1), pts.items[1].Num(2));
    const Pt b = At(pts.items[2].Num(1), pts.items[2].Num(2));
    parent[find(a)] = find(b);
    ++ends[a], ++ends[b];
    wires.push_back({a, b});
  }
  for (const Sexpr* j : sch.All("junction")) ++ends[At(j->Get("at").Num(1), j->Get("at").Num(2))];
  std::map<Pt, std::string> named;
  for (const Sexpr* l : sch.All("global_label")) {
    const Pt p = At(l->Get("at").Num(1), l->Get("at").Num(2));
    named[p] = l->items[1].atom == "IN" ? "in" : "out";
    ++ends[p];
  }
  struct Placed {
    std::string ref, value;
    std::vector<Pt> pins;
  };
  std::vector<Placed> placed;
  for (const Sexpr* s : sch.All("symbol")) {
    const Sexpr& at = s->Get("at");
    const double turn = at.Num(3) * M_PI / 180;
    Placed p;
    for (const Sexpr* prop : s->All("property")) {
      if (prop->items[1].atom == "Reference") p.ref = prop->items[2].atom;
      if (prop->items[1].atom == "Value") p.value = prop->items[2].atom;
    }
    // The library's y runs up, the sheet's down.
    for (const auto& [x, y] : libraryPins.at(s->Get("lib_id").items[1].atom)) {
      const double rx = x * std::cos(turn) - y * std::sin(turn);
      const double ry = x * std::sin(turn) + y * std::cos(turn);
      p.pins.push_back(At(at.Num(1) + rx / 100, at.Num(2) - ry / 100));
      ++ends[p.pins.back()];
    }
    // Ground, and the flag on it.
    if (p.ref.starts_with("#")) named[p.pins.at(0)] = "0";
    placed.push_back(p);
  }
  // Every pin meets something, and no wire end lies inside another wire
  // (where KiCad would need a junction to join them).
  for (const Placed& p : placed)
    for (const Pt& pin : p.pins) EXPECT_GE(ends[pin], 2) << p.ref << " has a pin in the air";
  for (const auto& [a, b] : wires)
    for (const auto& [p, n] : ends) {
      const bool inside =
          (a.first == b.first && p.first == a.first && p.second > std::min(a.second, b.second) &&
           p.second < std::max(a.second, b.second)) ||
          (a.second == b.second && p.second == a.second && p.first > std::min(a.first, b.first) &&
           p.first < std::max(a.first, b.first));
      EXPECT_FALSE(inside) << "something ends inside a wire";
    }

  std::map<Pt, std::string> netName;
  for (const auto& [p, name] : named) netName[find(p)] = name;
  auto net = [&](Pt p) {
    const Pt root = find(p);
    if (!netName.contains(root)) netName[root] = "k" + std::to_string(netName.size());
    return netName[root];
  };
  Circuit c;
  for (const Placed& p : placed) {
    if (p.ref.starts_with("#")) continue;
    EXPECT_EQ(p.pins.size(), 2u);
    c.parts[p.ref] = {net(p.pins[0]), net(p.pins[1])};
    c.values[p.ref] = p.value;
  }
  return c;
}

// The netlist's inductors and capacitors; a loss resistor or a lead
// inductance joins its nodes (the drawing shows each part as one symbol).
Circuit Netlisted(const std::string& net, std::map<std::string, double>& values) {
  std::map<std::string, std::string> same;
  std::function<std::string(const std::string&)> find = [&](const std::string& n) {
    return same.contains(n) && same[n] != n ? same[n] = find(same[n]) : n;
  };
  std::vector<std::tuple<std::string, std::string, std::string>> parts;
  std::istringstream lines(net);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string name, a, b, v;
    words >> name >> a >> b >> v;
    if (std::regex_match(name, std::regex("(RSER|LESL)[0-9]+"))) same[find(a)] = find(b);
    if (std::regex_match(name, std::regex("[LC][0-9]+"))) {
      parts.emplace_back(name, a, b);
      values[name] = std::stod(v);
    }
  }
  Circuit c;
  for (const auto& [name, a, b] : parts) c.parts[name] = {find(a), find(b)};
  return c;
}

// The same parts between the same nets: the netlist's nets map one to one
// onto the drawing's, starting from the input, the output and ground.
void ExpectSameCircuit(const Circuit& drawn, const Circuit& net, const std::string& what) {
  ASSERT_EQ(drawn.parts.size(), net.parts.size()) << what;
  std::map<std::string, std::string> map;
  auto tie = [&](const std::string& a, const std::string& x) {
    if (!map.contains(a)) map[a] = x;
    return map[a] == x;
  };
  for (const char* n : {"in", "out", "0"}) tie(n, n);
  for (size_t pass = 0; pass < net.parts.size() + 1; ++pass)
    for (const auto& [name, nodes] : net.parts) {
      ASSERT_TRUE(drawn.parts.contains(name)) << what << ": " << name << " is not drawn";
      const auto& [x, y] = drawn.parts.at(name);
      const auto& [a, b] = nodes;
      if (map.contains(a)) {
        EXPECT_TRUE(map[a] == x ? tie(b, y) : (map[a] == y && tie(b, x))) << what << " " << name;
      } else if (map.contains(b)) {
        EXPECT_TRUE(map[b] == x ? tie(a, y) : (map[b] == y && tie(a, x))) << what << " " << name;
      }
    }
  std::set<std::string> images;
  for (const auto& [a, x] : map) images.insert(x);
  EXPECT_EQ(images.size(), map.size()) << what << ": two nets drawn as one";
  for (const auto& [name, nodes] : net.parts)
    EXPECT_TRUE(map.contains(nodes.first) && map.contains(nodes.second)) << what << " " << name;
}

// "761.078nH" in henries.
double ValueOf(const std::string& text) {
  size_t end = 0;
  const double v = std::stod(text, &end);
  const std::string prefixes = "pnumkMG";
  const size_t k = prefixes.find(text.at(end));
  return k == std::string::npos ? v : v * std::pow(1000.0, static_cast<double>(k) - 4);
}

TEST(KicadSchematic, EveryPinConnectsAndTheCircuitIsTheNetlists) {
  const TempFolder dir;
  const char* designs[] = {
      "--family chebyshev --order 5",
      "--family bessel --order 4 --topology Linlowpass",
      "--family cauer --order 7 --stopband 50",
      "--family chebyshev --order 6 --topology Linhighpass --ripple 0.2",
      "--family cauer --order 5 --topology Linhighpass --q 100 --cesl 2n --lcp 1p",
      "--family zelmar --topology Cinhighpass",
      "--family chebyshev --order 5 --topology Cinbandpass --center 7.15M --bandwidth 300k",
      "--family cauer --order 5 --topology Linbandpass --center 14.2M --bandwidth 1M",
      "--family cauer --order 5 --topology Cinbandstop --center 14.2M --bandwidth 1M",
      "--family butterworth --order 4 --topology Linbandstop --center 98M --bandwidth 20M",
      "--family chebyshev --order 3 --topology Coupledbandpass --center 7.15M --bandwidth 300k"};
  for (const char* design : designs)
    for (const char* stage : {"exact", "5c", "5l", "chosen"}) {
      const std::string what = std::string(design) + " --values " + stage;
      const Outcome r = Drenik("export --kicad " + (dir / "f.kicad_sch") + " --cir " +
                               (dir / "f.cir") + " " + what);
      ASSERT_EQ(r.status, 0) << what << ": " << r.err;
      const std::string text = ReadWhole(dir / "f.kicad_sch");
      size_t p = 0;
      const Sexpr sch = Parse(text, p);
      ASSERT_EQ(sch.Head(), "kicad_sch");
      EXPECT_EQ(sch.Get("version").items[1].atom, "20211123");
      std::map<std::string, double> values;
      const Circuit drawn = Drawn(sch);
      ExpectSameCircuit(drawn, Netlisted(ReadWhole(dir / "f.cir"), values), what);
      // The schematic's value text, to its five or six figures.
      for (const auto& [name, v] : values)
        EXPECT_NEAR(ValueOf(drawn.values.at(name)), v, 1e-4 * v) << what << " " << name;
    }
}

}  // namespace
}  // namespace drenik::testing
