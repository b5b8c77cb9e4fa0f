#include "RuntimeShortcuts.h"

#include <atomic>
#include <cstring>

namespace sqlantlr {

namespace {

// The runtime's own functions of a common tree node, taken from the first
// tree factory's initialised node (every factory's node has the same ones).
struct CommonTreeCalls {
    pANTLR3_BASE_TREE (*newTree)(pANTLR3_ARBORETUM) = nullptr;
    void (*addChild)(pANTLR3_BASE_TREE, void *) = nullptr;
    ANTLR3_BOOLEAN (*isNilNode)(pANTLR3_BASE_TREE) = nullptr;
    void (*setParent)(pANTLR3_BASE_TREE, pANTLR3_BASE_TREE) = nullptr;
    void (*setChildIndex)(pANTLR3_BASE_TREE, ANTLR3_INT32) = nullptr;
    ANTLR3_UINT32 (*getChildCount)(pANTLR3_BASE_TREE) = nullptr;
    void (*freshenAll)(pANTLR3_BASE_TREE) = nullptr;
    void (*adaptorAddChild)(pANTLR3_BASE_TREE_ADAPTOR, void *, void *) = nullptr;
    void *(*rulePostProcessing)(pANTLR3_BASE_TREE_ADAPTOR, void *) = nullptr;
};

const CommonTreeCalls &runtimeCalls(pANTLR3_BASE_TREE_ADAPTOR adaptor)
{
    static const CommonTreeCalls calls = [adaptor] {
        pANTLR3_ARBORETUM arboretum = static_cast<pANTLR3_COMMON_TREE_ADAPTOR>(adaptor->super)->arboretum;
        const ANTLR3_BASE_TREE &node = arboretum->unTruc.baseTree;
        CommonTreeCalls taken;
        taken.newTree = arboretum->newTree;
        taken.addChild = node.addChild;
        taken.isNilNode = node.isNilNode;
        taken.setParent = node.setParent;
        taken.setChildIndex = node.setChildIndex;
        taken.getChildCount = node.getChildCount;
        taken.freshenAll = node.freshenPACIndexesAll;
        taken.adaptorAddChild = adaptor->addChild;
        taken.rulePostProcessing = adaptor->rulePostProcessing;
        return taken;
    }();
    return calls;
}

// Set before any node gets the functions below, and never changed after.
std::atomic<const CommonTreeCalls *> takenCalls{nullptr};

const CommonTreeCalls &callsTaken() { return *takenCalls.load(std::memory_order_acquire); }

// A node whose index and parent are set by the common tree's own functions:
// its fields may be set directly, to the same effect.
bool placesLikeCommonTree(pANTLR3_BASE_TREE tree, const CommonTreeCalls &calls)
{
    return tree->setChildIndex == calls.setChildIndex && tree->setParent == calls.setParent;
}

// A child's index and parent as the common tree's setChildIndex and
// setParent leave them. The runtime's setParent stores the parent's own
// parent, not the parent; nothing here reads it, and it is kept the same.
void placeChild(pANTLR3_BASE_TREE child, pANTLR3_COMMON_TREE parent, ANTLR3_UINT32 index)
{
    auto node = static_cast<pANTLR3_COMMON_TREE>(child->super);
    node->childIndex = static_cast<ANTLR3_INT32>(index);
    node->parent = parent->parent;
}

// The runtime makes each tree node by running its initialisers, which set
// some thirty function pointers one at a time. The arboretum keeps a node
// initialised the same way (unTruc, with the factory and string factory that
// a node gets); copying it gives the same node for a fraction of the work.
// A new pool is left to the runtime.
pANTLR3_BASE_TREE newTreeByCopy(pANTLR3_ARBORETUM factory)
{
    // A nil node given back by rule post-processing is handed out again as
    // it is, as the runtime does.
    if (void *reused = factory->nilStack->peek(factory->nilStack); reused != nullptr) {
        factory->nilStack->pop(factory->nilStack);
        return static_cast<pANTLR3_BASE_TREE>(reused);
    }
    if (factory->nextTree >= ANTLR3_FACTORY_POOL_SIZE) {
        return callsTaken().newTree(factory);
    }
    pANTLR3_COMMON_TREE tree = factory->pools[factory->thisPool] + factory->nextTree;
    factory->nextTree++;
    std::memcpy(static_cast<void *>(tree), &factory->unTruc, sizeof *tree);
    tree->baseTree.super = tree;
    return &tree->baseTree;
}

void addTreeChild(pANTLR3_BASE_TREE tree, void *childPointer);

void adaptorAddChild(pANTLR3_BASE_TREE_ADAPTOR adaptor, void *tree, void *child)
{
    if (tree == nullptr || child == nullptr) {
        return;
    }
    auto parent = static_cast<pANTLR3_BASE_TREE>(tree);
    if (parent->addChild == addTreeChild) {
        addTreeChild(parent, child);
    } else {
        callsTaken().adaptorAddChild(adaptor, tree, child);
    }
}

// The end of every rule: a nil root with one child gives way to the child
// (which loses its parent and index) and is kept for reuse; a nil root
// without children gives no tree.
void *postProcessRule(pANTLR3_BASE_TREE_ADAPTOR adaptor, void *rootPointer)
{
    auto root = static_cast<pANTLR3_BASE_TREE>(rootPointer);
    if (root == nullptr) {
        return nullptr;
    }
    const CommonTreeCalls &calls = callsTaken();
    if (root->isNilNode != calls.isNilNode || root->getChildCount != calls.getChildCount) {
        return calls.rulePostProcessing(adaptor, root);
    }
    if (static_cast<pANTLR3_COMMON_TREE>(root->super)->token != nullptr) {
        return root;
    }
    const ANTLR3_UINT32 count = root->children == nullptr ? 0 : root->children->count;
    if (count == 0) {
        return nullptr;
    }
    if (count > 1) {
        return root;
    }
    auto child = static_cast<pANTLR3_BASE_TREE>(root->children->elements[0].element);
    if (child == nullptr || !placesLikeCommonTree(child, calls)) {
        return calls.rulePostProcessing(adaptor, root);
    }
    auto node = static_cast<pANTLR3_COMMON_TREE>(child->super);
    node->parent = nullptr;
    node->childIndex = -1;
    root->reuse(root);
    return child;
}

// The runtime's child addition, to the same effect: a nil (list) child gives
// its children, in order, and a node without children takes the list over
// (then, and only then, the runtime gives each child its index and parent).
void addTreeChild(pANTLR3_BASE_TREE tree, void *childPointer)
{
    auto child = static_cast<pANTLR3_BASE_TREE>(childPointer);
    if (child == nullptr) {
        return;
    }
    // Only the child's nil test is the common tree's to be known here; the
    // rest goes through the nodes' own functions or is checked where used.
    const CommonTreeCalls &calls = callsTaken();
    if (child->isNilNode != calls.isNilNode) {
        calls.addChild(tree, child);
        return;
    }
    auto freeChild = reinterpret_cast<void(ANTLR3_CDECL *)(void *)>(child->free);
    if (static_cast<pANTLR3_COMMON_TREE>(child->super)->token != nullptr) {
        if (tree->children == nullptr) {
            tree->createChildrenList(tree);
        }
        tree->children->add(tree->children, child, freeChild);
        return;
    }
    // A nil node: a list of children to add in its place.
    pANTLR3_VECTOR list = child->children;
    if (list == nullptr || list == tree->children) {  // the runtime refuses a list added to itself
        return;
    }
    if (tree->children == nullptr) {
        // The list moves over whole; the nil node is left without children.
        tree->children = list;
        child->children = nullptr;
        if (tree->freshenPACIndexesAll != calls.freshenAll) {
            tree->freshenPACIndexesAll(tree);
            return;
        }
        auto parent = static_cast<pANTLR3_COMMON_TREE>(tree->super);
        for (ANTLR3_UINT32 i = 0; i < list->count; ++i) {
            auto entry = static_cast<pANTLR3_BASE_TREE>(list->elements[i].element);
            if (placesLikeCommonTree(entry, calls)) {
                placeChild(entry, parent, i);
            } else {
                entry->setChildIndex(entry, static_cast<ANTLR3_INT32>(i));
                entry->setParent(entry, tree);
            }
        }
        return;
    }
    for (ANTLR3_UINT32 i = 0; i < list->count; ++i) {
        if (void *entry = list->elements[i].element; entry != nullptr) {
            tree->children->add(tree->children, entry, freeChild);
        }
    }
}

// The node stream's runtime look-ahead and the common tree's and token's type
// functions, taken from the first stream (the same for every stream).
struct NodeStreamCalls {
    pANTLR3_BASE_TREE (*lookAhead)(pANTLR3_TREE_NODE_STREAM, ANTLR3_INT32) = nullptr;
    ANTLR3_UINT32 (*lookAheadType)(pANTLR3_INT_STREAM, ANTLR3_INT32) = nullptr;
    ANTLR3_UINT32 (*treeType)(pANTLR3_BASE_TREE) = nullptr;
    ANTLR3_UINT32 (*tokenType)(pANTLR3_COMMON_TOKEN) = nullptr;
};

std::atomic<const NodeStreamCalls *> takenStreamCalls{nullptr};

const NodeStreamCalls &streamCallsTaken() { return *takenStreamCalls.load(std::memory_order_acquire); }

// LT(k): the node k places ahead in the filled buffer, or the stream's end
// node past its end. The buffer is filled by the runtime's first look.
pANTLR3_BASE_TREE nodeAhead(pANTLR3_TREE_NODE_STREAM stream, ANTLR3_INT32 k)
{
    pANTLR3_COMMON_TREE_NODE_STREAM nodes = stream->ctns;
    if (k <= 0 || nodes->p == -1) {
        return streamCallsTaken().lookAhead(stream, k);
    }
    const ANTLR3_INT32 at = nodes->p + k - 1;
    if (at >= static_cast<ANTLR3_INT32>(nodes->nodes->count)) {
        return &nodes->EOF_NODE.baseTree;
    }
    return static_cast<pANTLR3_BASE_TREE>(nodes->nodes->elements[at].element);
}

// LA(k): the type of LT(k); a common tree's type is its token's, 0 without one.
ANTLR3_UINT32 nodeTypeAhead(pANTLR3_INT_STREAM input, ANTLR3_INT32 k)
{
    auto stream = static_cast<pANTLR3_TREE_NODE_STREAM>(input->super);
    const NodeStreamCalls &calls = streamCallsTaken();
    if (stream->_LT != nodeAhead) {
        return calls.lookAheadType(input, k);
    }
    pANTLR3_BASE_TREE node = nodeAhead(stream, k);
    if (node == nullptr) {
        return ANTLR3_TOKEN_INVALID;
    }
    if (node->getType != calls.treeType) {
        return node->getType(node);
    }
    pANTLR3_COMMON_TOKEN token = static_cast<pANTLR3_COMMON_TREE>(node->super)->token;
    if (token == nullptr) {
        return 0;
    }
    return token->getType == calls.tokenType ? token->type : token->getType(token);
}

// The runtime's stack functions, taken from the first follow-set stack.
struct StackCalls {
    void *(*pop)(pANTLR3_STACK) = nullptr;
    ANTLR3_BOOLEAN (*push)(pANTLR3_STACK, void *, void(ANTLR3_CDECL *)(void *)) = nullptr;
    ANTLR3_UINT32 (*add)(pANTLR3_VECTOR, void *, void(ANTLR3_CDECL *)(void *)) = nullptr;
    void (*del)(pANTLR3_VECTOR, ANTLR3_UINT32) = nullptr;
    void *(*get)(pANTLR3_VECTOR, ANTLR3_UINT32) = nullptr;
};

// A stack whose own and vector's functions are the runtime's.
bool isRuntimeStack(pANTLR3_STACK stack, const StackCalls &calls)
{
    pANTLR3_VECTOR list = stack->vector;
    return stack->push == calls.push && stack->pop == calls.pop && list->add == calls.add && list->del == calls.del &&
           list->get == calls.get;
}

// Push: the element goes on top, with its free function. Only on a stack
// whose vector has the runtime's own functions (checked when installed).
ANTLR3_BOOLEAN pushInPlace(pANTLR3_STACK stack, void *element, void(ANTLR3_CDECL *freeElement)(void *))
{
    stack->top = element;
    pANTLR3_VECTOR list = stack->vector;
    if (list->count == list->elementsSize) {
        return static_cast<ANTLR3_BOOLEAN>(list->add(list, element, freeElement));
    }
    list->elements[list->count].element = element;
    list->elements[list->count].freeptr = freeElement;
    list->count++;
    return static_cast<ANTLR3_BOOLEAN>(list->count);
}

// Pop: the top element is freed (if it has a free function) and dropped;
// the new top is returned, as the runtime's pop does, or nullptr.
void *popInPlace(pANTLR3_STACK stack)
{
    pANTLR3_VECTOR list = stack->vector;
    if (list->count > 0) {
        ANTLR3_VECTOR_ELEMENT &top = list->elements[list->count - 1];
        if (top.freeptr != nullptr) {
            top.freeptr(top.element);
            top.freeptr = nullptr;
        }
        top.element = nullptr;
        list->count--;
    }
    stack->top = list->count > 0 ? list->elements[list->count - 1].element : nullptr;
    return stack->top;
}

} // namespace

void useDirectStack(pANTLR3_STACK stack)
{
    if (stack == nullptr || stack->push == pushInPlace) {
        return;
    }
    static const StackCalls taken = [stack] {
        StackCalls calls;
        calls.pop = stack->pop;
        calls.push = stack->push;
        calls.add = stack->vector->add;
        calls.del = stack->vector->del;
        calls.get = stack->vector->get;
        return calls;
    }();
    if (!isRuntimeStack(stack, taken)) {
        return;
    }
    stack->push = pushInPlace;
    stack->pop = popInPlace;
}

void useDirectFollowStack(pANTLR3_BASE_RECOGNIZER recognizer)
{
    useDirectStack(recognizer->state->following);
}

void useDirectNodeReading(pANTLR3_COMMON_TREE_NODE_STREAM nodes)
{
    if (nodes == nullptr || nodes->tnstream->_LT == nodeAhead) {
        return;
    }
    static const NodeStreamCalls taken = [nodes] {
        NodeStreamCalls calls;
        calls.lookAhead = nodes->tnstream->_LT;
        calls.lookAheadType = nodes->tnstream->istream->_LA;
        calls.treeType = nodes->EOF_NODE.baseTree.getType;
        calls.tokenType = nodes->EOF_NODE.token->getType;
        return calls;
    }();
    takenStreamCalls.store(&taken, std::memory_order_release);
    nodes->tnstream->_LT = nodeAhead;
    nodes->tnstream->istream->_LA = nodeTypeAhead;
}

void useDirectTreeBuilding(pANTLR3_BASE_TREE_ADAPTOR adaptor)
{
    takenCalls.store(&runtimeCalls(adaptor), std::memory_order_release);
    pANTLR3_ARBORETUM arboretum = static_cast<pANTLR3_COMMON_TREE_ADAPTOR>(adaptor->super)->arboretum;
    arboretum->newTree = newTreeByCopy;
    useDirectStack(arboretum->nilStack);
    arboretum->unTruc.baseTree.addChild = addTreeChild;
    adaptor->addChild = adaptorAddChild;
    adaptor->rulePostProcessing = postProcessRule;
}

bool treeFactoriesUnused(pANTLR3_BASE_TREE_ADAPTOR adaptor)
{
    pANTLR3_ARBORETUM arboretum = static_cast<pANTLR3_COMMON_TREE_ADAPTOR>(adaptor->super)->arboretum;
    if (arboretum == nullptr || arboretum->thisPool != 0 || arboretum->nextTree != 0 ||
        arboretum->nilStack->vector->count != 0) {
        return false;
    }
    pANTLR3_VECTOR_FACTORY vectors = arboretum->vFactory;
    if (vectors->thisPool != 0 || vectors->nextVector != 0 || vectors->freeStack->vector->count != 0) {
        return false;
    }
    pANTLR3_TOKEN_FACTORY tokens = adaptor->tokenFactory;
    return tokens == nullptr || (tokens->thisPool == 0 && tokens->nextToken == 0);
}

} // namespace sqlantlr
