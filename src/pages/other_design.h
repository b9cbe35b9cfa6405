#pragma once
// The design page's choices beyond its buttons: any order, ripple and
// stopband depth the family takes (the family table's ranges), through its
// "Other order and ripple" dialog. The command line drives the page the
// same way for the values that are not buttons.

#include <string>

#include "core/design_record.h"

namespace drenik {

struct FamilyInfo;

struct OtherDesign {
  const FamilyInfo* family = nullptr;  // whose ranges apply
  int order = 5;
  double ripple = 0.044;  // dB, a family with a ripple
  double depth = 40;      // dB, a family with a stopband depth
};

// The record's family and values.
OtherDesign OtherDesignOf(const DesignRecord& d);

// One line naming the first value the family does not take; empty when it
// takes them all.
std::string OtherDesignFault(const OtherDesign& o);

// The page's line for a design beyond its buttons ("Order 9, 0.015 dB
// ripple, 70 dB depth": the values that are not buttons and the others of
// the family); empty for a design of the buttons.
std::string BeyondButtonsCaption(const DesignRecord& d);

}  // namespace drenik
