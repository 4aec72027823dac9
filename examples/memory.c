/* SPDX-License-Identifier: BSD-3-Clause */
/* Memory hooks: shows what the library holds, and that it survives when there is no more.
     memory DIR MODULE [BLOCKS]
   With BLOCKS, only so many blocks are given. Exit status: 0 loaded, 1 not, 2 wrong usage. */
#include <stdio.h>
#include <stdlib.h>

#include <qmodel/agent.h>
#include <qmodel/qmodel.h>

/* Each block begins with its size. A real client counts with atomics when it has threads. */
typedef union Header {
  size_t size;
  max_align_t align;
} Header;

static size_t g_blocks;
static size_t g_bytes;
static size_t g_most = (size_t)-1;

static void *Allocate(size_t size) {
  if (g_blocks >= g_most) return NULL;
  Header *block = malloc(sizeof(Header) + size);
  if (block == NULL) return NULL;
  block->size = size;
  ++g_blocks;
  g_bytes += size;
  return block + 1;
}

static void *Reallocate(void *old, size_t size) {
  if (old == NULL) return Allocate(size);
  Header *block = (Header *)old - 1;
  const size_t before = block->size;
  block = realloc(block, sizeof(Header) + size);
  if (block == NULL) return NULL;
  block->size = size;
  g_bytes += size - before;
  return block + 1;
}

static void Free(void *old) {
  if (old == NULL) return;
  Header *block = (Header *)old - 1;
  --g_blocks;
  g_bytes -= block->size;
  free(block);
}

static void Show(const char *when) {
  /* The numbers differ from one version to the next. */
  fprintf(stderr, "%s: %zu blocks, %zu bytes\n", when, g_blocks, g_bytes);
}

int main(int argc, char **argv) {
  if (argc != 3 && argc != 4) {
    fputs("usage: memory DIR MODULE [BLOCKS]\n", stderr);
    return 2;
  }
  /* Once, before the first context of the process. */
  if (QM_MemRegisterCallBack(Allocate, Reallocate, Free) != 0) return 2;
  if (argc == 4) g_most = strtoul(argv[3], NULL, 10);
  QmCtx *ctx = QM_CTX_Create(QM_LOAD_IMPORTS);
  Show("an empty context");
  uint32_t status = ctx == NULL ? QM_NO_MEMORY : QM_CTX_SetSearchDir(ctx, argv[1]);
  if (status == 0) status = QM_CTX_LoadModule(ctx, argv[2]);
  Show("after the load");
  printf("the load: %s\n", QM_AGENT_GetStatusText(status));
  QM_CTX_Delete(ctx);
  Show("after the end");
  printf("left: %zu blocks, %zu bytes\n", g_blocks, g_bytes);
  return status == 0 && g_blocks == 0 ? 0 : 1;
}
