// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstddef>
#include <string>

#include "data/records.h"

// A run over a copy of a message, and all that can be seen of it.
namespace other_run {

// What an index may take at first, and in blocks of its own after that.
struct IndexMemory {
  bool none;  // the run has no index
  size_t first;
  size_t more;
};

struct Outcome {
  std::string verdict;   // status and record
  std::string tree;      // when the run ends
  std::string defaults;  // that are kept, in the order of the callback, and the tree after it
  bool isIndexOff;       // the index was refused memory

  bool operator==(const Outcome& other) const {
    return verdict == other.verdict && tree == other.tree && defaults == other.defaults;
  }
};

// `root` and everything around it stay as they are.
Outcome Run(const QmCheckAux& aux, const xmlNode* root, IndexMemory memory);

std::string Verdict(uint32_t status, const QmErrNode* err);
// The tree that holds the node, whole.
std::string TreeAround(const xmlNode* node);
// How many nodes there are in it; SIZE_MAX where they lie deeper than libxml2 can copy them.
size_t SizeAround(const xmlNode* node);

}  // namespace other_run
