// Direct versions of the runtime calls a parse makes most often. The runtime
// reaches every tree node, stream and stack through function pointers:
// several per node and child as a statement's tree is built (many times over,
// as rules hand their child lists up), three for each look-ahead of the tree
// walker, and a push and a pop of the follow-set stack around every rule
// call. The functions here do the same work with direct field access on the
// runtime's own structures, and leave anything else to the runtime.
#pragma once

#include <antlr3.h>

namespace sqlantlr {

// Makes the adaptor's tree factory build nodes by copying its initialised
// node, and makes those nodes and the adaptor add children directly. Call it
// again whenever the adaptor is given a new tree factory.
void useDirectTreeBuilding(pANTLR3_BASE_TREE_ADAPTOR adaptor);

// True while the adaptor's tree factory, its vector factory and its token
// factory have handed out nothing since they were made (or reset): a
// statement imported without the grammar leaves them so, and they need no
// renewal after it.
bool treeFactoriesUnused(pANTLR3_BASE_TREE_ADAPTOR adaptor);

// Makes the node stream answer LT(k) and LA(k) for k > 0 from its node buffer
// once it is filled; everything else stays the runtime's.
void useDirectNodeReading(pANTLR3_COMMON_TREE_NODE_STREAM nodes);

// Makes a runtime stack push and pop in place (the same entries, top and
// results as the runtime's own functions).
void useDirectStack(pANTLR3_STACK stack);

// The same for the recognizer's follow-set stack.
void useDirectFollowStack(pANTLR3_BASE_RECOGNIZER recognizer);

} // namespace sqlantlr
