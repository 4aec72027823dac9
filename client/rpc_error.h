// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <qmodel/error.h>

// Prints an error record as one NETCONF rpc-error element (RFC 6241 section
// 4.3), indented.
void PrintRpcError(const QmErrNode* record);
