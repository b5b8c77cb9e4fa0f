#include <SQLAntlrParser/SQLAntlrParserVersion.h>

#include "Log.h"

#include <execinfo.h>

#include <cstdlib>

extern "C" {
const double SQLAntlrParserVersionNumber = 1.0;
const unsigned char SQLAntlrParserVersionString[] = "@(#)PROGRAM:SQLAntlrParser  PROJECT:Vellum-17-1\n";
}

void printBackTrace()
{
    void *frames[128];
    const int count = backtrace(frames, 128);
    char **symbols = backtrace_symbols(frames, count);
    if (symbols == nullptr) {
        return;
    }
    for (int i = 0; i < count; ++i) {
        sqlantlr::logMessage(symbols[i]);
    }
    std::free(symbols);
}
