// Model helpers of the name rules (treegrammar/90-Names.g): the name-part
// lists that qualified names and column lists return.
#pragma once

#include "RecognizerSupport.h"

#include <SchemaModel/SchemaModel.h>

#include <string>
#include <vector>

// A new, empty list of name parts that lives as long as the parse.
std::vector<std::string> *kp_newNameList(pANTLR3_BASE_RECOGNIZER recognizer);

// Appends a name part's text; a part that recovery replaced by an error node
// is no name and is left out.
void kp_appendNamePart(std::vector<std::string> *parts, pANTLR3_BASE_TREE node);
