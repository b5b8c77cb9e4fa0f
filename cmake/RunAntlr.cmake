# Runs the antlr3 tool on one grammar. The tool prints a flood of harmless
# template warnings with the C target, so its output goes to a log that is
# shown only when generation fails.
# Usage: cmake -DANTLR=antlr3 -DGRAMMAR=file.g -DOUTDIR=dir -DLOG=file -P RunAntlr.cmake
execute_process(
  COMMAND ${ANTLR} -Xmaxinlinedfastates 10 -Xmaxswitchcaselabels 64 -o ${OUTDIR} -lib ${OUTDIR} ${GRAMMAR}
  RESULT_VARIABLE rc
  OUTPUT_VARIABLE out
  ERROR_VARIABLE out)
file(WRITE "${LOG}" "${out}")
string(REGEX MATCHALL "(^|\n)error\\([^\n]*" errors "${out}")
if(NOT rc EQUAL 0 OR errors)
  string(REGEX REPLACE "warning\\(24\\):[^\n]*\n" "" shown "${out}")
  message(FATAL_ERROR "antlr3 failed on ${GRAMMAR}:\n${shown}")
endif()
