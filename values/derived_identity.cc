// SPDX-License-Identifier: BSD-3-Clause
// The identities that are derived from one (RFC 7950 section 7.18.2). The check of
// identityrefs is asked for each identity, so that both always agree.
#include <qmodel/context.h>
#include <qmodel/error.h>
#include <qmodel/inspect.h>

#include "context/guard.h"
#include "context/string.h"
#include "schema/module.h"
#include "types/records.h"
#include "values/identityref.h"
#include "values/type_check.h"

namespace {
// What a scan of all modules looks for.
struct DerivedScan {
  QmCtx* ctx;
  const QmsIdentity* base;
  QmtIdentRef wanted;
  QmsModule* module;  // whose identities are looked at
  QmDerivedIdentityScanFunc cb;
  void* arg;
};
}  // namespace

// 0 or 28674, as the check of a value has it; 12 without memory.
static uint32_t CheckDerived(DerivedScan* scan, const QmsIdentity* identity) {
  const QmHeld<char> value(JoinModuleAndName(scan->module->name, identity->name));
  if (!value) return QM_NO_MEMORY;
  QmtConsBase body = {1, &scan->wanted};
  QmtCheckCtx check{};
  check.ctx = scan->ctx;
  return QMT_CONS_ValidateValueNodeAgainstDataBase(&body, QMT_INPUT_STRING, value.Get(), &check);
}

static uint32_t LookAtIdentity(QmsIdentity* identity, void* arg, uint32_t /*zero*/) {
  auto* scan = static_cast<DerivedScan*>(arg);
  if (identity == scan->base || identity->name == nullptr) return QM_OK;
  const uint32_t ret = CheckDerived(scan, identity);
  if (ret == QM_VALUE_BAD_IDENTITY) return QM_OK;
  return ret == QM_OK ? scan->cb(scan->module, identity, scan->arg) : ret;
}

static uint32_t LookAtModule(QmsModule* module, void* arg) {
  auto* scan = static_cast<DerivedScan*>(arg);
  scan->module = module;
  return QM_MOD_ScanAllIdentity(module, LookAtIdentity, scan);
}

uint32_t QM_MOD_ScanDerivedIdentity(QmsModule* mod, QmsIdentity* identity,
                                    QmDerivedIdentityScanFunc cb, void* arg) noexcept {
  if (mod == nullptr || identity == nullptr || cb == nullptr) return QM_INVALID;
  DerivedScan scan = {mod->ctx, identity, {mod->name, identity->name}, nullptr, cb, arg};
  return QM_CTX_ScanAllModule(mod->ctx, LookAtModule, &scan);
}
