// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include "yin/records.h"

// The runs of coupled augments, taken by their links and not by their paths.
// DetachModuleAugments is made of these.

// Counts a run that has come to the children of `target`.
void NoteRun(const QmsNode* target);

// Clears the marks of a run: afterwards the augment has no children.
void ForgetRun(QmsNode* augment);

// Moves the nodes from `first` to `last` back under their augment, which is not
// marked as coupled any more. 22, with what was moved so far, when the chain
// ends before `last`.
uint32_t MoveRunBack(QmsNode* augment, QmsNode* first, QmsNode* last);

// Takes the run out of wherever it lies; the augment is pending afterwards.
void ForceDetach(QmsNode* augment);

// The same for every coupled augment whose run lies below `top`.
void DetachRunsBelow(QmCtx* ctx, const QmsNode* top);

// For a subtree that is about to be freed: every augment whose run lies below
// `top` forgets it, and still counts as coupled until SettleForgottenRuns().
void ForgetRunsBelow(QmCtx* ctx, const QmsNode* top);
void SettleForgottenRuns(QmCtx* ctx);

// Takes the coupled augments of `module`, and those of other modules whose
// children lie in its trees, apart without a path lookup, so that no node
// outlives its module.
void DetachModuleAugments(QmCtx* ctx, QmsModule* module);
