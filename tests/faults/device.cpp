// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/device.h"

#include "tests/kit/calibrations.h"
#include "tests/kit/doubles.h"

std::string commonText() {
  return calibrationWith(kAntenna5, kAntenna9) +
         "version=1\n"
         "xtal_trim=1\n"
         "temperature_reference=1\n"
         "patch_antenna_on_the_back.ch5.prf64.tx_power=1\n"
         "slot_antenna_on_the_edge.ch9.prf64.tx_power=1\n" +
         std::string(3000, '#') +
         "\n"
         "temperature_reference=20 ; the longest assignment, with a note on who measured it\n";
}

std::string countryText() {
  return "version=0x0102\n"
         "xtal_trim=40\n"
         "patch_antenna_on_the_back.ch5.prf64.tx_power=0x11223344\n"
         "slot_antenna_on_the_edge.ch9.prf64.tx_power=0xAABBCCDD\n";
}

std::string pathFileText() {
  return std::string(kCommonFile) + "\ncalibration_of_the_country_<country>.conf\n";
}

Device::Device() {
  write(kPathFile, pathFileText());
  write(kCommonFile, commonText());
  write(kCountryFile, countryText());
  setProperty(kPathsProperty, kPathFile);
  setProperty(kCountryProperty, "FR");
  takeLog();
}

Device::~Device() {
  clearProperties();
}
