// SPDX-License-Identifier: BSD-3-Clause
// A range or length expression on every type, and then a few values against it.
#include <cstdio>

#include <qmodel/qmodel.h>

#include "fuzz/fuzz_target.h"

static void Try(const FuzzInput& input, const char* type, const char* restriction) {
  static char text[2 * kMaxFuzzText];
  const char* const fraction = type[0] == 'd' ? "<fraction-digits value='2'/>" : "";
  std::snprintf(
      text, sizeof(text),
      "<module name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1'><namespace uri='urn:m'/>"
      "<prefix value='m'/><typedef name='t'><type name='int16'><range value='-9..9'/></type>"
      "</typedef><leaf name='x'><type name='%s'>%s<%s value='%s'/></type></leaf></module>",
      type, fraction, restriction, input.text);
  QmCtx* ctx = QM_CTX_Create(0);
  static_cast<void>(QM_CTX_LoadMemory(ctx, text));
  QmsNode* leaf = QM_CTX_GetTargetNode(ctx, "/m:x", nullptr);
  for (const char* value : {"0", "-1", "9", "127", "18446744073709551615", "1.25", "aaaa"}) {
    static_cast<void>(QM_NODE_ValidateValue(leaf, QM_INPUT_TEXT, value));
  }
  QM_CTX_Delete(ctx);
}

void FuzzOne(const FuzzInput& input) {
  for (const char* type : {"int8", "uint8", "int16", "uint16", "int32", "uint32", "int64", "uint64",
                           "decimal64", "t"}) {
    Try(input, type, "range");
  }
  for (const char* type : {"string", "binary", "t"}) Try(input, type, "length");
}
