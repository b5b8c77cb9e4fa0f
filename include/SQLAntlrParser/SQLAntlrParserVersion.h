// Version symbols of the library.
#pragma once

extern "C" {
// 1.0
extern const double SQLAntlrParserVersionNumber;
// "@(#)PROGRAM:SQLAntlrParser  PROJECT:Vellum-17-1\n"
extern const unsigned char SQLAntlrParserVersionString[];
}

// Debugging aid: sends the current call stack, innermost frame first, to the
// library's log sink (see SQLLog.h).
void printBackTrace();
