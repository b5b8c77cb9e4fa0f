# Joins token vocabulary files. Usage: cmake -DOUTPUT=file -DINPUTS="a|b" -P ConcatVocabulary.cmake
string(REPLACE "|" ";" INPUTS "${INPUTS}")
set(text "")
foreach(part IN LISTS INPUTS)
  file(READ "${part}" body)
  string(APPEND text "${body}")
endforeach()
file(WRITE "${OUTPUT}" "${text}")
