#include "KpAntlrStringOperations.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>

KpAntlrStringOperations::KpAntlrStringOperations()
{
    for (unsigned c = 0; c < 0x10000; ++c) {
        auto unit = static_cast<UChar>(c);
        table_[c] = static_cast<char16_t>(unit);
        if (u_charType(static_cast<UChar32>(c)) != U_LOWERCASE_LETTER) {
            continue;
        }
        UChar upper[4];
        UErrorCode status = U_ZERO_ERROR;
        const int32_t length = u_strToUpper(upper, 4, &unit, 1, "", &status);
        if (U_SUCCESS(status) && length == 1) {
            table_[c] = static_cast<char16_t>(upper[0]);
        }
    }
}

const KpAntlrStringOperations &KpAntlrStringOperations::sharedManager()
{
    static const KpAntlrStringOperations instance;  // initialised once, thread-safe
    return instance;
}
