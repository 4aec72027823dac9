// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "platform/string.h"

// Takes the name that *text begins with into `name`, and moves *text behind it. False,
// with *text as it was, without a name and for one that does not fit.
bool TakeIdentName(const char** text, char* name, uint32_t size);

// A step of a path as it stands there.
struct QmPathStep {
  TextSpan prefix;  // empty when there is none
  TextSpan name;
};

// Reads the step that `str` begins with, and gives the rest after it and its predicates:
// "/" or the end. NULL when the form is wrong; there may be nothing in `step` then.
const char* ReadPathStep(const char* str, QmPathStep* step);

QM_BEGIN_INTERNAL_DECLS

// How many identifier characters (letters, digits, "-", "." and "_") `str` begins
// with, or its first `len` bytes end with.
uint32_t QM_UTL_ConsumeIdentNameBestEffort(const char* str);
uint32_t QM_UTL_ConsumeIdentNameFromTail(const char* str, uint32_t len);
// The first character that is no blank, tab or newline.
const char* QM_UTL_ConsumeAllSpaceChar(const char* str);
// Copies the name of a step that ends at "/" or with the text. 1 without a name, 22
// when it ends otherwise, 126 when it does not fit; the output is then empty.
uint32_t QM_UTL_GetXPathNextNodeName(const char* str, char* out, uint32_t outSize);
// The same with an optional prefix.
uint32_t QM_UTL_GetXPathNextPrefixAndNode(const char* str, char* prefixOut, uint32_t prefixSize,
                                          char* nodeOut, uint32_t nodeSize);
// The same for a step with predicates; gives the rest after the step, or NULL.
const char* QM_UTL_GetXPathNextPredicatedPrefixNode(const char* str, char* prefixOut,
                                                    uint32_t prefixSize, char* nodeOut,
                                                    uint32_t nodeSize);
// Skips "[…]" pieces, each to its first "]"; NULL when one is not closed.
const char* QM_UTL_SkipPredicateParis(const char* str);

// Reads a decimal integer after blanks, tabs and newlines into *out, and stores the
// place after its digits in *end unless `end` is NULL; what stands there is not
// judged. The third argument is not used. 22, with both untouched, when there is no
// digit, the number does not fit or `str` or `out` is NULL; for an unsigned one also
// when a "-" follows the blanks directly.
uint32_t QM_UTL_ReadInputStrAsSignedInteger(const char* str, char** end, uint32_t notUsed,
                                            int64_t* out);
uint32_t QM_UTL_ReadInputStrAsUnsignedInteger(const char* str, char** end, uint32_t notUsed,
                                              uint64_t* out);

QM_END_INTERNAL_DECLS
