// A fuzz target without libFuzzer, for the ordinary test build: every file of
// the corpus folders named on the command line, then a fixed number of seeded
// mutations of each (bytes flipped, dropped, repeated, inserted, pieces of
// two inputs spliced, and with a dictionary its words inserted). The same
// seed gives the same inputs on every run, so a failure found here is found
// again; the real coverage-guided hunt is `make fuzz`.
//
// usage: fuzz_NAME [--mutations N] [--dict FILE] FOLDER...
// FILE is a libFuzzer dictionary: one "word" a line, with \\, \" and \xNN.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

using Bytes = std::vector<uint8_t>;

Bytes ReadAll(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Bytes the targets' parsers treat specially: digits, separators, signs, the
// metric prefixes, line ends and a few that no text file should hold.
constexpr char kInteresting[] = "0123456789.,-+eEkMmunpG \t\r\n\"=:;/x\x7f\xff";

// The words of a libFuzzer dictionary; lines that hold none are skipped.
std::vector<Bytes> ReadDictionary(const std::string& path) {
  std::vector<Bytes> words;
  std::ifstream in(path);
  for (std::string line; std::getline(in, line);) {
    const size_t open = line.find('"'), close = line.rfind('"');
    if (line.starts_with("#") || open == std::string::npos || close <= open) continue;
    Bytes word;
    for (size_t i = open + 1; i < close; ++i) {
      if (line[i] == '\\' && i + 1 < close && line[i + 1] == 'x' && i + 3 < close) {
        word.push_back(static_cast<uint8_t>(std::stoi(line.substr(i + 2, 2), nullptr, 16)));
        i += 3;
      } else {
        if (line[i] == '\\' && i + 1 < close) ++i;
        word.push_back(static_cast<uint8_t>(line[i]));
      }
    }
    words.push_back(std::move(word));
  }
  return words;
}

Bytes Mutate(const Bytes& seed, const Bytes& other, const std::vector<Bytes>& words,
             std::mt19937_64& random) {
  Bytes out = seed;
  const int edits = 1 + static_cast<int>(random() % 4);
  for (int e = 0; e < edits; ++e) {
    const size_t at = out.empty() ? 0 : random() % (out.size() + 1);
    const uint8_t pick = static_cast<uint8_t>(kInteresting[random() % (sizeof kInteresting - 1)]);
    // Without a dictionary the same choices as ever, so the inputs stay.
    switch (random() % (words.empty() ? 6 : 7)) {
      case 6: {
        const Bytes& word = words[random() % words.size()];
        out.insert(out.begin() + static_cast<std::ptrdiff_t>(at), word.begin(), word.end());
        break;
      }
      case 0:
        if (at < out.size()) out[at] ^= static_cast<uint8_t>(1u << (random() % 8));
        break;
      case 1:
        if (at < out.size()) out.erase(out.begin() + static_cast<std::ptrdiff_t>(at));
        break;
      case 2:
        out.insert(out.begin() + static_cast<std::ptrdiff_t>(at), pick);
        break;
      case 3:
        if (at < out.size()) out[at] = pick;
        break;
      case 4:
        if (at < out.size()) {
          const size_t length = 1 + random() % std::min<size_t>(16, out.size() - at);
          const Bytes piece(out.begin() + static_cast<std::ptrdiff_t>(at),
                            out.begin() + static_cast<std::ptrdiff_t>(at + length));
          out.insert(out.begin() + static_cast<std::ptrdiff_t>(at), piece.begin(), piece.end());
        }
        break;
      default:
        if (!other.empty()) {
          const size_t from = random() % other.size();
          out.resize(at);
          out.insert(out.end(), other.begin() + static_cast<std::ptrdiff_t>(from), other.end());
        }
        break;
    }
  }
  return out;
}

}  // namespace

int main(int argc, char** argv) {
  long mutations = 0;
  std::vector<Bytes> seeds, words;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--mutations" && i + 1 < argc) {
      mutations = std::stol(argv[++i]);
      continue;
    }
    if (arg == "--dict" && i + 1 < argc) {
      words = ReadDictionary(argv[++i]);
      continue;
    }
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(arg, error))
      if (entry.is_regular_file()) seeds.push_back(ReadAll(entry.path()));
    if (error) {
      std::fprintf(stderr, "%s: cannot read %s: %s\n", argv[0], arg.c_str(),
                   error.message().c_str());
      return 2;
    }
  }
  seeds.push_back({});
  std::mt19937_64 random(20261125);
  long runs = 0;
  for (const Bytes& seed : seeds) {
    LLVMFuzzerTestOneInput(seed.data(), seed.size()), ++runs;
    for (long m = 0; m < mutations; ++m) {
      const Bytes input = Mutate(seed, seeds[random() % seeds.size()], words, random);
      LLVMFuzzerTestOneInput(input.data(), input.size()), ++runs;
    }
  }
  std::printf("%ld inputs from %zu seeds, no fault\n", runs, seeds.size() - 1);
  return 0;
}
