# Runs the antlr3 tool on one grammar. The tool prints a flood of harmless
# template warnings (warning(24)) with the C target; its output goes to a log.
# Anything else the tool reports (an error, any other warning, such as an
# ambiguity or an unreachable alternative) fails the build with the lines
# that matter.
# The analysis of a decision gives up after -Xconversiontimeout and falls back
# to one token of look-ahead, which reports false ambiguities; the default
# (one second) is too short on a loaded machine, so the limit is raised.
# Usage: cmake -DANTLR=antlr3 -DGRAMMAR=file.g -DOUTDIR=dir -DLOG=file -P RunAntlr.cmake
execute_process(
  COMMAND ${ANTLR} -Xconversiontimeout 60000 -Xmaxinlinedfastates 10 -Xmaxswitchcaselabels 64 -o ${OUTDIR} -lib ${OUTDIR} ${GRAMMAR}
  RESULT_VARIABLE rc
  OUTPUT_VARIABLE out
  ERROR_VARIABLE out)
file(WRITE "${LOG}" "${out}")
# The known template warning is one line each; drop those and see what is left.
string(REGEX REPLACE "(^|\n)warning\\(24\\):[^\n]*" "" shown "${out}")
string(STRIP "${shown}" shown)
if(NOT rc EQUAL 0 OR NOT shown STREQUAL "")
  # Leave nothing that a later build could take for a good result.
  get_filename_component(stem "${GRAMMAR}" NAME_WE)
  file(REMOVE "${OUTDIR}/${stem}.c" "${OUTDIR}/${stem}.h")
  message(FATAL_ERROR "antlr3 reported problems with ${GRAMMAR} (full log: ${LOG}):\n${shown}")
endif()
