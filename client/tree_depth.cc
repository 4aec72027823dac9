// SPDX-License-Identifier: BSD-3-Clause
// The depth of a node shows in its line: each level indents by three columns of blanks and
// bars (RFC 8340). Lines of no node, such as "rpcs:", begin at once and stay.
#include "client/tree_depth.h"

#include <algorithm>

namespace {

constexpr size_t kColumns = 3;

bool IsNode(std::string_view line) {
  const size_t mark = line.find_first_not_of(" |");
  return mark != line.npos && line.substr(mark + 1).starts_with("--");
}

unsigned DepthOf(std::string_view line) {
  return static_cast<unsigned>(line.find_first_not_of(" |") / kColumns);
}

std::string_view TakeLine(std::string_view* text) {
  const size_t end = std::min(text->find('\n'), text->size() - 1);
  const std::string_view line = text->substr(0, end + 1);
  text->remove_prefix(end + 1);
  return line;
}

}  // namespace

std::string CutTree(std::string_view tree, unsigned depth, unsigned top) {
  std::string cut;
  while (!tree.empty()) {
    const std::string_view line = TakeLine(&tree);
    if (depth != 0 && IsNode(line) && DepthOf(line) >= top + depth) continue;
    cut += line;
  }
  return cut;
}

unsigned DepthBelow(std::string_view lines) {
  unsigned depth = 0;
  while (!lines.empty()) {
    const std::string_view line = TakeLine(&lines);
    if (IsNode(line)) depth = DepthOf(line) + 1;
  }
  return depth;
}
