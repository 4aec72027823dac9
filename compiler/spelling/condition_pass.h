// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Conditions in the library's subset: the last word on each `when` and `must`, once the
// trees of all modules are there.
#include <functional>
#include <vector>

#include "compiler/conditions/condition.h"
#include "compiler/spelling/compile.h"

namespace compiler {

// Rewrites the conditions of all outputs that are not stopped. What fails every request
// of its node is left out when the options say so, with a loss each.
void SettleConditions(const std::vector<Output*>& outputs);

// What the library makes of the conditions that it evaluates, those of requests and
// notifications, as they are written now.
using RemarkVisitor =
    std::function<void(Output* out, const xmlNode* condition, const ConditionRemark& remark)>;
void VisitConditionRemarks(const std::vector<Output*>& outputs, const RemarkVisitor& visit);

}  // namespace compiler
