// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include <qmodel/qmodel.h>

// Statement ids: YANG keywords in alphabetical order, then the two that no
// keyword names. The ids are stored in YIN elements while a module is parsed.
enum QmsStmt : uint32_t {
  QMS_STMT_UNKNOWN = 0,
  QMS_STMT_ACTION = 1,
  QMS_STMT_ANYDATA = 2,
  QMS_STMT_ANYXML = 3,
  QMS_STMT_ARGUMENT = 4,
  QMS_STMT_AUGMENT = 5,
  QMS_STMT_BASE = 6,
  QMS_STMT_BELONGS_TO = 7,
  QMS_STMT_BIT = 8,
  QMS_STMT_CASE = 9,
  QMS_STMT_CHOICE = 10,
  QMS_STMT_CONFIG = 11,
  QMS_STMT_CONTACT = 12,
  QMS_STMT_CONTAINER = 13,
  QMS_STMT_DEFAULT = 14,
  QMS_STMT_DESCRIPTION = 15,
  QMS_STMT_DEVIATE = 16,
  QMS_STMT_DEVIATION = 17,
  QMS_STMT_ENUM = 18,
  QMS_STMT_ERROR_APP_TAG = 19,
  QMS_STMT_ERROR_MESSAGE = 20,
  QMS_STMT_EXTENSION = 21,
  QMS_STMT_FEATURE = 22,
  QMS_STMT_FRACTION_DIGITS = 23,
  QMS_STMT_GROUPING = 24,
  QMS_STMT_IDENTITY = 25,
  QMS_STMT_IF_FEATURE = 26,
  QMS_STMT_IMPORT = 27,
  QMS_STMT_INCLUDE = 28,
  QMS_STMT_INPUT = 29,
  QMS_STMT_KEY = 30,
  QMS_STMT_LEAF = 31,
  QMS_STMT_LEAF_LIST = 32,
  QMS_STMT_LENGTH = 33,
  QMS_STMT_LIST = 34,
  QMS_STMT_MANDATORY = 35,
  QMS_STMT_MAX_ELEMENTS = 36,
  QMS_STMT_MIN_ELEMENTS = 37,
  QMS_STMT_MODIFIER = 38,
  QMS_STMT_MODULE = 39,
  QMS_STMT_MUST = 40,
  QMS_STMT_NAMESPACE = 41,
  QMS_STMT_NOTIFICATION = 42,
  QMS_STMT_ORDERED_BY = 43,
  QMS_STMT_ORGANIZATION = 44,
  QMS_STMT_OUTPUT = 45,
  QMS_STMT_PATH = 46,
  QMS_STMT_PATTERN = 47,
  QMS_STMT_POSITION = 48,
  QMS_STMT_PREFIX = 49,
  QMS_STMT_PRESENCE = 50,
  QMS_STMT_RANGE = 51,
  QMS_STMT_REFERENCE = 52,
  QMS_STMT_REFINE = 53,
  QMS_STMT_REQUIRE_INSTANCE = 54,
  QMS_STMT_REVISION = 55,
  QMS_STMT_REVISION_DATE = 56,
  QMS_STMT_RPC = 57,
  QMS_STMT_STATUS = 58,
  QMS_STMT_SUBMODULE = 59,
  QMS_STMT_TYPE = 60,
  QMS_STMT_TYPEDEF = 61,
  QMS_STMT_UNIQUE = 62,
  QMS_STMT_UNITS = 63,
  QMS_STMT_USES = 64,
  QMS_STMT_VALUE = 65,
  QMS_STMT_WHEN = 66,
  QMS_STMT_YANG_VERSION = 67,
  QMS_STMT_YIN_ELEMENT = 68,
  QMS_STMT_TEXT = 69,
  QMS_STMT_EXTENSION_INSTANCE = 70,
  QMS_STMT_COUNT = 71
};

// Parses one statement into `dest`, the place that the parent's descriptor names.
using QmsStmtParseFunc = uint32_t (*)(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                      void* dest);

enum QmsSubStmtFlag : uint32_t { QMS_SUBSTMT_ARRAY = 0x4 };

// What a statement accepts: one row per kind of sub-statement, built on the
// stack by the statement's parser.
struct QmsSubStmtDesc {
  uint32_t stmt;         // QmsStmt
  void* dest;            // single: the field to fill; array: the address of the array pointer
  uint16_t* usedCount;   // array: the record's element counter
  uint16_t* foundCount;  // array: counts the matching children
  uint32_t elemSize;     // array: bytes per element
  uint32_t flags;        // QmsSubStmtFlag
};
