#pragma once
// A small JSON reader for the program's own output; numbers keep their text.

#include <map>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

namespace drenik::testing {

struct Json {
  enum class Kind { Null, Number, String, Array, Object } kind = Kind::Null;
  std::string text;  // number token or string value
  std::vector<Json> items;
  std::map<std::string, Json> fields;

  const Json& operator[](const std::string& name) const { return fields.at(name); }
  float AsFloat() const { return std::stof(text); }
  double AsDouble() const { return std::stod(text); }
  long AsInt() const { return std::stol(text); }
};

inline Json ParseJsonAt(const std::string& s, size_t& p) {
  auto space = [&] { p = s.find_first_not_of(" \t\r\n", p); };
  auto expect = [&](char c) {
    space();
    if (p == std::string::npos || s[p] != c) throw std::runtime_error(std::string("want ") + c);
    ++p;
  };
  auto string = [&] {
    expect('"');
    std::string out;
    for (; s.at(p) != '"'; ++p) out += s[p] == '\\' ? s.at(++p) : s[p];
    ++p;
    return out;
  };
  space();
  Json j;
  char c = s.at(p);
  if (c == '{' || c == '[') {
    j.kind = c == '{' ? Json::Kind::Object : Json::Kind::Array;
    const char close = c == '{' ? '}' : ']';
    ++p;
    space();
    for (bool more = s.at(p) != close; more;) {
      if (c == '{') {
        std::string name = string();
        expect(':');
        j.fields[name] = ParseJsonAt(s, p);
      } else {
        j.items.push_back(ParseJsonAt(s, p));
      }
      space();
      if ((more = s.at(p) == ',')) ++p;
    }
    expect(close);
  } else if (c == '"') {
    j.kind = Json::Kind::String;
    j.text = string();
  } else if (s.compare(p, 4, "null") == 0) {
    p += 4;
  } else {
    // JSON's grammar; a leading zero's digits or a bare point fail as the next token.
    static const std::regex number(R"(-?(0|[1-9]\d*)(\.\d+)?([eE][+-]?\d+)?)");
    std::smatch m;
    if (!std::regex_search(s.begin() + static_cast<long>(p), s.end(), m, number,
                           std::regex_constants::match_continuous)) {
      throw std::runtime_error("bad number at " + std::to_string(p));
    }
    j.kind = Json::Kind::Number;
    j.text = m.str();
    p += j.text.size();
  }
  return j;
}

inline Json ParseJson(const std::string& text) {
  size_t p = 0;
  Json j = ParseJsonAt(text, p);
  p = text.find_first_not_of(" \t\r\n", p);
  if (p != std::string::npos) throw std::runtime_error("trailing text");
  return j;
}

}  // namespace drenik::testing
