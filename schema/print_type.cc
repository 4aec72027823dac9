// SPDX-License-Identifier: BSD-3-Clause
// The type column of the schema tree: the name of a built-in type, the name of a
// typedef with the module that defines it, or the path of a leafref.
#include <qmodel/error.h>

#include "schema/print_tree.h"
#include "types/builtin.h"
#include "types/type.h"

uint32_t QMS_NODE_PrintTypeLeafref(const QmtType* type, QmsPrintPara* para) {
  const char* path = QM_TYPE_GetTypeConsDataLeafrefPath(type);
  if (path == nullptr) return PrintPiece(para, BuiltInTypeName(QMT_BASE_LEAFREF));
  return PrintAll(para, {"-> ", path});
}

uint32_t QMS_NODE_PrintTypeDerived(const QmtType* type, QmsPrintPara* para) {
  const QmtConsDerived* derived = QMT_TYPE_GetTypeConsDataDerived(type);
  if (derived == nullptr) return QM_INVALID;
  if (derived->moduleName == nullptr) return PrintPiece(para, derived->typedefName);
  return PrintAll(para, {derived->moduleName, ":", derived->typedefName});
}

uint32_t QMS_NODE_PrintType(const QmtType* type, QmsPrintPara* para) {
  if (type == nullptr || para == nullptr) return QM_INVALID;
  if (type->baseType == QMT_BASE_LEAFREF) return QMS_NODE_PrintTypeLeafref(type, para);
  if (type->baseType == QMT_BASE_TYPEDEF) return QMS_NODE_PrintTypeDerived(type, para);
  return PrintPiece(para, BuiltInTypeName(type->baseType));
}
