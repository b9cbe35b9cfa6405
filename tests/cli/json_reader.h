#pragma once
// A small JSON reader for the program's own output; numbers keep their text.

#include <map>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

namespace drenik::testing {

struct Json {
  enum class Kind { Null, Bool, Number, String, Array, Object } kind = Kind::Null;
  std::string text;  // number token or string value
  std::vector<Json> items;
  std::map<std::string, Json> fields;

  const Json& operator[](const std::string& name) const { return fields.at(name); }
  float AsFloat() const { return std::stof(text); }
  double AsDouble() const { return std::stod(text); }
  long AsInt() const { return std::stol(text); }
};

inline Json ParseJsonAt(const std::string& s, size_t& p) {
  auto peek = [&] { return s.at(p = s.find_first_not_of(" \t\r\n", p)); };
  auto take = [&](char c) {
    if (peek() != c) throw std::runtime_error(std::string("want ") + c);
    ++p;
  };
  auto string = [&] {
    take('"');
    std::string out;
    for (; s.at(p) != '"'; ++p) out += s[p] == '\\' ? s.at(++p) : s[p];
    ++p;
    return out;
  };
  Json j;
  const char c = peek();
  if (c == '{' || c == '[') {
    j.kind = c == '{' ? Json::Kind::Object : Json::Kind::Array;
    const char close = c == '{' ? '}' : ']';
    ++p;
    for (bool more = peek() != close; more; more = peek() == ',' && ++p) {
      if (c == '[') {
        j.items.push_back(ParseJsonAt(s, p));
      } else {
        std::string name = string();
        take(':');
        j.fields[name] = ParseJsonAt(s, p);
      }
    }
    take(close);
  } else if (c == '"') {
    j.kind = Json::Kind::String;
    j.text = string();
  } else if (s.compare(p, 4, "null") == 0) {
    p += 4;
  } else if (s.compare(p, 4, "true") == 0 || s.compare(p, 5, "false") == 0) {
    j.kind = Json::Kind::Bool;
    j.text = s[p] == 't' ? "true" : "false";
    p += j.text.size();
  } else {
    // JSON's grammar; a leading zero's digits or a bare point fail as the next token.
    static const std::regex number(R"(-?(0|[1-9]\d*)(\.\d+)?([eE][+-]?\d+)?)");
    std::smatch m;
    if (!std::regex_search(s.begin() + static_cast<long>(p), s.end(), m, number,
                           std::regex_constants::match_continuous))
      throw std::runtime_error("bad number at " + std::to_string(p));
    j.kind = Json::Kind::Number;
    p += (j.text = m.str()).size();
  }
  return j;
}

inline Json ParseJson(const std::string& text) {
  size_t p = 0;
  Json j = ParseJsonAt(text, p);
  if (text.find_first_not_of(" \t\r\n", p) != std::string::npos)
    throw std::runtime_error("trailing text");
  return j;
}

}  // namespace drenik::testing
