// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Steps of XPath on the schema: from a node to its data children and to its parent,
// choices and cases looked through (RFC 7950, section 6.4.1).
#include <string>
#include <string_view>

#include "compiler/lint/schema_view.h"

namespace compiler {

// Where a path has come to. The top of a module's tree stands for the root of all data.
struct DataCursor {
  const SchemaView* view = nullptr;
  const SchemaNode* node = nullptr;     // NULL: nowhere
  bool unknown = false;                 // cannot be told: what is there was not read, or the
                                        // path leaves a grouping that is looked at alone
  const SchemaNode* message = nullptr;  // the input or output that the path comes from: of
                                        // its operation the path sees nothing else
};

// Where a path begins that is written at `place`: there, or at the next node above that
// data show.
DataCursor CursorAt(const SchemaView* view, const SchemaNode* place);

// The root for a path from `context`, when `module` is whose top-level nodes are asked for.
// A template of data is a root of its own; in a grouping that is looked at alone the path
// may begin at one, too, so there `name` is the node that is asked for, empty where it
// stands without a prefix: then it may belong to any module that uses the grouping.
DataCursor RootOf(const DataCursor& context, const Module* module, std::string_view name);

// A path that cannot be followed any further.
DataCursor UnknownCursor(const DataCursor& from);

DataCursor StepDown(const DataCursor& from, const Module* space, std::string_view name);
DataCursor StepUp(const DataCursor& from);

// The node whose children a step to a name of `space` looks at; NULL: that tree was not read.
const SchemaNode* SeenHolder(const DataCursor& from, const Module* space);

// True when data may have nodes below the holder that no statement tells of.
bool IsOpen(const SchemaView& view, const SchemaNode* holder);

// What could have been meant with a step that leads nowhere; `left` as of Suggestion.
std::string NearestData(const DataCursor& from, const Module* space, std::string_view name,
                        std::string_view otherwise, uint64_t* left);

// True when the node stands below the other; all but groupings does below the root.
bool IsBelow(const SchemaNode* node, const SchemaNode* above) noexcept;

// The operation or notification around the node, or the node itself; NULL: none.
const SchemaNode* OperationOf(const SchemaNode* node) noexcept;

// True when a path from the context sees the node: operations and notifications show
// themselves to what stands in them alone (RFC 7950, section 6.4.1).
bool IsSeenFrom(const DataCursor& context, const SchemaNode* node);

}  // namespace compiler
