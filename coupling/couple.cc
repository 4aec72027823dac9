// SPDX-License-Identifier: BSD-3-Clause
// Coupling what remains. An augment or a deviation whose target is not there is
// no error: it waits, and is tried again whenever a module is loaded that may
// have brought the target.

#include "coupling/couple.h"

#include <qmodel/error.h>

#include "coupling/couple_augment.h"
#include "coupling/couple_deviation.h"

uint32_t QMS_LOADER_CoupleModRemainNodesToTgt(QmsModule* module) {
  if (module == nullptr) return QM_INVALID;
  for (QmsNode* augment = module->augmentNodes; augment != nullptr; augment = augment->next) {
    static_cast<void>(QMS_NODE_CoupleAugmentNode(augment));
  }
  for (uint32_t i = 0; i < module->deviationCount; ++i) {
    static_cast<void>(QMS_MOD_CoupleDeviation(module, &module->deviations[i]));
  }
  return QM_OK;
}
