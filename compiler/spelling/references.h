// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What conditions and leafrefs refer to, noted while all nodes are there, and what becomes
// of them when it has left.
#include <string>
#include <vector>

#include "compiler/spelling/compile.h"

namespace compiler {

// A path of a condition, by its index, and a node that it leads to or through.
struct NotedStep {
  uint32_t path = 0;
  FoundNode node;
};

// A call that asks for an identity.
struct NotedIdentity {
  uint32_t call = 0;
  Module* module = nullptr;
  std::string name;
};

struct NotedCondition {
  Output* output = nullptr;
  xmlNode* statement = nullptr;
  std::vector<NotedStep> steps;
  std::vector<NotedIdentity> identities;
};

struct NotedLeafref {
  Output* output = nullptr;
  xmlNode* type = nullptr;
  FoundNode target;
  FoundNode referred;                  // the leaf whose type its values have, where it is known
  const xmlNode* valueType = nullptr;  // that type; NULL: it is not known
};

struct References {
  std::vector<NotedCondition> conditions;
  std::vector<NotedLeafref> leafrefs;
};

References NoteReferences(const std::vector<Output*>& outputs);

// A condition is written without what has left, a leafref as the type of its target.
void SettleReferences(const References& references);

}  // namespace compiler
