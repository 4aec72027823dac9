// SPDX-License-Identifier: BSD-3-Clause
// qmodel show: all that the schema says of a node.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include <qmodel/agent.h>
#include <qmodel/inspect.h>

#include "client/commands.h"
#include "client/find_node.h"
#include "client/hints.h"
#include "client/memory_watch.h"
#include "client/node_facts.h"
#include "client/session.h"
#include "client/shown_text.h"

namespace {

constexpr int kTextColumn = 24;

// The lines of a text below each other, the first one where the output stands.
void PrintLines(const std::string& text, int column) {
  for (size_t start = 0; start <= text.size();) {
    const size_t end = std::min(text.find('\n', start), text.size());
    const size_t first = std::min(text.find_first_not_of(" \t", start), end);
    std::string line = ShowControls(text.substr(first, end - first));
    if (start > 0 && !line.empty()) line.insert(0, static_cast<size_t>(column), ' ');
    std::printf("%s\n", line.c_str());
    start = end + 1;
  }
}

void PrintFact(const Fact& fact) {
  const int indent = 2 + 2 * static_cast<int>(fact.level);
  const int width = std::max(kTextColumn - indent - 1, static_cast<int>(fact.label.size()));
  std::printf("%*s%-*s ", indent, "", width, fact.label.c_str());
  PrintLines(fact.text, indent + width + 1);
}

void ShowNode(QmCtx* ctx, QmsNode* node) {
  const char* kind = QM_AGENT_GetKindName(QM_NODE_GetNodeType(node));
  const std::vector<Fact> facts = FactsOf(ctx, node);
  const std::string path = PathOf(node);
  CheckMemory();
  std::printf("%s %s\n", kind == nullptr ? "node" : kind, path.c_str());
  for (const Fact& fact : facts) PrintFact(fact);
}

// Looked up before anything is printed: wrong usage leaves standard output empty.
int ShowAll(QmCtx* ctx, const Options& options) {
  std::vector<QmsNode*> nodes;
  for (const std::string& path : options.operands) {
    nodes.push_back(FindNode(ctx, options, path));
    if (nodes.back() == nullptr) return kExitUsage;
  }
  for (size_t i = 0; i < nodes.size(); ++i) {
    if (i > 0) std::printf("\n");
    ShowNode(ctx, nodes[i]);
  }
  return kExitOk;
}

}  // namespace

int RunShow(const Options& options) {
  Options all = options;
  all.loadFlags |= QM_LOAD_DESCRIPTIONS | QM_LOAD_UNITS;
  int status = kExitOk;
  const Context ctx = OpenSession(all, false, &status);
  if (ctx == nullptr) return status;
  return ShowAll(ctx.get(), all);
}
