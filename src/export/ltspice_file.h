#pragma once
// The LTspice schematic (.ASC). The writer is declared with the other
// writers in export/writers.h; these are its fixed texts.

namespace drenik {

inline constexpr const char* kLtspiceFailure = "We could not write the LTspice file";
// Who drew the schematic, in the comment line under the generator.
inline constexpr const char* kLtspiceCredit = "Drenik Filter Designer 2.12";
// The smallest sheet width written.
inline constexpr float kMinSheetWidth = 800;

}  // namespace drenik
