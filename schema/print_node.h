// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include <qmodel/error.h>

#include "context/internal.h"
#include "schema/records.h"

// How the access of a node is told.
enum QmsPrintAccess : uint32_t {
  QMS_PRINT_ACCESS_CONFIG = 0,  // "rw" or "ro", by the node's config
  QMS_PRINT_ACCESS_WRITE = 1,   // "-w": input of an operation
  QMS_PRINT_ACCESS_READ = 2     // "ro": output of an operation, notifications
};

enum QmsPrintFlag : uint32_t { QMS_PRINT_NO_CHILDREN = 1u << 0, QMS_PRINT_NO_CONNECTORS = 1u << 1 };

// Levels that have a connector bit; deeper ones print without connectors.
constexpr uint32_t kQmsPrintConnectorBits = 32;

// The text that waits for the output function. Shared by all levels of a print.
struct QmsPrintText {
  char* buf;      // owned by the entry point; always NUL-terminated
  uint32_t size;  // bytes, the NUL counted
  uint32_t used;  // characters
  QmPrintOutputFunc output;
  void* arg;  // the client's
};

// The state of one level of siblings. A child level starts with a copy.
struct QmsPrintPara {
  uint32_t connectors;      // bit i: something follows at level i, which draws a "|"
  uint32_t level;           // 1 for top-level nodes, 0 for an augment's own line
  uint32_t nameWidth;       // the longest name of the level, so that the types line up
  uint32_t access;          // QmsPrintAccess
  uint32_t flags;           // QmsPrintFlag bits
  const QmsModule* module;  // being printed: its own nodes go without module name
  const QmsNode* last;      // after it the level ends, also when siblings follow
  QmsPrintText* text;
};

// Room for `length` characters at the end of the text, or NULL.
inline char* TakeRoom(QmsPrintText* text, size_t length) {
  if (length >= text->size - text->used) return nullptr;
  char* room = text->buf + text->used;
  text->used += static_cast<uint32_t>(length);
  text->buf[text->used] = '\0';
  return room;
}

// The bytes of a piece; 22 when they do not fit. A few stores where the compiler knows how
// many they are.
inline uint32_t PrintBytes(QmsPrintPara* para, const char* piece, size_t length) {
  char* room = TakeRoom(para->text, length);
  if (room == nullptr) return QM_INVALID;
  std::memcpy(room, piece, length);
  return QM_OK;
}

// What is printed: 0, or 22 when the text does not fit or the client's output function
// fails. A piece is a text, which may not be NULL.
uint32_t PrintPiece(QmsPrintPara* para, const char* piece);
uint32_t PrintBlanks(QmsPrintPara* para, uint32_t count);
uint32_t PrintConnectors(QmsPrintPara* para);
// Hand the waiting text to the client: all of it, or only when the next line might not
// fit behind it.
uint32_t FlushText(QmsPrintText* text);
uint32_t FlushIfFull(QmsPrintText* text);

// One piece: a character, a literal, which is an array, or any other text.
template <typename Piece>
uint32_t PrintOne(QmsPrintPara* para, const Piece& piece) {
  if constexpr (std::is_same_v<Piece, char>) {
    return PrintBytes(para, &piece, 1);
  } else if constexpr (std::is_array_v<Piece>) {
    return PrintBytes(para, piece, sizeof(piece) - 1);
  } else {
    return PrintPiece(para, piece);
  }
}

// Pieces one after the other, to the first that fails.
template <typename... Pieces>
uint32_t PrintAll(QmsPrintPara* para, const Pieces&... pieces) {
  const bool fits = ((PrintOne(para, pieces) == QM_OK) && ...);
  return fits ? QM_OK : QM_INVALID;
}

// The longest name of the data nodes from `first` to `last`, or to the end of
// the list when `last` is NULL.
uint32_t LongestName(const QmsModule* module, const QmsNode* first, const QmsNode* last);

// The line of a node, and the line of the case around a node that stands
// directly in a choice. 0 or 22 as above.
uint32_t PrintNodeLine(const QmsNode* node, QmsPrintPara* para);
uint32_t PrintCaseLine(const QmsNode* node, QmsPrintPara* para);

QM_BEGIN_INTERNAL_DECLS

// The longest name from `first` to the end of its list, module names included.
uint32_t QMS_NODE_PrintGetMaxLen(const QmsModule* module, const QmsNode* first);
// The start of a line: connectors, status mark and access.
uint32_t QMS_NODE_PrintRetractStatus(const QmsNode* node, QmsPrintPara* para);
// Blanks up to the type column; 22 for a name longer than the name column.
uint32_t QMS_NODE_PrintNodeNameAlignSpace(uint32_t nameLength, QmsPrintPara* para);
// The type column: that of any type, of a leafref, which is its path, and of a typedef,
// which is its name behind that of its module.
uint32_t QMS_NODE_PrintType(const QmtType* type, QmsPrintPara* para);
uint32_t QMS_NODE_PrintTypeLeafref(const QmtType* type, QmsPrintPara* para);
uint32_t QMS_NODE_PrintTypeDerived(const QmtType* type, QmsPrintPara* para);

QM_END_INTERNAL_DECLS
