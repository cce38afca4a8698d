// SPDX-License-Identifier: Apache-2.0
// The same job with GLib's GKeyFile: each file is read once, then asked for every key. It reads the
// files with ".ini" after their names, which hold the same lines in a form that it accepts.
#include <glib.h>

#include <memory>

#include "benchmarks/calibration_files.h"
#include "benchmarks/contender.h"
#include "benchmarks/key_values.h"

namespace {

struct Free {
  void operator()(GKeyFile* file) const { g_key_file_free(file); }
  void operator()(gchar* text) const { g_free(text); }
};
using KeyFile = std::unique_ptr<GKeyFile, Free>;
using Text = std::unique_ptr<gchar, Free>;

std::vector<KeyFile> readAll() {
  std::vector<KeyFile> files;
  for (const CalibrationFile& file : listedFiles()) {
    KeyFile parsed(g_key_file_new());
    const bool read = readEither(file, [&](const std::string& path) {
      const std::string ini = path + ".ini";
      return g_key_file_load_from_file(parsed.get(), ini.c_str(), G_KEY_FILE_NONE, nullptr) != 0;
    });
    if (read) files.push_back(std::move(parsed));
  }
  return files;
}

Text lookUp(const KeyFile& file, const char* key) {
  return Text(g_key_file_get_value(file.get(), "c", key, nullptr));
}

void selectFrom(const KeyFile& file, KeyValues& values) {
  for (const char* const key : {"ch5.antenna_selection", "ch9.antenna_selection"}) {
    if (const Text value = lookUp(file, key)) values.select(key, value.get());
  }
}

void setFrom(const KeyFile& file, const std::vector<std::string>& keys, KeyValues& values) {
  for (const std::string& key : keys) {
    if (const Text value = lookUp(file, key.c_str())) values.set(key, value.get());
  }
}

uint32_t load(uint8_t* block) {
  const std::vector<KeyFile> files = readAll();
  KeyValues values;
  for (const KeyFile& file : files) selectFrom(file, values);
  const std::vector<std::string> keys = values.keys();
  for (const KeyFile& file : files) setFrom(file, keys, values);
  return values.writeBlock(block);
}

const Entry entry("GKeyFile", load);

}  // namespace
