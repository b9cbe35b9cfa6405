#pragma once
// The space the search runs over: the families and topologies it may
// try, and the ripples and depths each family is tried at. One place, so
// that the search and any exhaustive check of it walk the same space.

#include <string>
#include <vector>

#include "synth/responses.h"
#include "synth/synth.h"
#include "synthesis/families.h"
#include "synthesis/topologies.h"

namespace drenik {

// The goal's families (every one that takes an order when it names none),
// in the table's order.
std::vector<const FamilyInfo*> SearchFamilies(const SynthGoal& g);
// The goal's topologies of the response (every one when it names none).
std::vector<std::string> SearchTopologies(const SynthRequest& r);

// The ripples an equal-ripple family is tried at (one for a family
// without a ripple choice), and the depths of an elliptic family.
std::vector<double> RippleChoices(const SynthRequest& r, const FamilyInfo& f);
std::vector<double> DepthChoices(const SynthRequest& r, const FamilyInfo& f);

}  // namespace drenik
