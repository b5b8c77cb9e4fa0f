# Fails when the token tables of lexer, parser and tree walker drift apart.
# antlr3 writes each recognizer's token table next to its code; a literal a
# grammar uses but keywords.txt lacks, or a named token missing from the
# vocabulary, gets a number of its own there that the lexer never produces.
#   parser: exactly the shared vocabulary
#   walker: the shared vocabulary plus treegrammar/WalkerOnly.tokens
#   lexer:  the shared vocabulary plus its fragment rules
# Usage: cmake -DGEN=generated-dir -DLEXER_GRAMMAR=file.g -P CheckVocabulary.cmake

function(read_table path out)
  if(NOT EXISTS "${path}")
    message(FATAL_ERROR "missing ${path}")
  endif()
  file(STRINGS "${path}" lines)
  list(SORT lines)
  set(${out} "${lines}" PARENT_SCOPE)
endfunction()

function(expect_same what expected actual)
  set(extra ${actual})
  list(REMOVE_ITEM extra ${expected})
  set(missing ${expected})
  list(REMOVE_ITEM missing ${actual})
  if(extra OR missing)
    message(SEND_ERROR "${what} drifted from the vocabulary:\n  not in the vocabulary: ${extra}\n  missing: ${missing}")
  endif()
endfunction()

read_table("${GEN}/VellumGrammarC.tokens" vocabulary)
read_table("${GEN}/VellumTreeGrammarCVocab.tokens" walker_vocabulary)
read_table("${GEN}/VellumGrammarCParser.tokens" parser_table)
read_table("${GEN}/VellumTreeGrammarC.tokens" walker_table)
read_table("${GEN}/VellumGrammarCLexer.tokens" lexer_table)

expect_same("The parser's token table" "${vocabulary}" "${parser_table}")
expect_same("The tree walker's token table" "${walker_vocabulary}" "${walker_table}")

file(READ "${LEXER_GRAMMAR}" lexer_text)
set(lexer_extra ${lexer_table})
list(REMOVE_ITEM lexer_extra ${vocabulary})
set(unexpected "")
foreach(entry IN LISTS lexer_extra)
  string(REGEX REPLACE "=.*" "" name "${entry}")
  if(NOT lexer_text MATCHES "\nfragment[ \t\n]+${name}[ \t\n]*:")
    list(APPEND unexpected "${entry}")
  endif()
endforeach()
set(lexer_missing ${vocabulary})
list(REMOVE_ITEM lexer_missing ${lexer_table})
if(unexpected OR lexer_missing)
  message(SEND_ERROR "The lexer's token table drifted from the vocabulary:\n  not in the vocabulary: ${unexpected}\n  missing: ${lexer_missing}")
endif()
list(LENGTH vocabulary count)
message(STATUS "lexer, parser and tree walker share ${count} token table entries")
