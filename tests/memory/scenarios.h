// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <gtest/gtest.h>

#include <string>
#include <vector>

// Whole lives of a context through the public interface: what a client does, from
// creation to deletion, with every result looked at but none relied on, since any
// allocation in them may be refused.

struct Scenario {
  const char* name;
  void (*run)(bool refusing);
};

// Scenarios on the models of examples/ and tests/models/statements/.
const std::vector<Scenario>& ContextLives();

// Loads these modules of the folder one after another, each in a context of its own.
void RunModuleLife(const std::string& dir, const std::string& module);

// "WordsLikeThis" of a text with words between `separator`s, as test names are; and
// that of a scenario.
std::string CamelCase(const std::string& words, char separator);
std::string NameOf(const testing::TestParamInfo<Scenario>& scenario);
