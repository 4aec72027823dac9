// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What a schema says of a node, as labelled texts, for a person to read.
#include <string>
#include <vector>

#include <qmodel/schema.h>

// Facts of a higher level belong to the last one of a lower level before them.
struct Fact {
  unsigned level;
  std::string label;
  std::string text;
};

// Adds the type of a leaf or leaf-list: what it is derived from, a level deeper each, with
// the restrictions of each.
void AddTypeFacts(QmCtx* ctx, QmsNode* node, std::vector<Fact>* facts);
