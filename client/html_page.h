// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What stands before and behind the data of the page.
extern const char kPageHead[];
extern const char kPageTail[];
