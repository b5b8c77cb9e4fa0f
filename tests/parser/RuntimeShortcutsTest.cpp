// The direct versions of the runtime's tree building, node look-ahead and
// stack calls against the runtime's own: the same random operations are run
// on a runtime-only copy and on a copy with the direct calls, and every tree
// (shape, tokens, each node's parent and index), every reused node, every
// look-ahead and every stack state must come out the same.
#include "RuntimeShortcuts.h"

#include <gtest/gtest.h>

#include <antlr3.h>

#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

using sqlantlr::useDirectNodeReading;
using sqlantlr::useDirectStack;
using sqlantlr::useDirectTreeBuilding;

// One side of the comparison: an adaptor with its own tree factory, and
// the trees that are not (yet) the child of another.
struct TreeSide {
    pANTLR3_BASE_TREE_ADAPTOR adaptor = nullptr;
    std::vector<pANTLR3_BASE_TREE> loose;
    std::map<pANTLR3_BASE_TREE, int> ids;  // node -> order of first appearance

    TreeSide(pANTLR3_STRING_FACTORY strings, bool direct) : adaptor(ANTLR3_TREE_ADAPTORNew(strings))
    {
        if (direct) {
            useDirectTreeBuilding(adaptor);
        }
    }
    ~TreeSide() { adaptor->free(adaptor); }
    TreeSide(const TreeSide &) = delete;
    TreeSide &operator=(const TreeSide &) = delete;

    int id(pANTLR3_BASE_TREE node)
    {
        if (node == nullptr) {
            return -1;
        }
        return ids.emplace(node, static_cast<int>(ids.size())).first->second;
    }

    pANTLR3_ARBORETUM arboretum() const
    {
        return static_cast<pANTLR3_COMMON_TREE_ADAPTOR>(adaptor->super)->arboretum;
    }

    // The tree written out with every node's id, token, parent and index.
    std::string describe(pANTLR3_BASE_TREE node)
    {
        if (node == nullptr) {
            return "null";
        }
        auto common = static_cast<pANTLR3_COMMON_TREE>(node->super);
        std::string text = "(" + std::to_string(id(node)) + ":";
        text += common->token == nullptr ? "nil" : std::to_string(common->token->type);
        text += " parent=" + std::to_string(common->parent == nullptr ? -1 : id(&common->parent->baseTree));
        text += " index=" + std::to_string(common->childIndex);
        text += " kids=" + std::to_string(node->children == nullptr ? -1 : static_cast<int>(node->children->count));
        const ANTLR3_UINT32 count = node->getChildCount(node);
        for (ANTLR3_UINT32 i = 0; i < count; ++i) {
            text += " " + describe(static_cast<pANTLR3_BASE_TREE>(node->getChild(node, i)));
        }
        return text + ")";
    }

    std::string state()
    {
        std::string text;
        for (pANTLR3_BASE_TREE tree : loose) {
            text += describe(tree) + "\n";
        }
        pANTLR3_STACK reused = arboretum()->nilStack;
        text += "reusable " + std::to_string(reused->size(reused));
        return text;
    }
};

// Runs one random operation on both sides; the choices are drawn once.
void step(std::mt19937 &random, const std::vector<pANTLR3_COMMON_TOKEN> &tokens, TreeSide &a, TreeSide &b)
{
    const int kind = static_cast<int>(random() % 6);
    const std::size_t loose = a.loose.size();
    const std::size_t first = loose == 0 ? 0 : random() % loose;
    std::size_t second = loose < 2 ? 0 : random() % (loose - 1);
    if (second >= first) {
        ++second;
    }
    pANTLR3_COMMON_TOKEN token = tokens[random() % tokens.size()];
    for (TreeSide *side : {&a, &b}) {
        pANTLR3_BASE_TREE_ADAPTOR adaptor = side->adaptor;
        std::vector<pANTLR3_BASE_TREE> &trees = side->loose;
        switch (kind) {
        case 0:  // a node for a token
            trees.push_back(static_cast<pANTLR3_BASE_TREE>(adaptor->create(adaptor, token)));
            side->id(trees.back());
            break;
        case 1:  // a nil node: a list
            trees.push_back(static_cast<pANTLR3_BASE_TREE>(adaptor->nilNode(adaptor)));
            side->id(trees.back());
            break;
        case 2:  // one tree added to another (a list gives its children)
        case 3:
            if (loose >= 2) {
                adaptor->addChild(adaptor, trees[first], trees[second]);
                trees.erase(trees.begin() + static_cast<std::ptrdiff_t>(second));
            }
            break;
        case 4:  // a new root over a tree: a node, or a list of one node, as a
                 // parser makes them (the runtime cannot root on an empty list)
            if (loose >= 2 && (trees[first]->isNilNode(trees[first]) == ANTLR3_FALSE ||
                               trees[first]->getChildCount(trees[first]) == 1)) {
                auto root = static_cast<pANTLR3_BASE_TREE>(adaptor->becomeRoot(adaptor, trees[first], trees[second]));
                trees[first] = root;
                trees.erase(trees.begin() + static_cast<std::ptrdiff_t>(second));
            }
            break;
        default:  // the end of a rule
            if (loose >= 1) {
                auto result = static_cast<pANTLR3_BASE_TREE>(adaptor->rulePostProcessing(adaptor, trees[first]));
                if (result == nullptr) {
                    trees.erase(trees.begin() + static_cast<std::ptrdiff_t>(first));
                } else {
                    trees[first] = result;
                }
            }
            break;
        }
    }
}

