/* SPDX-License-Identifier: BSD-3-Clause */
/* Modules come and go, and one function is told. Loads MODULE, unloads it again while the rest
   stays, and prints every event.
     reload DIR BASE MODULE
   Exit status: 0 done, 1 a load or unload failed, 2 wrong usage. */
#include <stdio.h>

#include <qmodel/agent.h>
#include <qmodel/qmodel.h>

static void PrintEvent(QmCtx *ctx, const QmAgentEvent *event, void *counter) {
  (void)ctx;
  printf("%2d ", ++*(int *)counter);
  switch (event->kind) {
    case QM_AGENT_EVENT_MODULE_LOADED:
      printf("%s is loaded\n", event->moduleName);
      break;
    case QM_AGENT_EVENT_MODULE_EXTENDED:
      printf("%s has another part\n", event->moduleName);
      break;
    case QM_AGENT_EVENT_MODULE_GOING:
      printf("%s is going\n", event->moduleName);
      break;
    case QM_AGENT_EVENT_MODULE_BACK:
      printf("%s is back\n", event->moduleName);
      break;
    case QM_AGENT_EVENT_AUGMENT_ATTACHED:
      printf("%s adds %s to %s\n", event->moduleName, QM_NODE_GetNodeName(event->node),
             event->path);
      break;
    case QM_AGENT_EVENT_AUGMENT_DETACHING:
      printf("%s takes %s away from %s\n", event->moduleName, QM_NODE_GetNodeName(event->node),
             event->path);
      break;
    case QM_AGENT_EVENT_NODE_GOING:
      printf("%s removes %s\n", event->deviatingModule, event->path);
      break;
    default:
      /* A later version may tell more. */
      break;
  }
}

static int Step(uint32_t status, const char *what) {
  if (status == 0) return 1;
  fprintf(stderr, "%s: %s\n", what, QM_AGENT_GetStatusText(status));
  return 0;
}

int main(int argc, char **argv) {
  if (argc != 4) {
    fputs("usage: reload DIR BASE MODULE\n", stderr);
    return 2;
  }
  QmCtx *ctx = QM_CTX_Create(QM_LOAD_IMPORTS);
  int counter = 0;
  QM_AGENT_SetEvents(ctx, PrintEvent, &counter);
  int ok = ctx != NULL && Step(QM_CTX_SetSearchDir(ctx, argv[1]), argv[1]) &&
           Step(QM_CTX_LoadModule(ctx, argv[2]), argv[2]);
  if (ok) printf("-- %s comes\n", argv[3]);
  ok = ok && Step(QM_CTX_LoadModule(ctx, argv[3]), argv[3]);
  if (ok) printf("-- %s goes\n", argv[3]);
  ok = ok && Step(QM_CTX_UnloadModule(ctx, argv[3]), argv[3]);
  /* Without this, the end of the context would be told as well. */
  QM_AGENT_SetEvents(ctx, NULL, NULL);
  QM_CTX_Delete(ctx);
  return ok ? 0 : 1;
}
