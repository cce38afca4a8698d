// SPDX-License-Identifier: Apache-2.0
#include "tools/probe/schema_map.h"

#include <cstring>
#include <sstream>

#include "output/calib_converter.h"
#include "schema/pattern.h"
#include "tools/block/selector_code.h"
#include "tools/device/library_log.h"

namespace {

template <typename T>
Bytes bytesOf(const T& record) {
  Bytes bytes(sizeof(record));
  std::memcpy(bytes.data(), &record, sizeof(record));
  return bytes;
}

// The bytes of the record that a text makes, each 1 where the text set it.
struct Touched {
  size_t offset = 0;
  size_t size = 0;
};

Touched recordBytesSetBy(const std::string& line, const antenna_selection& selection) {
  Pattern pattern(selection);
  const Bytes before = bytesOf(pattern.calib);
  const LogCapture log;
  std::istringstream text(line);
  pattern.parse(text);
  pattern.toBuffer(kMostSignificantByteFirst);
  const Bytes after = bytesOf(pattern.calib);
  Touched touched;
  for (size_t i = 0; i < after.size(); ++i) {
    if (after[i] == before[i]) continue;
    if (touched.size == 0) touched.offset = i;
    touched.size = i + 1 - touched.offset;
  }
  return touched;
}

// A record that the converter takes, and takes too when the lowest bit of any byte is flipped.
ccc_calib convertibleRecord() {
  ccc_calib calib{};
  uint8_t line = 0;
  while (!isSelectorLine(line) || !isSelectorLine(line ^ 1)) ++line;
  calib.ch5.selector_gpio = line;
  calib.ch9.selector_gpio = line;
  return calib;
}

const BlockField* fieldFedFrom(size_t record_offset) {
  const ccc_calib calib = convertibleRecord();
  Bytes changed = bytesOf(calib);
  changed[record_offset] ^= 1;
  ccc_calib changed_calib;
  std::memcpy(&changed_calib, changed.data(), sizeof(changed_calib));
  const Bytes before = bytesOf(CalibConverter::convert(calib));
  const Bytes after = bytesOf(CalibConverter::convert(changed_calib));
  for (const BlockField& field : blockFields()) {
    if (field.kind == FieldKind::Crc) continue;  // It moves with every other.
    for (size_t i = field.offset; i < field.end(); ++i) {
      if (before[i] != after[i]) return &field;
    }
  }
  return nullptr;
}

std::optional<ParameterPlace> placeOf(size_t parameter, const antenna_selection& selection,
                                      const SchemaProbe& probe) {
  const std::optional<uint32_t> largest = probe.largestNumber(parameter);
  if (!largest.has_value()) return std::nullopt;
  // All its bits are set, so every byte of the field moves.
  const std::string line = probe.keys()[parameter] + "=" + std::to_string(*largest);
  const Touched touched = recordBytesSetBy(line, selection);
  return ParameterPlace{touched.offset, touched.size, fieldFedFrom(touched.offset)};
}

}  // namespace

std::vector<std::optional<ParameterPlace>> placesOf(const antenna_selection& selection,
                                                    const SchemaProbe& probe) {
  std::vector<std::optional<ParameterPlace>> places;
  for (size_t parameter = 0; parameter < probe.keys().size(); ++parameter) {
    places.push_back(placeOf(parameter, selection, probe));
  }
  return places;
}

bool isOneOf(const size_t (&offsets)[2], size_t offset) {
  return offset == offsets[0] || offset == offsets[1];
}
