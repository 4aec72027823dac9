// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/xmlregexp.h>

#include <cstdint>

#include "context/internal.h"

// Whether libxml2 may be given the text. It reads on without end, and without bound on
// memory, in bytes that are no UTF-8; a text from XML has none, but a client's value may.
bool CanBeMatched(const char* text);

// The two halves of a match. The caller has libxml2 silenced meanwhile.
//
// The compiled form of a pattern, for xmlRegFreeRegexp(); NULL when it does not compile.
// *isWhole tells that libxml2 has reported nothing, until the silence ends: out of memory
// it may hand out a form with parts missing.
xmlRegexp* CompilePattern(const char* pattern, bool* isWhole);
// 0 when the whole text, which can be matched, matches, else 22. Many threads may match
// with one compiled form at a time.
uint32_t MatchCompiled(xmlRegexp* compiled, const char* str);

QM_BEGIN_INTERNAL_DECLS

// 0 when the whole text matches an XML Schema regular expression, else 22, also for
// a pattern that does not compile, or would take too much of the stack for it (more than
// 512 parts that may be empty, or 1,024 classes open at once). Matching may give up on
// patterns that backtrack without end; the text then does not match.
uint32_t QM_UTL_MatchStrWithPattern(const char* str, const char* pattern);

QM_END_INTERNAL_DECLS
