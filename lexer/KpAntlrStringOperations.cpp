#include "KpAntlrStringOperations.h"

namespace kp_detail {

// Made at build time by sqlantlr_fold_table (lexer/CaseFoldTableGen.cpp);
// the declaration in the header gives it external linkage.
const char16_t upperCaseTable[0x10000] = {
#include "CaseFoldTable.inc"
};

} // namespace kp_detail

const KpAntlrStringOperations &KpAntlrStringOperations::sharedManager()
{
    static const KpAntlrStringOperations instance;
    return instance;
}
