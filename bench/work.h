// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// What is measured. It is prepared once, and then run as often as the measuring wants;
// a run that does not give what it should ends the program.
struct Work {
  int64_t units = 1;             // entries, nodes, values, ... of one run
  int64_t bytes = 0;             // read or printed by one run
  std::function<void()> before;  // prepares one run, not measured; may be empty
  std::function<void()> run;
  std::function<void()> after;  // clears up after one run, not measured; may be empty
  std::function<void()> parse;  // what the run is compared with; empty for nothing
};

// One row of the tables.
struct Case {
  std::string name;
  const char* unit;   // what `units` of its work counts
  int64_t size;       // of the times
  int64_t countSize;  // of the instructions in the tables: smaller where counting takes minutes
  int64_t smallSize;  // of the guard: just big enough that the figure per unit is stable
  std::function<Work(int64_t size)> make;
  int64_t timedRuns = 0;  // 0: as many as the benchmark wants; fewer where `before` takes long
};

// A work that grows in one dimension: it is measured at `size`, twice, four and eight times
// that.
struct Growth {
  std::string dimension;
  std::string what;
  int64_t size;
  std::function<Work(int64_t size)> make;
};

std::vector<Case> LoadCases();
std::vector<Case> MessageCases();
std::vector<Case> AgentCases();
std::vector<Case> ValueCases();
std::vector<Case> LookupCases();
std::vector<Case> RealCases();  // none without the folder of real models
std::vector<Case> AllCases();

std::vector<Growth> SchemaGrowth();
std::vector<Growth> TypeGrowth();
std::vector<Growth> MessageGrowth();
std::vector<Growth> AllGrowth();

// Runs the work once, with what belongs before and after it.
void RunOnce(const Work& work);