std::vector<pANTLR3_COMMON_TOKEN> makeTokens(int count)
{
    std::vector<pANTLR3_COMMON_TOKEN> tokens;
    for (int i = 0; i < count; ++i) {
        tokens.push_back(antlr3CommonTokenNew(static_cast<ANTLR3_UINT32>(10 + i)));
    }
    return tokens;
}

void freeTokens(std::vector<pANTLR3_COMMON_TOKEN> &tokens)
{
    for (pANTLR3_COMMON_TOKEN token : tokens) {
        ANTLR3_FREE(token);
    }
    tokens.clear();
}

TEST(RuntimeShortcutsTest, TreeBuildingMatchesTheRuntime)
{
    pANTLR3_STRING_FACTORY strings = antlr3StringFactoryNew(ANTLR3_ENC_8BIT);
    std::vector<pANTLR3_COMMON_TOKEN> tokens = makeTokens(12);
    for (unsigned seed = 1; seed <= 60; ++seed) {
        TreeSide runtime(strings, false);
        TreeSide direct(strings, true);
        std::mt19937 random(seed);
        // Enough operations to fill a pool of nodes (1,024) on some seeds.
        const int steps = seed % 10 == 0 ? 4000 : 200;
        for (int i = 0; i < steps; ++i) {
            step(random, tokens, runtime, direct);
            if (i % 25 == 0 || i == steps - 1) {
                ASSERT_EQ(runtime.state(), direct.state()) << "seed " << seed << " step " << i;
            }
        }
    }
    freeTokens(tokens);
    strings->close(strings);
}

// Fresh factories are unused; any node, nil node, child list or imaginary
// token made since makes them used, and so would a node handed back for reuse.
TEST(RuntimeShortcutsTest, UnusedTreeFactoriesAreToldApart)
{
    pANTLR3_STRING_FACTORY strings = antlr3StringFactoryNew(ANTLR3_ENC_8BIT);
    std::vector<pANTLR3_COMMON_TOKEN> tokens = makeTokens(3);
    using Use = void (*)(pANTLR3_BASE_TREE_ADAPTOR, const std::vector<pANTLR3_COMMON_TOKEN> &);
    const Use uses[] = {
        [](pANTLR3_BASE_TREE_ADAPTOR adaptor, const std::vector<pANTLR3_COMMON_TOKEN> &words) {
            adaptor->create(adaptor, words[0]);
        },
        [](pANTLR3_BASE_TREE_ADAPTOR adaptor, const std::vector<pANTLR3_COMMON_TOKEN> &) { adaptor->nilNode(adaptor); },
        [](pANTLR3_BASE_TREE_ADAPTOR adaptor, const std::vector<pANTLR3_COMMON_TOKEN> &) {
            adaptor->createTypeText(adaptor, 5, reinterpret_cast<pANTLR3_UINT8>(const_cast<char *>("imaginary")));
        },
        [](pANTLR3_BASE_TREE_ADAPTOR adaptor, const std::vector<pANTLR3_COMMON_TOKEN> &words) {
            auto root = static_cast<pANTLR3_BASE_TREE>(adaptor->create(adaptor, words[0]));
            adaptor->addChild(adaptor, root, adaptor->create(adaptor, words[1]));
        },
    };
    for (const bool direct : {false, true}) {
        for (const Use use : uses) {
            TreeSide side(strings, direct);
            EXPECT_TRUE(sqlantlr::treeFactoriesUnused(side.adaptor));
            use(side.adaptor, tokens);
            EXPECT_FALSE(sqlantlr::treeFactoriesUnused(side.adaptor));
        }
    }
    freeTokens(tokens);
    strings->close(strings);
}

// Adds the tree of a parenthesised list of words, e.g. "1 (2 3 (4)) 5".
pANTLR3_BASE_TREE buildTree(pANTLR3_BASE_TREE_ADAPTOR adaptor, const std::vector<pANTLR3_COMMON_TOKEN> &tokens,
                            std::mt19937 &random, int depth)
{
    auto root = static_cast<pANTLR3_BASE_TREE>(adaptor->create(adaptor, tokens[random() % tokens.size()]));
    const int children = depth > 3 ? 0 : static_cast<int>(random() % 4);
    for (int i = 0; i < children; ++i) {
        adaptor->addChild(adaptor, root, buildTree(adaptor, tokens, random, depth + 1));
    }
    return root;
}

