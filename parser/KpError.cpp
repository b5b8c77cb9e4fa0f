#include <SQLAntlrParser/KpError.h>

#include "Log.h"

KpError KpError::errorWithLocalizedString(const std::string &message, int code)
{
    return KpError{Domain, code, message};
}

bool KpError::handleErrorWithLocalizedString(const std::string &message, int code, KpError *error)
{
    if (error != nullptr) {
        *error = errorWithLocalizedString(message, code);
        return true;
    }
    sqlantlr::logf("ERROR (%d): %s", code, message.c_str());
    return false;
}
