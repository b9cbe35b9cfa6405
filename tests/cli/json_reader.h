#pragma once
// A small JSON reader for the tests: numbers keep their text so a test can
// check how they read back.

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace drenik::testing {

struct Json {
  enum class Kind { Null, Number, String, Array, Object } kind = Kind::Null;
  std::string text;  // number token or string value
  std::vector<Json> items;
  std::map<std::string, Json> fields;

  const Json& operator[](const std::string& name) const {
    auto it = fields.find(name);
    if (it == fields.end()) throw std::out_of_range("no field " + name);
    return it->second;
  }
  float AsFloat() const { return std::stof(text); }
  double AsDouble() const { return std::stod(text); }
  long AsInt() const { return std::stol(text); }
};

class JsonReader {
 public:
  explicit JsonReader(const std::string& s) : s_(s) {}
  Json Read() {
    Json j = Value();
    Space();
    if (p_ != s_.size()) throw std::runtime_error("trailing text");
    return j;
  }

 private:
  void Space() {
    while (p_ < s_.size() && std::isspace(static_cast<unsigned char>(s_[p_]))) ++p_;
  }
  void Expect(char c) {
    Space();
    if (p_ >= s_.size() || s_[p_] != c) throw std::runtime_error(std::string("expected ") + c);
    ++p_;
  }
  std::string String() {
    Expect('"');
    std::string out;
    while (p_ < s_.size() && s_[p_] != '"') {
      if (s_[p_] == '\\') ++p_;
      out += s_[p_++];
    }
    Expect('"');
    return out;
  }
  Json Value() {
    Space();
    Json j;
    char c = s_.at(p_);
    if (c == '{') {
      j.kind = Json::Kind::Object;
      ++p_;
      Space();
      if (s_[p_] == '}') return ++p_, j;
      do {
        std::string name = String();
        Expect(':');
        j.fields[name] = Value();
        Space();
      } while (s_[p_] == ',' && ++p_);
      Expect('}');
    } else if (c == '[') {
      j.kind = Json::Kind::Array;
      ++p_;
      Space();
      if (s_[p_] == ']') return ++p_, j;
      do {
        j.items.push_back(Value());
        Space();
      } while (s_[p_] == ',' && ++p_);
      Expect(']');
    } else if (c == '"') {
      j.kind = Json::Kind::String;
      j.text = String();
    } else if (s_.compare(p_, 4, "null") == 0) {
      p_ += 4;
    } else {
      // JSON's number grammar: -?(0|[1-9]digits)(.digits)?([eE][+-]?digits)?
      j.kind = Json::Kind::Number;
      size_t start = p_;
      if (s_[p_] == '-') ++p_;
      if (!std::isdigit(static_cast<unsigned char>(s_.at(p_)))) {
        throw std::runtime_error("bad number at " + std::to_string(start));
      }
      if (s_[p_] == '0' && p_ + 1 < s_.size() &&
          std::isdigit(static_cast<unsigned char>(s_[p_ + 1]))) {
        throw std::runtime_error("leading zero at " + std::to_string(start));
      }
      while (p_ < s_.size() && (std::isdigit(static_cast<unsigned char>(s_[p_])) ||
                                std::string(".eE+-").find(s_[p_]) != std::string::npos)) {
        if (s_[p_] == '.' && !std::isdigit(static_cast<unsigned char>(s_.at(p_ + 1)))) {
          throw std::runtime_error("no digit after the point");
        }
        ++p_;
      }
      j.text = s_.substr(start, p_ - start);
    }
    return j;
  }

  const std::string& s_;
  size_t p_ = 0;
};

inline Json ParseJson(const std::string& text) {
  return JsonReader(text).Read();
}

}  // namespace drenik::testing
