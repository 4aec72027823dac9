// SPDX-License-Identifier: BSD-3-Clause
// How two nodes at the same position of two trees differ. Deliberate: the extension
// instances are only counted, and conditions, if-features and payloads are not
// looked at; what the destination has is kept.
#include <iterator>

#include "schema/merge_tree.h"

static constexpr const char* kReasonNames[] = {
    "none",       // QMS_DIFF_NONE
    "extension",  // QMS_DIFF_EXTENSION
    "name",       // QMS_DIFF_NAME
    nullptr,
    "other",  // QMS_DIFF_OTHER
};
static_assert(std::size(kReasonNames) == QMS_DIFF_OTHER + 1, "one place per reason");

const char* QMS_NODE_GetDiffReasonName(uint32_t reason) {
  const char* name = reason < std::size(kReasonNames) ? kReasonNames[reason] : nullptr;
  return name == nullptr ? "unknown" : name;
}

uint32_t QMS_NODE_CompareTwoTreeNodeSelfData(const QmsNode* dst, const QmsNode* src) {
  if (dst == nullptr || src == nullptr) return QMS_DIFF_OTHER;
  if (dst->name != src->name) return QMS_DIFF_NAME;
  if (dst->flags != src->flags || dst->kind != src->kind) return QMS_DIFF_OTHER;
  if (src->extInstCount == 0 || src->extInstCount == dst->extInstCount) return QMS_DIFF_NONE;
  return dst->extInstCount == 0 ? QMS_DIFF_EXTENSION : QMS_DIFF_OTHER;
}
