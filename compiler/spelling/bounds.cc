// SPDX-License-Identifier: BSD-3-Clause
// Each grouping is counted once. Sums stop growing far above the bounds, so they do not
// overflow.
#include "compiler/spelling/bounds.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/words/node_kind.h"

namespace compiler {

namespace {

constexpr uint64_t kPlenty = uint64_t{1} << 50;
// An element of libxml2 with its attribute, and our record.
constexpr uint64_t kStatementBytes = sizeof(xmlNode) * 2 + sizeof(xmlAttr) + sizeof(Statement);

struct Counting {
  Output* out;
  unsigned depth = 0;
  bool tooDeep = false;
};

void Add(Size* sum, const Size& more) {
  sum->nodes = std::min(sum->nodes + more.nodes, kPlenty);
  sum->bytes = std::min(sum->bytes + more.bytes, kPlenty);
}

Size CountBelow(Counting* counting, const xmlNode* top);

Size CountGrouping(Counting* counting, const xmlNode* grouping) {
  auto& known = counting->out->all->groupingSizes;
  const auto found = known.find(grouping);
  if (found != known.end()) return found->second;
  if (counting->depth == kMaxUsesDepth) {
    counting->tooDeep = true;
    return {};
  }
  ++counting->depth;
  const Size size = CountBelow(counting, grouping);
  --counting->depth;
  if (!counting->tooDeep) known.emplace(grouping, size);
  return size;
}

Size CountOne(Counting* counting, const xmlNode* statement) {
  const char* argument = ArgumentOf(statement);
  Size size;
  size.bytes = kStatementBytes + (argument == nullptr ? 0 : std::strlen(argument));
  if (IsSchemaNode(KeywordOf(statement))) size.nodes = 1;
  if (!Is(statement, Keyword::kUses) || argument == nullptr) return size;
  const xmlNode* grouping = FindSymbol(statement, SymbolKind::kGrouping, argument);
  if (grouping != nullptr) Add(&size, CountGrouping(counting, grouping));
  return size;
}

Size CountBelow(Counting* counting, const xmlNode* top) {
  Size sum;
  const xmlNode* s = NextInTree(top, top);
  while (s != nullptr && !counting->tooDeep) {
    if (Is(s, Keyword::kGrouping)) {
      s = NextOutside(top, s);
      continue;
    }
    Add(&sum, CountOne(counting, s));
    s = NextInTree(top, s);
  }
  return sum;
}

struct FileCount {
  Counting counting;
  Size sum;
};

void CountFile(Module* file, void* arg) {
  auto* count = static_cast<FileCount*>(arg);
  Add(&count->sum, CountBelow(&count->counting, file->root));
}

}  // namespace

bool FitsBounds(Output* out) {
  FileCount count{{out}, {}};
  ForEachFile(out->module, CountFile, &count);
  if (count.counting.tooDeep) {
    Stop(out, "grouping", out->module->root,
         "groupings use groupings more than " + std::to_string(kMaxUsesDepth) + " deep");
    return false;
  }
  if (count.sum.nodes <= kMaxNodes && count.sum.bytes <= kMaxBytes) return true;
  Stop(out, "grouping", out->module->root,
       "spelled out, the module has more than " + std::to_string(kMaxNodes) +
           " nodes or 1 GiB; it is not compiled");
  return false;
}

}  // namespace compiler
