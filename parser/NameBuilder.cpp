// The name-part lists of the name rules (treegrammar/90-Names.g).
#include "NameBuilder.h"

#include "ParseSession.h"
#include "VellumTreeGrammarC.h"

std::vector<std::string> *kp_newNameList(pANTLR3_BASE_RECOGNIZER recognizer)
{
    sqlantlr::ParseSession *session = kp_session(recognizer);
    if (session == nullptr) {
        static thread_local std::vector<std::string> scratch;  // only when walked outside a driver
        scratch.clear();
        return &scratch;
    }
    return session->newNameList();
}

void kp_appendNamePart(std::vector<std::string> *parts, pANTLR3_BASE_TREE node)
{
    if (parts == nullptr || node == nullptr || kp_isRecoveryNode(node)) {
        return;
    }
    parts->push_back(kp_nodeText(node));
}
