// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <string>

#include <qmodel/error.h>

// Prints an error record as one NETCONF rpc-error element (RFC 6241 section
// 4.3), indented.
void PrintRpcError(const QmErrNode* record);

// The record as a JSON object with the names of RFC 8040 section 7.1; null for NULL.
std::string RecordAsJson(const QmErrNode* record);
