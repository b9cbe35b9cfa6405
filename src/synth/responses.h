#pragma once
// The four responses the search designs for, each fact about one in its
// row: read by the search, the centring, the order bounds, the mask's
// checks and the command line.

#include <string_view>

#include "synth/synth.h"
#include "synthesis/topologies.h"

namespace drenik {

struct ResponseInfo {
  SynthResponse response;
  const char* word = "";  // --response WORD, and in messages
  // A band response (its topologies are the band ones), a bandstop.
  bool band = false, bandstop = false;
  bool highpass = false;  // the passband lies above its edge
  // The passband gains as the width (the cutoff, a band's width) grows: a
  // lowpass's and a bandpass's; a highpass's cutoff moves up into its
  // passband and a bandstop's notch widens into it.
  bool passGrowsWithWidth = false;
};

inline constexpr ResponseInfo kResponses[] = {
    {.response = SynthResponse::Lowpass, .word = "lowpass", .passGrowsWithWidth = true},
    {.response = SynthResponse::Highpass, .word = "highpass", .highpass = true},
    {.response = SynthResponse::Bandpass,
     .word = "bandpass",
     .band = true,
     .passGrowsWithWidth = true},
    {.response = SynthResponse::Bandstop, .word = "bandstop", .band = true, .bandstop = true},
};

inline const ResponseInfo& ResponseOf(SynthResponse r) {
  for (const ResponseInfo& info : kResponses)
    if (info.response == r) return info;
  return kResponses[0];
}

// The response a command-line word names; nullptr for any other text.
inline const ResponseInfo* ResponseNamed(std::string_view word) {
  for (const ResponseInfo& info : kResponses)
    if (word == info.word) return &info;
  return nullptr;
}

// Whether the topology makes the response.
inline bool TopologyOf(const TopologyInfo& t, SynthResponse r) {
  const ResponseInfo& info = ResponseOf(r);
  return t.band == info.band && t.bandstop == info.bandstop &&
         (t.band || t.highpass == info.highpass);
}

}  // namespace drenik
