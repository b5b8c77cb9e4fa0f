#include "Versions.h"

#include "Diagram.h"

#include <SQLAntlrParser/SQLAntlrParserVersion.h>

#include <antlr3config.h>
#include <unicode/uversion.h>

#include <cstdio>

namespace sqlantlr {

std::string libraryVersions()
{
    char number[32];
    std::snprintf(number, sizeof number, "%.1f", SQLAntlrParserVersionNumber);
    UVersionInfo icu;
    u_getVersion(icu);
    char icuText[U_MAX_VERSION_STRING_LENGTH];
    u_versionToString(icu, icuText);
    std::string text;
    text += "SQLAntlrParser library " + std::string(number) + "\n";
    // libantlr3c reports its version only at build time.
    text += "ANTLR 3 C runtime " PACKAGE_VERSION "\n";
    text += "ICU " + std::string(icuText) + "\n";
    text += graphvizVersion() + "\n";
#if defined(__VERSION__)
    text += "compiler " __VERSION__;
#endif
#if defined(_GLIBCXX_RELEASE)
    text += ", libstdc++ " + std::to_string(_GLIBCXX_RELEASE);
#endif
    return text;
}

} // namespace sqlantlr
