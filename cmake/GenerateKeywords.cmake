# Generates everything that follows from the keyword list lexer/keywords.txt:
#   VOCAB_OUT   the token vocabulary: the hand-written named tokens
#               (VOCAB_IN) followed by T__N=N and 'LITERAL'=N per keyword
#   LEXER_OUT   the lexer grammar LEXER_IN with its "// @KEYWORD_RULES@"
#               line replaced by one rule per literal that is no word, in
#               number order
#   TABLE_OUT   a C++ table of the word keywords (letters, digits and '_',
#               starting with a letter, maybe with one trailing blank): the
#               lexer reads them with its STRING rule and looks the word up;
#               the one-word rules of LEXER_IN (T_NOT : 'NOT' ;) are added
#   NAMES_OUT   the keywordName rule shared by parser and tree walker
#   WORDS_OUT   a C++ list of the words that may serve as names (for tests)
# Usage: cmake -DKEYWORDS=keywords.txt -DVOCAB_IN=.. -DLEXER_IN=.. -DVOCAB_OUT=..
#              -DLEXER_OUT=.. -DNAMES_OUT=.. -DWORDS_OUT=.. -DTABLE_OUT=.. -P GenerateKeywords.cmake

cmake_policy(VERSION 3.20)

include("${CMAKE_CURRENT_LIST_DIR}/WriteIfChanged.cmake")

file(READ "${KEYWORDS}" list_text)
# Comment lines are blanked (not dropped, so that line numbers stay right).
string(REGEX REPLACE "(^|\n)[ \t]*#[^\n]*" "\\1" list_text "${list_text}")
if(list_text MATCHES ";")
  message(FATAL_ERROR "${KEYWORDS}: ';' cannot be listed (it is the named token SEMI)")
endif()
file(READ "${VOCAB_IN}" named_vocab)
file(READ "${LEXER_IN}" lexer_text)

# Numbers and names the hand-written vocabulary already uses.
string(REGEX MATCHALL "[A-Za-z_0-9]+=[0-9]+" named_entries "${named_vocab}")
set(used_numbers "")
set(named_tokens "")
foreach(entry IN LISTS named_entries)
  string(REGEX REPLACE "=.*" "" token "${entry}")
  string(REGEX REPLACE ".*=" "" number "${entry}")
  list(APPEND used_numbers "${number}")
  list(APPEND named_tokens "${token}")
endforeach()

string(REPLACE "\n" ";" lines "${list_text}")
set(vocab_names "")
set(vocab_literals "")
set(lexer_rules "")
set(name_alternatives "")
set(words "")
set(table_entries "")
set(seen_literals "")
set(line_number 0)
foreach(line IN LISTS lines)
  math(EXPR line_number "${line_number} + 1")
  if(line MATCHES "^[ \t]*(#|$)")
    continue()
  endif()
  if(line MATCHES "^([0-9]+)[ \t]+'([^']+)'([ \t]+name)?[ \t]*$")
    set(number "${CMAKE_MATCH_1}")
    # string(CONCAT), not set(): set() takes a value such as CACHE as a keyword.
    string(CONCAT literal "${CMAKE_MATCH_2}")
    set(is_name "${CMAKE_MATCH_3}")
    if(number IN_LIST used_numbers)
      message(FATAL_ERROR "${KEYWORDS}:${line_number}: token number ${number} is used twice")
    endif()
    if(literal IN_LIST seen_literals)
      message(FATAL_ERROR "${KEYWORDS}:${line_number}: '${literal}' is listed twice")
    endif()
    list(APPEND used_numbers "${number}")
    list(APPEND seen_literals "${literal}")
    string(APPEND vocab_names "T__${number}=${number}\n")
    string(APPEND vocab_literals "'${literal}'=${number}\n")
    # A word would only compete with STRING in the lexer's prediction (which
    # grows with every literal); STRING matches it and looks it up instead.
    if(literal MATCHES "^([A-Z][A-Z0-9_]*)( ?)$")
      if(CMAKE_MATCH_2 STREQUAL " ")
        set(blank "true")
      else()
        set(blank "false")
      endif()
      string(APPEND table_entries "    {\"${CMAKE_MATCH_1}\", ${number}, ${blank}},\n")
    else()
      string(APPEND lexer_rules "T__${number} : '${literal}' ;\n")
    endif()
    if(is_name)
      string(APPEND name_alternatives "    | '${literal}'\n")
      string(STRIP "${literal}" word)
      string(APPEND words "    \"${word}\",\n")
    endif()
  elseif(line MATCHES "^-[ \t]+([A-Za-z_][A-Za-z_0-9]*)[ \t]+name[ \t]*$")
    set(token "${CMAKE_MATCH_1}")
    if(NOT token IN_LIST named_tokens)
      message(FATAL_ERROR "${KEYWORDS}:${line_number}: ${token} is not a named token of ${VOCAB_IN}")
    endif()
    if(NOT lexer_text MATCHES "\n${token}[ \t]*:[ \t]*'([^']+)'[ \t]*;")
      message(FATAL_ERROR "${KEYWORDS}:${line_number}: no rule ${token} : 'WORD' ; in ${LEXER_IN}")
    endif()
    string(APPEND name_alternatives "    | ${token}\n")
    string(APPEND words "    \"${CMAKE_MATCH_1}\",\n")
  else()
    message(FATAL_ERROR "${KEYWORDS}:${line_number}: expected NUMBER 'LITERAL' [name] or - TOKEN name")
  endif()
