// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Steps of XPath over all of its axes, on the schema: from the nodes that a path may have
// come to, to those that its next step may lead to in any data that the models allow.
//
// A name is of one module, and only that module brings nodes of it, so that whether a step
// to a name leads anywhere can be told although modules that nobody has read may add nodes
// to any container. Where what is found is more than there can be, a path is called good
// that is not, and never the other way.
#include <cstdint>
#include <string_view>
#include <vector>

#include "compiler/lint/data_path.h"
#include "compiler/words/xpath.h"

namespace compiler {

// Where a path may have come to. The top of a module's tree stands for the root of all data.
struct DataPlaces {
  DataCursor context;  // current(): it says what the path can see of operations
  std::vector<const SchemaNode*> nodes;
  bool deep = false;     // and all that is below these nodes
  bool foreign = false;  // and children of theirs that no model tells of: nodes of modules
                         // that were not read, texts
  bool unknown = false;  // and anything else
};

// What a step looks for.
struct DataTest {
  XpathAxis axis = XpathAxis::kChild;
  XpathTest test = XpathTest::kName;
  const Module* space = nullptr;  // of a name, or of "prefix:*"
  std::string_view name;
  bool configuration = false;  // state is not there
};

// The one place of a cursor; unknown when it is.
DataPlaces PlacesAt(const DataCursor& context, const DataCursor& at);
DataPlaces UnknownPlaces(const DataCursor& context);

// The root for an absolute path whose first step is the test, "//" before it or not.
DataPlaces RootPlaces(const DataCursor& context, const DataTest& first, bool hasPrefix,
                      bool descendants);

// True when the step can lead nowhere.
bool IsNowhere(const DataPlaces& places) noexcept;

// The nodes that the step may lead to. `left` counts down what may be looked at in all, so
// that thousands of paths over thousands of nodes end; behind it everything is unknown.
DataPlaces TakeStep(const DataPlaces& from, const DataTest& step, uint64_t* left);

}  // namespace compiler
