// SPDX-License-Identifier: BSD-3-Clause
// Texts with module names: the path of a schema node, with every schema node on
// the way and a module name where the module changes, and a value of the form
// "prefix:name" turned into "module:name".
//
// The path is written from its end: the length is summed up while climbing, then
// the steps are put in place while climbing a second time.
#include "schema/node_path.h"

#include <cstring>

#include <qmodel/error.h>

#include "context/guard.h"
#include "context/string.h"
#include "context/text_scan.h"
#include "platform/string.h"
#include "schema/module.h"
#include "schema/node.h"

constexpr uint32_t kPathSize = 3096;

namespace {
// One step of a path, "/name" or "/module:name".
struct StepText {
  const char* module;  // NULL for a step without module
  const char* name;
};
}  // namespace

static const char* StepName(const QmsNode* node) {
  if (node->kind == QMS_NODE_INPUT) return "input";
  if (node->kind == QMS_NODE_OUTPUT) return "output";
  return node->name;
}

// False when the step lacks its name or the module name that it needs.
static bool StepOf(const QmsNode* node, StepText* step) {
  step->module = nullptr;
  step->name = StepName(node);
  const bool sameModule = node->parent != nullptr && node->parent->module == node->module;
  if (sameModule) return step->name != nullptr;
  step->module = node->module == nullptr ? nullptr : node->module->name;
  return step->name != nullptr && step->module != nullptr;
}

static size_t LengthOf(const StepText& step) {
  const size_t qualifier = step.module == nullptr ? 0 : RTK_StrLen(step.module) + 1;
  return 1 + qualifier + RTK_StrLen(step.name);
}

// Writes `text` so that it ends before `end`, and gives its start.
static char* PutBefore(char* end, const char* text) {
  const size_t length = RTK_StrLen(text);
  std::memcpy(end - length, text, length);
  return end - length;
}

static char* PutStepBefore(char* end, const StepText& step) {
  end = PutBefore(end, step.name);
  if (step.module != nullptr) end = PutBefore(PutBefore(end, ":"), step.module);
  return PutBefore(end, "/");
}

uint32_t QMS_NODE_PrintJsonPathRecursive(QmsNode* node, char* buf, uint32_t size, uint32_t* len) {
  if (node == nullptr || buf == nullptr || len == nullptr || *len >= size) return QM_INVALID;
  StepText step;
  size_t total = 0;
  for (const QmsNode* n = node; n != nullptr; n = n->parent) {
    if (!StepOf(n, &step)) return QM_INVALID;
    total += LengthOf(step);
    if (total >= size - *len) return QM_NO_MEMORY;
  }
  char* end = buf + *len + total;
  *end = '\0';
  for (const QmsNode* n = node; n != nullptr && StepOf(n, &step); n = n->parent) {
    end = PutStepBefore(end, step);
  }
  *len += static_cast<uint32_t>(total);
  return QM_OK;
}

char* QMS_NODE_PrintPath(QmsNode* node) {
  if (node == nullptr) return nullptr;
  QmHeld<char> buf(static_cast<char*>(AllocZeroed(kPathSize)));
  if (!buf) return nullptr;
  uint32_t length = 0;
  if (QMS_NODE_PrintJsonPathRecursive(node, buf.Get(), kPathSize, &length) != QM_OK) return nullptr;
  return QM_UTL_StrDup(buf.Get());
}

char* QMS_MOD_ConvertPrefixValToJsonFormat(QmsModule* module, const char* text) {
  if (module == nullptr || text == nullptr) return nullptr;
  char prefix[kQmsNameSize];
  char value[kQmsNameSize];
  if (QM_UTL_GetXPathNextPrefixAndNode(text, prefix, kQmsNameSize, value, kQmsNameSize) != QM_OK) {
    return nullptr;
  }
  const char* moduleName =
      *prefix == '\0' ? module->name : QMS_MOD_GetModuleNameByPrefix(module, prefix);
  if (moduleName == nullptr) return nullptr;
  return JoinModuleAndName(moduleName, value);
}
