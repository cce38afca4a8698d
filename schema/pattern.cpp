// SPDX-License-Identifier: Apache-2.0
#include "schema/pattern.h"

#include "schema/tree.h"

constexpr std::nullopt_t none = std::nullopt;

// The order of the rows is the order of print, of serialize and of the report of missing
// parameters. Depth is the indentation in print; ids and tags are the bytes that serialize writes.

// clang-format off
Pattern::Pattern(antenna_selection const& selection)
    : AstRoot("", none, 0, {
          param("version",               0, none, &calib.version),
          buildAntParams(selection.ch5, "ch5", &calib.ch5, ""),
          buildAntParams(selection.ch9, "ch9", &calib.ch9, selection.ch5),
          // The antennas' depth is 1, yet the root's own parameters keep 0.
          param("temperature_reference", 0, 3,    &calib.temperature_reference),
          param("xtal_trim",             0, 4,    &calib.xtal_trim),
          param("wifi_coex_time_gap",    0, 5,    &calib.wifi_coex_time_gap),
          param("ap_coop_mode",          0, 6,    &calib.ap_coop_mode),
          param("alternate_pulse_shape", 0, none, &calib.alternate_pulse_shape),
          param("wifi_coex_min_spacing", 0, none, &calib.wifi_coex_min_spacing),
      }, 0),
      sameAntenna(selection.ch5 == selection.ch9) {}

std::shared_ptr<AstPrefix> Pattern::buildAntParams(std::string const& antennaName,
                                                   std::string const& channelName,
                                                   antenna_calib* target,
                                                   std::string const& otherAntennaName) {
  if (otherAntennaName == antennaName) {
    return group(antennaName, 1, 1, {
        buildAntChanParams(channelName, target),
    });
  }
  return group(antennaName, 1, 1, {
      buildAntChanParams(channelName, target),
      // The value comes before the line it belongs to; the record has them the other way round.
      param("selector_gpio_value", 2, 253, &target->selector_gpio_value),
      param("selector_gpio",       2, 254, &target->selector_gpio),
      // Not 255, as its siblings' ids would suggest.
      param("port",                2, 0,   &target->port),
  });
}

std::shared_ptr<AstPrefix> Pattern::buildAntChanParams(std::string const& channelName,
                                                       antenna_calib* target) {
  // A channel has tag 10, while its antenna and its pulse repetition frequency share tag 1.
  return group(channelName, 2, 10, {
      group("prf64", 3, 1, {
          param("ant_delay", 4, 0, &target->ant_delay),
          param("tx_power",  4, 1, &target->tx_power),
          param("pg_count",  4, 2, &target->pg_count),
          param("pg_delay",  4, 3, &target->pg_delay),
      }),
  });
}
// clang-format on

Pattern::~Pattern() = default;
