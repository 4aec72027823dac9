// SPDX-License-Identifier: BSD-3-Clause
//
// The deviation statement (RFC 7950 section 7.20.3). A deviation is only noted
// here, with its target in module-name form and what each deviate carries; it
// is applied when the module is registered and its target is loaded.
#include "yin/stmt_deviation.h"

#include <cstdint>
#include <iterator>

#include "context/guard.h"
#include "context/load_error.h"
#include "context/memory.h"
#include "platform/string.h"
#include "schema/definitions.h"
#include "schema/module.h"
#include "yin/argument.h"
#include "yin/dispatch.h"
#include "yin/keyword.h"

namespace {
struct DeviateKindRow {
  const char* word;
  QmsDeviateKindParseFunc parse;  // NULL: the kind has no body
};
}  // namespace

constexpr DeviateKindRow kDeviateKinds[] = {
    {nullptr, nullptr},
    {"add", QMS_LOADER_ParseDeviateAdd},
    {"delete", QMS_LOADER_ParseDeviateDelete},
    {"not-supported", nullptr},
    {"replace", QMS_LOADER_ParseDeviateReplace},
};
static_assert(std::size(kDeviateKinds) == QMS_DEVIATE_REPLACE + 1, "the index is the kind");

uint32_t QMS_LOADER_GetDeviateType(const char* value) {
  if (value == nullptr) return QMS_DEVIATE_NONE;
  for (uint32_t kind = QMS_DEVIATE_ADD; kind < std::size(kDeviateKinds); ++kind) {
    if (RTK_StrCmp(kDeviateKinds[kind].word, value) == 0) return kind;
  }
  return QMS_DEVIATE_NONE;
}

uint32_t QMS_LOADER_ParseDeviateAdd(QmsModule* module, xmlNode* element, QmsDeviate* deviate) {
  uint16_t musts = 0;
  uint16_t defaults = 0;
  uint16_t extInsts = 0;
  QmsSubStmtDesc table[] = {
      ArraySubStmt(QMS_STMT_MUST, &deviate->musts, &deviate->mustCount, &musts),
      ArraySubStmt(QMS_STMT_DEFAULT, &deviate->defaults, &deviate->defaultCount, &defaults),
      SingleSubStmt(QMS_STMT_CONFIG, &deviate->flags),
      SingleSubStmt(QMS_STMT_MANDATORY, &deviate->flags),
      SingleSubStmt(QMS_STMT_UNITS, &deviate->units),
      ArraySubStmt(QMS_STMT_EXTENSION_INSTANCE, &deviate->extInsts, &deviate->extInstCount,
                   &extInsts)};
  return QMS_LOADER_ParseSubStatements(module, element, QMS_STMT_DEVIATE, table, std::size(table));
}

uint32_t QMS_LOADER_ParseDeviateDelete(QmsModule* module, xmlNode* element, QmsDeviate* deviate) {
  uint16_t musts = 0;
  uint16_t defaults = 0;
  uint16_t extInsts = 0;
  QmsSubStmtDesc table[] = {
      ArraySubStmt(QMS_STMT_MUST, &deviate->musts, &deviate->mustCount, &musts),
      ArraySubStmt(QMS_STMT_DEFAULT, &deviate->defaults, &deviate->defaultCount, &defaults),
      SingleSubStmt(QMS_STMT_UNITS, &deviate->units),
      ArraySubStmt(QMS_STMT_EXTENSION_INSTANCE, &deviate->extInsts, &deviate->extInstCount,
                   &extInsts)};
  return QMS_LOADER_ParseSubStatements(module, element, QMS_STMT_DEVIATE, table, std::size(table));
}

static bool HasTypeChild(const xmlNode* element) {
  for (const xmlNode* child = element->children; child != nullptr; child = child->next) {
    if (QMS_LOADER_GetXmlNodeYangStmt(child) == QMS_STMT_TYPE) return true;
  }
  return false;
}

// The type record is made only for a type child: without one the deviate leaves
// the type of its target alone.
uint32_t QMS_LOADER_ParseDeviateReplace(QmsModule* module, xmlNode* element, QmsDeviate* deviate) {
  if (HasTypeChild(element)) {
    deviate->type = NewRecord<QmtType>();
    if (deviate->type == nullptr) return QM_NO_MEMORY;
  }
  uint16_t defaults = 0;
  QmsSubStmtDesc table[] = {
      SingleSubStmt(QMS_STMT_TYPE, deviate->type),
      ArraySubStmt(QMS_STMT_DEFAULT, &deviate->defaults, &deviate->defaultCount, &defaults),
      SingleSubStmt(QMS_STMT_CONFIG, &deviate->flags),
      SingleSubStmt(QMS_STMT_MANDATORY, &deviate->flags),
      SingleSubStmt(QMS_STMT_UNITS, &deviate->units)};
  return QMS_LOADER_ParseSubStatements(module, element, QMS_STMT_DEVIATE, table, std::size(table));
}

// Deliberate: a missing or unknown kind gives -1, which is no errno value.
uint32_t QMS_LOADER_ParseDeviate(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                                 void* dest) {
  auto* deviate = static_cast<QmsDeviate*>(dest);
  const char* value = ReadArgument(module, element, QMS_STMT_DEVIATE);
  if (value == nullptr) return QM_MINUS_ONE;
  deviate->kind = QMS_LOADER_GetDeviateType(value);
  if (deviate->kind == QMS_DEVIATE_NONE) {
    RecordBadValue(module, value, QMS_STMT_DEVIATE);
    return QM_MINUS_ONE;
  }
  const QmsDeviateKindParseFunc parse = kDeviateKinds[deviate->kind].parse;
  const uint32_t ret = parse == nullptr ? uint32_t{QM_OK} : parse(module, element, deviate);
  if (ret == QM_OK) return QM_OK;
  RecordBadValue(module, value, QMS_STMT_DEVIATE);
  QMS_MOD_ClearDeviate(ModuleDict(module), deviate);
  return ret;
}

static void RecordBadDeviation(QmsModule* module, const char* target) {
  QM_CTX_AddModError(module->ctx, module->name, "Failed to parse \"%s\" statement \"%s\".",
                     QMS_LOADER_GetKeywordByStmt(QMS_STMT_DEVIATION), target);
}

static uint32_t FillTargetPath(QmsModule* module, const char* target, QmsDeviation* deviation) {
  const QmHeld<char> path(QualifyTargetPath(module, target));
  if (path) return InternOrRefuse(module, &deviation->targetPath, path.Get());
  RecordBadDeviation(module, target);
  return QM_INVALID;
}

static uint32_t ParseDeviates(QmsModule* module, xmlNode* element, QmsDeviation* deviation) {
  uint16_t found = 0;
  QmsSubStmtDesc table[] = {
      ArraySubStmt(QMS_STMT_DEVIATE, &deviation->deviates, &deviation->deviateCount, &found)};
  return QMS_LOADER_ParseSubStatements(module, element, QMS_STMT_DEVIATION, table, 1);
}

uint32_t QMS_LOADER_ParseDeviation(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                                   void* dest) {
  auto* deviation = static_cast<QmsDeviation*>(dest);
  const char* target = ReadAbsolutePath(module, element, QMS_STMT_DEVIATION);
  if (target == nullptr) return QM_INVALID;
  uint32_t ret = FillTargetPath(module, target, deviation);
  if (ret != QM_OK) return ret;
  ret = ParseDeviates(module, element, deviation);
  if (ret == QM_OK) return QM_OK;
  QMS_MOD_ClearDeviation(ModuleDict(module), deviation);
  RecordBadDeviation(module, target);
  return ret;
}
