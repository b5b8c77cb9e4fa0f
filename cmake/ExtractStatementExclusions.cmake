# Writes the tokens and keywords that can open no unknown statement, as the
# parser's otherObjectFirst rule lists them, into a C++ include, so that the
# data-statement scan of the script-line filter excludes the same statements
# as the grammar without a second list to keep in step.
# Usage: cmake -DGRAMMAR=grammar/10-Script.g -DOUTPUT=file.inc -P ExtractStatementExclusions.cmake
file(READ "${GRAMMAR}" grammar)
if(NOT grammar MATCHES "\notherObjectFirst[ \t\r\n]*:[ \t\r\n]*~[ \t\r\n]*\\(([^)]*)\\)")
  message(FATAL_ERROR "${GRAMMAR}: no rule 'otherObjectFirst : ~( ... )' to read the excluded statement starts from")
endif()
string(REGEX REPLACE "[ \t\r\n]+" "" set "${CMAKE_MATCH_1}")
string(REPLACE "|" ";" set "${set}")
set(tokens "")
set(words "")
foreach(element IN LISTS set)
  if(element MATCHES "^'([A-Za-z_][A-Za-z0-9_]*)'$")
    string(TOUPPER "${CMAKE_MATCH_1}" word)
    string(APPEND words "    \"${word}\",\n")
  elseif(element MATCHES "^[A-Za-z_][A-Za-z0-9_]*$")
    string(APPEND tokens "    ${element},\n")
  else()
    message(FATAL_ERROR "${GRAMMAR}: otherObjectFirst excludes '${element}', neither a token name nor a keyword")
  endif()
endforeach()
get_filename_component(source "${GRAMMAR}" NAME)
set(text "// Generated from ${source} (rule otherObjectFirst) by ExtractStatementExclusions.cmake.
// The tokens and keywords that can open no unknown statement.
static const ANTLR3_UINT32 unknownStatementExcludedTokens[] = {
${tokens}};
static const char *const unknownStatementExcludedWords[] = {
${words}};
")
include("${CMAKE_CURRENT_LIST_DIR}/WriteIfChanged.cmake")
write_if_changed("${OUTPUT}" "${text}")
