// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace compiler {

// Changes with the compiler's sources; the build makes it of them.
const char* Fingerprint() noexcept;

}  // namespace compiler
