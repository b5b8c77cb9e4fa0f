# Joins grammar fragments into one grammar file (the antlr3 C target cannot
# import grammars). Usage: cmake -DOUTPUT=file -DINPUTS="a|b|c" -P ConcatGrammar.cmake
string(REPLACE "|" ";" INPUTS "${INPUTS}")
set(text "")
foreach(part IN LISTS INPUTS)
  file(READ "${part}" body)
  get_filename_component(name "${part}" NAME)
  string(APPEND text "// ---- ${name} ----\n${body}\n")
endforeach()
include("${CMAKE_CURRENT_LIST_DIR}/WriteIfChanged.cmake")
write_if_changed("${OUTPUT}" "${text}")
