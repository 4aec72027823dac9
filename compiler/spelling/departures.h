// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What the nodes that leave by the decisions of -f and -F take along: augments and
// deviations whose target has left, lists without a key or without nodes, and what speaks
// of them where they stood.
#include <vector>

#include "compiler/spelling/compile.h"

namespace compiler {

// True when the options decide a feature, so that nodes may leave.
bool OptionsDecide(const Compilation& all) noexcept;

// Takes a node out of its tree. It stays with the output: paths of others may have led
// there.
void LeaveTree(Output* out, xmlNode* node);

// False for a node that has left, or stands in one that has, or that an augment brought
// whose target has left.
bool StaysInTree(const FoundNode& node);

// A child of that name has left the statement.
bool HasLeft(const Output* out, const xmlNode* parent, std::string_view name);

// A deviation and what it leads to before any node leaves.
struct NotedDeviation {
  Output* output = nullptr;
  xmlNode* deviation = nullptr;
  FoundNode target;
};
std::vector<NotedDeviation> NoteDeviations(const std::vector<Output*>& outputs);

// Takes along what cannot stay, until nothing more leaves.
void FollowDepartures(const std::vector<Output*>& outputs,
                      const std::vector<NotedDeviation>& deviations);

}  // namespace compiler