TEST(RuntimeShortcutsTest, NodeLookAheadMatchesTheRuntime)
{
    pANTLR3_STRING_FACTORY strings = antlr3StringFactoryNew(ANTLR3_ENC_8BIT);
    std::vector<pANTLR3_COMMON_TOKEN> tokens = makeTokens(8);
    for (unsigned seed = 1; seed <= 40; ++seed) {
        pANTLR3_BASE_TREE_ADAPTOR adaptor = ANTLR3_TREE_ADAPTORNew(strings);
        std::mt19937 random(seed);
        // A list root (nil) for some seeds: the stream leaves out its DOWN and UP.
        pANTLR3_BASE_TREE tree = buildTree(adaptor, tokens, random, 0);
        if (seed % 3 == 0) {
            auto list = static_cast<pANTLR3_BASE_TREE>(adaptor->nilNode(adaptor));
            adaptor->addChild(adaptor, list, tree);
            adaptor->addChild(adaptor, list, buildTree(adaptor, tokens, random, 1));
            tree = list;
        }
        pANTLR3_COMMON_TREE_NODE_STREAM runtime = antlr3CommonTreeNodeStreamNewTree(tree, 0);
        pANTLR3_COMMON_TREE_NODE_STREAM direct = antlr3CommonTreeNodeStreamNewTree(tree, 0);
        useDirectNodeReading(direct);
        // Nodes are named by token type; the stream's own end and invalid
        // nodes by their role, as each stream has its own.
        auto name = [](pANTLR3_COMMON_TREE_NODE_STREAM nodes, pANTLR3_BASE_TREE node) -> std::string {
            if (node == nullptr) {
                return "null";
            }
            if (node == &nodes->EOF_NODE.baseTree) {
                return "EOF";
            }
            if (node == &nodes->INVALID_NODE.baseTree) {
                return "INVALID";
            }
            if (node == &nodes->UP.baseTree) {
                return "UP";
            }
            if (node == &nodes->DOWN.baseTree) {
                return "DOWN";
            }
            return std::to_string(reinterpret_cast<std::uintptr_t>(node));
        };
        int guard = 0;
        for (;;) {
            for (ANTLR3_INT32 k = -3; k <= 5; ++k) {
                ASSERT_EQ(name(runtime, runtime->tnstream->_LT(runtime->tnstream, k)),
                          name(direct, direct->tnstream->_LT(direct->tnstream, k)))
                    << "seed " << seed << " k " << k;
                ASSERT_EQ(runtime->tnstream->istream->_LA(runtime->tnstream->istream, k),
                          direct->tnstream->istream->_LA(direct->tnstream->istream, k))
                    << "seed " << seed << " k " << k;
            }
            if (runtime->tnstream->istream->_LA(runtime->tnstream->istream, 1) == ANTLR3_TOKEN_EOF || ++guard > 500) {
                break;
            }
            runtime->tnstream->istream->consume(runtime->tnstream->istream);
            direct->tnstream->istream->consume(direct->tnstream->istream);
        }
        EXPECT_LT(guard, 500);
        runtime->free(runtime);
        direct->free(direct);
        adaptor->free(adaptor);
    }
    freeTokens(tokens);
    strings->close(strings);
}

int freedElements = 0;
void countFree(void *) { ++freedElements; }

std::string stackState(pANTLR3_STACK stack)
{
    std::string text = "top=" + std::to_string(reinterpret_cast<std::uintptr_t>(stack->top));
    pANTLR3_VECTOR list = stack->vector;
    text += " count=" + std::to_string(list->count);
    for (ANTLR3_UINT32 i = 0; i < list->count; ++i) {
        text += " " + std::to_string(reinterpret_cast<std::uintptr_t>(list->elements[i].element));
        text += list->elements[i].freeptr != nullptr ? "f" : "";
    }
    return text;
}

TEST(RuntimeShortcutsTest, StackMatchesTheRuntime)
{
    pANTLR3_STACK runtime = antlr3StackNew(8);
    pANTLR3_STACK direct = antlr3StackNew(8);
    useDirectStack(direct);
    ASSERT_NE(runtime->push, direct->push);
    std::mt19937 random(7);
    int values[64] = {};
    int freedByRuntime = 0;
    int freedByDirect = 0;
    // Runs of pushes and pops that grow the stack past its first block,
    // pop it empty and pop an empty stack.
    for (int i = 0; i < 5000; ++i) {
        const bool push = (i / 200) % 2 == 0 ? random() % 4 != 0 : random() % 4 == 0;
        if (push) {
            void *element = &values[random() % 64];
            void (*freeElement)(void *) = random() % 3 == 0 ? countFree : nullptr;
            ASSERT_EQ(runtime->push(runtime, element, freeElement), direct->push(direct, element, freeElement));
        } else {
            freedElements = 0;
            void *fromRuntime = runtime->pop(runtime);
            freedByRuntime += freedElements;
            freedElements = 0;
            void *fromDirect = direct->pop(direct);
            freedByDirect += freedElements;
            ASSERT_EQ(fromRuntime, fromDirect) << "step " << i;
        }
        ASSERT_EQ(stackState(runtime), stackState(direct)) << "step " << i;
        ASSERT_EQ(runtime->peek(runtime), direct->peek(direct));
    }
    EXPECT_EQ(freedByRuntime, freedByDirect);
    EXPECT_GT(freedByDirect, 0);
    runtime->free(runtime);
    direct->free(direct);
}

} // namespace
