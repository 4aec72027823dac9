// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "context/xml_tree.h"
#include "schema/statement.h"
#include "yin/records.h"

// The parsers of the dispatch table, one per statement. Each takes the module
// under construction, the statement's element, the id of the parent statement,
// and the place that the parent's descriptor names:
//   nodes                    the parent QmsNode; the QmsModule at the top
//   texts                    const char**; key borrows, the others intern
//   flag statements          uint32_t* of a node, uint16_t* of a deviate
//   records                  one zero-filled array element
//   argument, yin-element    the QmsExtension, its uint32_t
//   extension instances      the QmsNode, or one QmsExtInst elsewhere
// 0 on success. 22 for what is refused, 12 without memory, which many report as 22; 1 for
// a reference without a name and 126 for one with a name that is too long, in if-feature
// and base; -1 as the parsers of list, augment and deviate tell. A statement gives on what
// failed inside it. On failure what lies at the place can still be cleared by its
// owner, array elements of a module are zero-filled, and a message is recorded for the
// module as a rule.

// One row of the dispatch table; its index is the id.
struct QmsStmtParse {
  uint16_t id;
  QmsStmtParseFunc parse;  // NULL: the statement is read by its parent or ignored
};
extern const QmsStmtParse g_qmsStmtParseFuncMapTbl[QMS_STMT_COUNT];

// A descriptor for a statement whose result is one field.
inline QmsSubStmtDesc SingleSubStmt(uint32_t stmt, void* dest) {
  return {stmt, dest, nullptr, nullptr, 0, 0};
}

// A descriptor for a statement that is collected into an array. `used` is the
// record's counter, `found` a local one of the parser.
template <typename Elem>
QmsSubStmtDesc ArraySubStmt(uint32_t stmt, Elem** array, uint16_t* used, uint16_t* found) {
  return {stmt, array, used, found, sizeof(Elem), QMS_SUBSTMT_ARRAY};
}

// Whether statements with this id become schema nodes, which keep extension
// instances in a field of their own.
bool IsSchemaNodeStmt(uint32_t stmt);

// The statement id that a child was marked with; QMS_STMT_UNKNOWN for one without mark
// and for what is no element.
inline uint32_t MarkedStmt(const xmlNode* child) {
  if (child->type != XML_ELEMENT_NODE) return QMS_STMT_UNKNOWN;
  return static_cast<uint32_t>(PrivateMark(child));
}

// Counts one more child of an array, whose counter may be NULL for what is none. 22 at the
// count that an array has at most: one more would make an array that is too small.
uint32_t CountOneMore(uint16_t* found);

// Parses one marked child into the place that its descriptor names, and records when that
// fails. 0, also without parser; 22 when the array has no element left; else the parser's
// code.
uint32_t ParseMarkedChild(QmsModule* module, xmlNode* child, uint32_t parentStmt,
                          QmsSubStmtDesc* desc);

QM_BEGIN_INTERNAL_DECLS

// The parser of a statement, NULL when it has none or the id is past the last.
QmsStmtParseFunc QMS_LOADER_GetStmtParseFunc(uint32_t stmt);

// Parses the children of a statement that `table` accepts, in the three passes below. 0, or
// the code of the pass that fails.
uint32_t QMS_LOADER_ParseSubStatements(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                       QmsSubStmtDesc* table, uint32_t count);

// The passes, 0 when done: classify, mark and count, 22 for more children of a kind than a
// counter holds; make the arrays at their exact size, 12 when one cannot be made; parse each
// marked child into its place, else the code of ParseMarkedChild(). The message of a child
// that fails is recorded unless the module has one.
uint32_t QMS_LOADER_MarkSubNodeAndCountArraySize(QmsModule* module, xmlNode* element,
                                                 QmsSubStmtDesc* table, uint32_t count);
uint32_t QMS_LOADER_NewSubStatementsArray(uint32_t parentStmt, QmsSubStmtDesc* table,
                                          uint32_t count);
uint32_t QMS_LOADER_ParseSubStatementsInner(QmsModule* module, xmlNode* element,
                                            uint32_t parentStmt, QmsSubStmtDesc* table,
                                            uint32_t count);

// The first descriptor for `stmt`, or NULL.
QmsSubStmtDesc* QMS_LOADER_GetSubParseElem(QmsSubStmtDesc* table, uint32_t count, uint32_t stmt);

// Where the next child of this kind goes. Takes an array element: the record's
// counter is raised. NULL when the array has no element left.
void* QMS_LOADER_GetSubParseDest(QmsSubStmtDesc* desc, uint32_t parentStmt);

// Marks every child with its statement id.
void QMS_LOADER_MarkSubNode(xmlNode* element);

QM_END_INTERNAL_DECLS
