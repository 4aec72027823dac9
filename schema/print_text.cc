// SPDX-License-Identifier: BSD-3-Clause
// The buffer of the tree printer. The text gathers in a block of fixed size and
// goes to the client in chunks; a piece either fits or fails the print, so a
// client never sees half a line.
#include <cstring>

#include <qmodel/error.h>

#include "schema/print_tree.h"

// More than this in use, and the buffer is emptied before the next line.
static constexpr uint32_t kFlushMark = 7167;

// Room for `length` characters at the end of the text, or NULL.
static char* TakeRoom(QmsPrintText* text, size_t length) {
  if (length >= text->size - text->used) return nullptr;
  char* room = text->buf + text->used;
  text->used += static_cast<uint32_t>(length);
  text->buf[text->used] = '\0';
  return room;
}

uint32_t PrintPiece(QmsPrintPara* para, const char* piece) {
  if (piece == nullptr) return QM_INVALID;
  const size_t length = strlen(piece);
  char* room = TakeRoom(para->text, length);
  if (room == nullptr) return QM_INVALID;
  memcpy(room, piece, length);
  return QM_OK;
}

uint32_t PrintPieces(QmsPrintPara* para, const char* const* pieces, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    const uint32_t ret = PrintPiece(para, pieces[i]);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t PrintBlanks(QmsPrintPara* para, uint32_t count) {
  char* room = TakeRoom(para->text, count);
  if (room == nullptr) return QM_INVALID;
  memset(room, ' ', count);
  return QM_OK;
}

uint32_t FlushText(QmsPrintText* text) {
  if (text->used == 0) return QM_OK;
  const uint32_t ret = text->output(text->buf, text->used, text->arg);
  text->used = 0;
  text->buf[0] = '\0';
  return ret == QM_OK ? QM_OK : QM_INVALID;
}

uint32_t FlushIfFull(QmsPrintText* text) {
  return text->used > kFlushMark ? FlushText(text) : QM_OK;
}
