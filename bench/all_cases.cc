// SPDX-License-Identifier: BSD-3-Clause
#include "bench/work.h"

static void Append(std::vector<Case>* all, const std::vector<Case>& some) {
  all->insert(all->end(), some.begin(), some.end());
}

std::vector<Case> AllCases() {
  std::vector<Case> all = RealCases();
  Append(&all, LoadCases());
  Append(&all, MessageCases());
  Append(&all, AgentCases());
  Append(&all, ValueCases());
  Append(&all, LookupCases());
  return all;
}
