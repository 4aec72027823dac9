// SPDX-License-Identifier: BSD-3-Clause
// A target path: converted to module names, split, and looked up.
#include <qmodel/qmodel.h>

#include "context/memory.h"
#include "fuzz/fixed_model.h"
#include "fuzz/fuzz_target.h"
#include "schema/lookup.h"
#include "schema/target_path.h"

void FuzzOne(const FuzzInput& input) {
  QmCtx* ctx = LoadFixedModel();
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, "f");
  char* json = QM_XPATH_TransformToJsonFormat(module, input.text);
  for (const char* path : {static_cast<const char*>(json), input.text}) {
    char name[65];
    char* parent = nullptr;
    char* last = nullptr;
    static_cast<void>(QM_XPATH_SplitTargetNodeXpath(path, name, sizeof(name), &parent, &last));
    g_qmMemFreeFunc(parent);
    g_qmMemFreeFunc(last);
    QmsNode* node = QM_CTX_GetTargetNode(ctx, path, nullptr);
    static_cast<void>(QMS_MOD_GetNodeByXpath(module, node, path));
    static_cast<void>(QMS_MOD_GetNodeBySchemaNodeId(module, node, path));
  }
  g_qmMemFreeFunc(json);
  QM_CTX_Delete(ctx);
}
