// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Prints the help of the program, or of one command. False for a name that is
// no command.
bool PrintHelp(const char* command);

// Prints name and version.
void PrintVersion();
