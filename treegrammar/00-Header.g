// The model builder: walks the parser's syntax tree and calls the schema
// model. The build joins the fragments of this folder, in file-name order,
// into one tree grammar (VellumTreeGrammarC.g). Actions stay thin: each calls
// a named helper of one of the builders (parser/*Builder.h, see README).
tree grammar VellumTreeGrammarC;

options {
    language     = C;
    ASTLabelType = pANTLR3_BASE_TREE;
    tokenVocab   = VellumTreeGrammarCVocab;
}

@includes {
#include "RecognizerSupport.h"
#include "NameBuilder.h"
}
