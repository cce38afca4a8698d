// SPDX-License-Identifier: Apache-2.0
#include "benchmarks/contender.h"

namespace {

std::vector<Contender>& entered() {
  static std::vector<Contender> all;
  return all;
}

}  // namespace

const std::vector<Contender>& contenders() {
  return entered();
}

Entry::Entry(const char* name, Contender::Load load) {
  entered().push_back({name, load});
}
