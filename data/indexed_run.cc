// SPDX-License-Identifier: BSD-3-Clause
// The one door to runs with an index. It stands apart from those who go through it, so
// that a test build can stand in it and run each message in other ways too.
#include "data/indexed_run.h"

#include "data/run_index.h"
#include "data/validate.h"

uint32_t RunWithIndex(QmCheckAux* aux, xmlNode* root) {
  QmdRunIndex index;
  InitRunIndex(&index);
  aux->index = &index;
  const uint32_t ret = QMD_PAS_ValidateDataTree(aux, root);
  aux->index = nullptr;
  FreeRunIndex(&index);
  return ret;
}
