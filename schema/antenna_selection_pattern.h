// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include "grammar/ast_root.h"
#include "schema/antenna_selection.h"

// The schema of the two keys that name the antennas: `ch5.antenna_selection` and
// `ch9.antenna_selection`. Every other line of a calibration text is ignored.
//
// All instances share one record of the two names, so no two conversions may run at once.
class AntennaSelectionPattern : public AstRoot {
 public:
  AntennaSelectionPattern();
  ~AntennaSelectionPattern() override;

  // The prefix of one channel, whose only parameter fills `target`. T is std::string.
  template <typename T>
  static std::shared_ptr<AstPrefix> buildAntSelectionParams(std::string const& channelName,
                                                            T* target);

  // Copies the names that were read into the shared record and returns a copy of the record. A name
  // that was not read keeps the value of the last conversion: call `validate` first.
  antenna_selection toAntennaSelection(EndiannessConversion conversion);

 private:
  // Defined in loader/lib.cpp, with the other data of load time. Empty at load, never cleared.
  static antenna_selection selected;
};
