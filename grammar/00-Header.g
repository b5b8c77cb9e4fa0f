// The statement parser. The build joins the fragments of this folder, in
// file-name order, into one grammar (VellumGrammarCParser.g) before running
// antlr3: each fragment holds one statement family.
//
// Trees are flat: matched tokens stay siblings in source order; subtrees exist
// only where a rule rewrites. The tree walker (treegrammar/) re-matches them.
parser grammar VellumGrammarCParser;

options {
    language     = C;
    output       = AST;
    ASTLabelType = pANTLR3_BASE_TREE;
    tokenVocab   = VellumGrammarC;
}

@parser::includes {
#include "RecognizerSupport.h"
}
