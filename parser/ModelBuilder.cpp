#include "ModelBuilder.h"

#include "ParseSession.h"

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
