// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/device.h"

#include "include/tarnix_uwb_params_nfcc.h"

std::string commonText() {
  return "# The antennas, and what the country's file replaces.\n"
         "version=1\n"
         "temperature_reference=1\n"
         "xtal_trim=1\n"
         "wifi_coex_time_gap=1\n"
         "ap_coop_mode=2\n"
         "alternate_pulse_shape=1\n"
         "wifi_coex_min_spacing=1\n"
         "ch5.antenna_selection=patch_antenna_on_the_back\n"
         "ch9.antenna_selection=slot_antenna_on_the_edge\n"
         "patch_antenna_on_the_back.selector_gpio=6\n"
         "patch_antenna_on_the_back.selector_gpio_value=0\n"
         "patch_antenna_on_the_back.port=0\n"
         "slot_antenna_on_the_edge.selector_gpio=6\n"
         "slot_antenna_on_the_edge.selector_gpio_value=1\n"
         "slot_antenna_on_the_edge.port=1\n"
         "patch_antenna_on_the_back.ch5.prf64.ant_delay=1\n"
         "patch_antenna_on_the_back.ch5.prf64.tx_power=1\n"
         "patch_antenna_on_the_back.ch5.prf64.pg_count=1\n"
         "patch_antenna_on_the_back.ch5.prf64.pg_delay=1\n"
         "slot_antenna_on_the_edge.ch9.prf64.ant_delay=1\n"
         "slot_antenna_on_the_edge.ch9.prf64.tx_power=1\n"
         "slot_antenna_on_the_edge.ch9.prf64.pg_count=1\n"
         "slot_antenna_on_the_edge.ch9.prf64.pg_delay=1\n" +
         std::string(3000, '#') +
         "\n"
         "version=2\n"
         "temperature_reference=20\n"
         "xtal_trim=40 ; the longest line of assignment, with a note on who measured it, and "
         "when\n";
}

std::string countryText() {
  return "wifi_coex_time_gap=8\n"
         "ap_coop_mode=1\n"
         "alternate_pulse_shape=0\n"
         "wifi_coex_min_spacing=3\n"
         "patch_antenna_on_the_back.ch5.prf64.ant_delay=16400\n"
         "patch_antenna_on_the_back.ch5.prf64.tx_power=0x11223344\n"
         "patch_antenna_on_the_back.ch5.prf64.pg_count=12\n"
         "patch_antenna_on_the_back.ch5.prf64.pg_delay=30\n"
         "slot_antenna_on_the_edge.ch9.prf64.ant_delay=16385\n"
         "slot_antenna_on_the_edge.ch9.prf64.tx_power=0x55667788\n"
         "slot_antenna_on_the_edge.ch9.prf64.pg_count=14\n"
         "slot_antenna_on_the_edge.ch9.prf64.pg_delay=31\n";
}

std::string pathFileText() {
  return std::string(kCommonFile) + "\ncalibration_of_the_country_<country>.conf\n";
}

std::vector<uint8_t> deviceBlock() {
  std::vector<uint8_t> block = {0xf4, 0x95, 0x00, 0x02, 0x40, 0x01, 0x40, 0x10, 0x55, 0x66,
                                0x77, 0x88, 0x00, 0x0e, 0x1f, 0x11, 0x22, 0x33, 0x44, 0x00,
                                0x0c, 0x1e, 0x00, 0x00, 0x00, 0x00, 0x14, 0x28, 0x00, 0x00,
                                0x00, 0x08, 0x01, 0x01, 0x00, 0x03, 0x03, 0x01, 0x02};
  block.resize(TARNIX_UWB_PARAMS_SIZE);
  return block;
}

Device::Device() {
  write(kPathFile, pathFileText());
  write(kCommonFile, commonText());
  write(kCountryFile, countryText());
}
