/* SPDX-License-Identifier: BSD-3-Clause */
#include "transport.h"

#include <errno.h>
#include <string.h>
#include <sys/uio.h>
#include <unistd.h>

static const char kEndMark[] = "]]>]]>";
enum { END_MARK_LENGTH = 6 };
#define MAX_CHUNK UINT64_C(4294967295)

/* Where in the chunked framing the next byte stands. */
enum { AT_LF, AT_HASH, AT_SIZE, IN_SIZE, IN_DATA, AT_END_LF };

static void Keep(Transport *transport, const char *bytes, size_t length) {
  if (length > MAX_MESSAGE - transport->message.length) {
    transport->tooBig = 1;
    length = MAX_MESSAGE - transport->message.length;
  }
  TextAddBytes(&transport->message, bytes, length);
}

static Arrival Finish(Transport *transport) {
  int tooBig = transport->tooBig;
  transport->tooBig = 0;
  return tooBig ? ARRIVAL_TOO_BIG : ARRIVAL_MESSAGE;
}

/* The framing of base:1.0: the message ends with a mark. */
static Arrival TakeMarked(Transport *transport) {
  while (transport->begin < transport->end) {
    char byte = transport->buffer[transport->begin++];
    while (transport->matched > 0 && byte != kEndMark[transport->matched]) {
      /* The longest piece of the mark that ends here: "]]" stays "]]" after one more "]". */
      size_t shorter = transport->matched - 1;
      while (shorter > 0 && memcmp(kEndMark + transport->matched - shorter, kEndMark, shorter) != 0)
        shorter--;
      Keep(transport, kEndMark, transport->matched - shorter);
      transport->matched = shorter;
    }
    if (byte != kEndMark[transport->matched]) {
      /* People and clients end a line behind the mark; no document begins with a blank. */
      if (transport->message.length > 0 || strchr(kBlanks, byte) == NULL || byte == '\0')
        Keep(transport, &byte, 1);
    } else if (++transport->matched == END_MARK_LENGTH) {
      transport->matched = 0;
      return Finish(transport);
    }
  }
  return ARRIVAL_NONE;
}

/* One byte of a chunk's head; 0, or -1 when it does not belong there. */
static int TakeHeadByte(Transport *transport, char byte) {
  switch (transport->state) {
    case AT_LF:
      transport->state = AT_HASH;
      return byte == '\n' ? 0 : -1;
    case AT_HASH:
      transport->state = AT_SIZE;
      return byte == '#' ? 0 : -1;
    case AT_SIZE:
      transport->state = byte == '#' ? AT_END_LF : IN_SIZE;
      transport->chunk = (uint64_t)(byte - '0');
      return byte == '#' || (byte >= '1' && byte <= '9') ? 0 : -1;
    default:
      if (byte == '\n') {
        transport->state = IN_DATA;
        return 0;
      }
      if (byte < '0' || byte > '9') return -1;
      transport->chunk = 10 * transport->chunk + (uint64_t)(byte - '0');
      return transport->chunk <= MAX_CHUNK ? 0 : -1;
  }
}

/* The framing of base:1.1: chunks with their size in front. */
static Arrival TakeChunks(Transport *transport) {
  while (transport->begin < transport->end) {
    if (transport->state == IN_DATA) {
      size_t there = transport->end - transport->begin;
      size_t part = there < transport->chunk ? there : (size_t)transport->chunk;
      Keep(transport, transport->buffer + transport->begin, part);
      transport->begin += part;
      transport->chunk -= part;
      if (transport->chunk == 0) transport->state = AT_LF;
      continue;
    }
    char byte = transport->buffer[transport->begin++];
    if (transport->state == AT_END_LF) {
      transport->state = AT_LF;
      /* A message has one chunk at least. */
      if (byte != '\n' || transport->message.length == 0) return ARRIVAL_END;
      return Finish(transport);
    }
    if (TakeHeadByte(transport, byte) != 0) return ARRIVAL_END;
  }
  return ARRIVAL_NONE;
}

Arrival TransportTake(Transport *transport) {
  return transport->chunked ? TakeChunks(transport) : TakeMarked(transport);
}

int TransportRead(Transport *transport) {
  ssize_t got = 0;
  do {
    got = read(transport->in, transport->buffer, sizeof transport->buffer);
  } while (got < 0 && errno == EINTR);
  transport->begin = 0;
  transport->end = got > 0 ? (size_t)got : 0;
  return got > 0;
}

static int SendAll(int out, const char *bytes, size_t length) {
  while (length > 0) {
    ssize_t sent = write(out, bytes, length);
    if (sent < 0 && errno == EINTR) continue;
    if (sent <= 0) return -1;
    bytes += sent;
    length -= (size_t)sent;
  }
  return 0;
}

int TransportSend(Transport *transport, const Text *message) {
  Text framed = {NULL, 0, 0};
  if (transport->chunked) TextPrint(&framed, "\n#%zu\n", message->length);
  TextAddBytes(&framed, message->data, message->length);
  TextAdd(&framed, transport->chunked ? "\n##\n" : kEndMark);
  int result = SendAll(transport->out, framed.data, framed.length);
  TextFree(&framed);
  return result;
}