endforeach()

# The hand-written rules of the lexer grammar that match one word (T_NOT :
# 'NOT' ;) join the table: the generated lexer picks such a rule over STRING
# for exactly that word, so STRING never looks it up, and the lexer's fast
# path for names (lexer/PlainTokens.cpp) finds its type in the same table.
# (';' separates CMake's list items: the rules' ends are matched as '@'.)
string(REPLACE ";" "@" rule_text "${lexer_text}")
string(REGEX MATCHALL "\n[A-Z_][A-Za-z_0-9]*[ \t]*:[ \t]*'[A-Z][A-Z0-9_]*'[ \t]*@" word_rules "${rule_text}")
foreach(rule IN LISTS word_rules)
  string(REGEX MATCH "([A-Z_][A-Za-z_0-9]*)[ \t]*:[ \t]*'([A-Z][A-Z0-9_]*)'" rule "${rule}")
  if(CMAKE_MATCH_2 IN_LIST seen_literals)
    message(FATAL_ERROR "${LEXER_IN}: '${CMAKE_MATCH_2}' of rule ${CMAKE_MATCH_1} is also listed in ${KEYWORDS}")
  endif()
  string(APPEND table_entries "    {\"${CMAKE_MATCH_2}\", ${CMAKE_MATCH_1}, false},\n")
endforeach()

if(NOT lexer_text MATCHES "\n// @KEYWORD_RULES@\n")
  message(FATAL_ERROR "${LEXER_IN} has no line // @KEYWORD_RULES@")
endif()
string(REPLACE "// @KEYWORD_RULES@\n" "${lexer_rules}" lexer_text "${lexer_text}")

string(REGEX REPLACE "^    \\|" "    :" name_alternatives "${name_alternatives}")
set(names_text
"// ---- keywordName, generated from lexer/keywords.txt ----
// The keywords that may serve as names.
keywordName
${name_alternatives}    ;
")

write_if_changed("${VOCAB_OUT}" "${named_vocab}${vocab_names}${vocab_literals}")
write_if_changed("${LEXER_OUT}" "${lexer_text}")
write_if_changed("${NAMES_OUT}" "${names_text}")
write_if_changed("${TABLE_OUT}" "// Generated from lexer/keywords.txt: word, token type, trailing blank.\n${table_entries}")
write_if_changed("${WORDS_OUT}" "// Generated from lexer/keywords.txt: the keywords that may serve as names.\n${words}")
