// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Paths of conditions in the plain form that the library walks: "..", names, nothing else;
// with what the schema says of where they lead. Only compiler/condition*.cc use this.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "compiler/conditions/condition.h"

namespace compiler {

struct PathItem {
  bool up = false;
  std::string_view prefix;
  std::string_view name;
  DataNode* node = nullptr;  // that a name leads to; NULL: not known
};

// Where relative paths begin: the condition's context node, or in a predicate the node
// that it is about, by the plain path to it.
struct PathBase {
  bool absolute = false;
  std::vector<PathItem> items;
  DataNode* node = nullptr;
  bool known = false;
  bool outermost = true;
};

struct PathPredicate {
  uint32_t expression = 0;
  PathBase base;
};

struct PlainPath {
  bool plain = false;  // false: there is no plain form; `remark` says why
  ConditionRemark remark;

  bool absolute = false;
  std::vector<PathItem> items;
  bool changed = false;                   // it is not as the author wrote it
  std::vector<PathPredicate> predicates;  // must hold besides
  std::vector<PlainPath> required;        // must exist besides (of deref())

  DataNode* target = nullptr;  // NULL: the root, or not known
  bool known = false;
  bool several = false;       // may lead to more than one node
  bool existsByFirst = true;  // when it leads to any, the library finds one
  bool certain = false;       // it leads to a node in every message
  bool outside = false;       // it leads out of the message
  bool inside = false;        // it leads into what the `when` decides on
  bool namesake = false;      // another module has a child of that name
  bool lacksDefault = false;  // the library does not add a default that counts
  bool mayLeave = false;      // to a default whose own condition is evaluated later
};

// `index`: a path, a call of current() or deref(), or such a thing in parentheses.
PlainPath ResolvePath(const Xpath& xpath, const ConditionPlace& place, const PathBase& base,
                      uint32_t index);

// "../p:a/b", "." for one without items, "/" for the root.
std::string PathText(const PlainPath& path);

// The same for two paths that lead to the same nodes, as far as that shows.
std::string PathKey(const PlainPath& path);

uint32_t WithoutParentheses(const Xpath& xpath, uint32_t node);
bool IsCall(const Xpath& xpath, uint32_t node, std::string_view function);

}  // namespace compiler
