// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include "grammar/ast_root.h"
#include "schema/antenna_selection.h"
#include "schema/ccc_calib.h"

// The schema of a complete calibration for two given antennas. Parsing keeps the values in the
// nodes; `toBuffer` copies them into `calib`. Not copyable: the nodes point into `calib`.
class Pattern : public AstRoot {
 public:
  explicit Pattern(antenna_selection const& selection);
  ~Pattern() override;

  // The subtree of the antenna that serves `channelName`, bound to `target`. Omits the wiring keys
  // if both antenna names are equal.
  static std::shared_ptr<AstPrefix> buildAntParams(std::string const& antennaName,
                                                   std::string const& channelName,
                                                   antenna_calib* target,
                                                   std::string const& otherAntennaName);

  // The subtree of an antenna's values on `channelName`, bound to `target`.
  static std::shared_ptr<AstPrefix> buildAntChanParams(std::string const& channelName,
                                                       antenna_calib* target);

  // True when one antenna serves both channels. Then `calib.ch9` has no wiring of its own.
  const bool sameAntenna;

  // All zero until `toBuffer` fills it.
  ccc_calib calib{};
};
