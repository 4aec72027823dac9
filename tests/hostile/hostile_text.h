// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <string>

#include <qmodel/qmodel.h>

#include "tests/support/yin_text.h"

// Builders of hostile modules and messages.

// A module "m" (namespace urn:m, prefix m) with this body.
inline std::string ModuleText(const std::string& body) {
  return yin_text::Module("m", body);
}

std::string Repeat(const std::string& text, size_t times);

// `before` + a number + `after`, for the numbers from 0 on.
std::string Numbered(const std::string& before, const std::string& after, size_t count);

// All recorded load errors, a line each.
std::string LoadErrorLines(QmCtx* ctx);

// The status of loading `text` into a context of its own that holds a module "ok",
// which must still work afterwards.
uint32_t LoadBesideOther(const std::string& text, std::string* errors = nullptr);

// True when the request is valid for the module text.
bool IsValidRequest(const std::string& module, const std::string& request);
bool IsValidNotification(const std::string& module, const std::string& text);
