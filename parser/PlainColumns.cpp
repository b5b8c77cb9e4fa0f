// The direct reading of plain table columns (see PlainColumns.h). Each form
// read here is read exactly as the parser's column rules read it
// (grammar/30-Columns.g, 40-DataTypes.g, 50-Expressions.g) and applied as the
// walker applies it (treegrammar/30-Columns.g): the same tokens make the
// same texts through the same helpers. A token that is not part of these
// forms makes the column the grammar's to read.
#include "PlainColumns.h"

#include "ActionHelpers.h"
#include "ParseSession.h"
#include "TokenWindow.h"
#include "VellumGrammarCParser.h"

#include <SchemaModel/SchemaModel.h>

#include <array>
#include <cstring>
#include <optional>

using sqlantlr::ParseSession;
using sqlantlr::PlainColumn;
using sqlantlr::PlainColumnRun;
using sqlantlr::PlainColumnStep;

namespace {

// How a type word goes on.
enum class TypeForm : unsigned char {
    None,       // not read here
    Precision,  // INT, DECIMAL ...: ( n [, n] )
    Double,     // DOUBLE [PRECISION] ( n [, n] )
    Size,       // VARCHAR, TEXT, DATE ...: ( n [CHAR | BYTE] ) or ( MAX ... )
    Character,  // CHARACTER, CHAR, NCHAR [VARYING] ( size )
    Temporal,   // TIME, TIMESTAMP [( n )] [WITH | WITHOUT [LOCAL] TIME ZONE]
    Field,      // YEAR ... MINUTE [( n )]
    Choice,     // ENUM, SET ( 'a', 'b' ... )
};

// The token types of the words and symbols the reading knows, looked up once
// in the parser's token names ("'NULL'" and so on).
struct KnownTypes {
    ANTLR3_UINT32 null = 0, autoIncrement = 0, autoincrement = 0, unique = 0, zerofill = 0, unsignedWord = 0;
    ANTLR3_UINT32 comment = 0, set = 0, charset = 0, collate = 0, on = 0, update = 0, enable = 0;
    ANTLR3_UINT32 currentTimestamp = 0, localtime = 0, localtimestamp = 0, max = 0, charWord = 0, byteWord = 0;
    ANTLR3_UINT32 precision = 0, without = 0, local = 0, time = 0, zone = 0, timezone = 0;
    ANTLR3_UINT32 dot = 0, cast = 0, plus = 0, minus = 0, star = 0, percent = 0, concat = 0;
    std::array<TypeForm, kp_parserTokenCount> forms{};
    // The keywords that may serve as names (a default may call one: now()).
    std::array<bool, kp_parserTokenCount> nameWords{};

    KnownTypes()
    {
        auto type = [](const char *word) -> ANTLR3_UINT32 {
            const size_t length = std::strlen(word);
            for (ANTLR3_UINT32 i = 4; i < kp_parserTokenCount; ++i) {
                const auto *name = reinterpret_cast<const char *>(VellumGrammarCParserTokenNames[i]);
                if (name != nullptr && name[0] == '\'' && std::strncmp(name + 1, word, length) == 0 &&
                    name[length + 1] == '\'' && name[length + 2] == '\0') {
                    return i;
                }
            }
            return 0;
        };
        null = type("NULL");
        autoIncrement = type("AUTO_INCREMENT");
        autoincrement = type("AUTOINCREMENT");
        unique = type("UNIQUE");
        zerofill = type("ZEROFILL");
        unsignedWord = type("UNSIGNED");
        comment = type("COMMENT");
        set = type("SET");
        charset = type("CHARSET");
        collate = type("COLLATE");
        on = type("ON");
        update = type("UPDATE");
        enable = type("ENABLE");
        currentTimestamp = type("CURRENT_TIMESTAMP");
        localtime = type("LOCALTIME");
        localtimestamp = type("LOCALTIMESTAMP");
        max = type("MAX");
        charWord = T_CHAR;
        byteWord = type("BYTE");
        precision = type("PRECISION");
        without = type("WITHOUT");
        local = type("LOCAL");
        time = type("TIME");
        zone = type("ZONE");
        timezone = type("TIMEZONE");
        dot = type(".");
        cast = type("::");
        plus = type("+");
        minus = type("-");
        star = type("*");
        percent = type("%");
        concat = type("||");
        auto mark = [this, &type](TypeForm form, std::initializer_list<const char *> words) {
            for (const char *word : words) {
                if (ANTLR3_UINT32 t = type(word)) {
                    forms[t] = form;
                }
            }
        };
        // LONG is left out: LONG RAW is a type of its own.
        mark(TypeForm::Precision, {"NUMERIC", "DECIMAL", "DEC", "INTEGER", "INT", "SMALLINT", "NUMBER",
                                   "MEDIUMINT", "LONGINT", "TINYINT", "BIGINT", "FLOAT", "REAL"});
        mark(TypeForm::Double, {"DOUBLE"});
        mark(TypeForm::Size, {"VARCHAR", "VARCHAR2", "RAW", "TINYBLOB", "MEDIUMBLOB", "LONGBLOB", "NVARCHAR2",
                              "NVARCHAR", "TINYTEXT", "TEXT", "MEDIUMTEXT", "LONGTEXT", "BIT", "DATE", "VARBINARY",
                              "BINARY", "BLOB"});
        mark(TypeForm::Character, {"NCHAR"});
        forms[T_CHARACTER] = TypeForm::Character;
        forms[T_CHAR] = TypeForm::Character;
        mark(TypeForm::Temporal, {"TIME", "TIMESTAMP"});
        mark(TypeForm::Field, {"YEAR", "MONTH", "DAY", "HOUR", "MINUTE"});
        mark(TypeForm::Choice, {"ENUM", "SET"});
        static const char *const keywordNames[] = {
#include "KeywordNameWords.inc"
        };
        for (const char *word : keywordNames) {
            if (ANTLR3_UINT32 t = type(word)) {
                nameWords[t] = true;
            }
        }
        // Words with rules of their own where a value stands.
        for (const char *word : {"SUBSTRING", "SUBSTRING_INDEX", "GROUP_CONCAT", "CALL", "INTERVAL", "NULL",
                                 "CURRENT_TIMESTAMP", "LOCALTIME", "LOCALTIMESTAMP"}) {
            if (ANTLR3_UINT32 t = type(word)) {
                nameWords[t] = false;
            }
        }
    }
};

const KnownTypes &known()
{
    static const KnownTypes types;
    return types;
}

// The parser-channel tokens from a starting token on, read from the token
// window; a token past the end of input is nullptr.
class Cursor {
public:
    Cursor(sqlantlr::TokenWindow &window, pANTLR3_COMMON_TOKEN first, ANTLR3_UINT32 channel)
        : window_(&window), channel_(channel), index_(first->index), token_(first)
    {
    }
    pANTLR3_COMMON_TOKEN token() const { return token_; }
    ANTLR3_UINT32 type() const { return token_ != nullptr ? token_->type : ANTLR3_TOKEN_EOF; }
    bool is(ANTLR3_UINT32 type) const { return token_ != nullptr && type != 0 && token_->type == type; }
    void advance()
    {
        do {
            token_ = window_->raw(++index_);
        } while (token_ != nullptr && token_->channel != channel_);
    }
    // The token k places ahead on the channel (1: the next one).
    pANTLR3_COMMON_TOKEN ahead(int k) const
    {
        ANTLR3_MARKER at = index_;
        pANTLR3_COMMON_TOKEN token = token_;
        while (k-- > 0 && token != nullptr) {
            do {
                token = window_->raw(++at);
            } while (token != nullptr && token->channel != channel_);
        }
        return token;
    }

private:
    sqlantlr::TokenWindow *window_;
    ANTLR3_UINT32 channel_;
    ANTLR3_MARKER index_;
    pANTLR3_COMMON_TOKEN token_;
};

// A word of a type's text, brackets of a SQL Server name dropped as the
// walker drops them ([int] is int).
void appendTypeWord(std::string &text, pANTLR3_COMMON_TOKEN token)
{
    if (!text.empty()) {
        text += ' ';
    }
    const size_t start = text.size();
    text += kp_tokenText(token);
    if (text.size() - start >= 2 && text[start] == '[' && text.back() == ']') {
        text.pop_back();
        text.erase(start, 1);
    }
}

class Reader {
public:
    explicit Reader(Cursor &cursor) : at_(cursor), k_(known()) {}

    bool column(PlainColumn &column)
    {
        at_.advance();  // past the name
        if (kp_columnTypeAhead(at_.token()) && !readType(column.type)) {
            return false;
        }
        while (!at_.is(COMMA) && !at_.is(CLOSEPAREN)) {
            if (!option(column)) {
                return false;
            }
        }
        return true;
    }

    // A type as the parser's fieldType reads it, its text as the walker renders it.
    bool readType(std::string &text)
    {
        const ANTLR3_UINT32 first = at_.type();
        if (first == STRING) {
            take(text);
            if (at_.is(k_.dot)) {
                return false;
            }
            return !at_.is(OPENPAREN) || numbers(text, 2);
        }
        if (first == QUOTED_STRING) {
            take(text);
            return !at_.is(OPENPAREN) || numbers(text, 2);
        }
        const TypeForm form = first < kp_parserTokenCount ? k_.forms[first] : TypeForm::None;
        switch (form) {
        case TypeForm::None:
            return false;
        case TypeForm::Precision:
            take(text);
            return !at_.is(OPENPAREN) || numbers(text, 2);
        case TypeForm::Double:
            take(text);
            if (at_.is(k_.precision)) {
                take(text);
            }
            return !at_.is(OPENPAREN) || numbers(text, 2);
        case TypeForm::Size:
            take(text);
            return !at_.is(OPENPAREN) || size(text);
        case TypeForm::Character:
            take(text);
            if (at_.is(T_VARYING)) {
                take(text);
            }
            return !at_.is(OPENPAREN) || size(text);
        case TypeForm::Temporal:
            take(text);
            if (at_.is(OPENPAREN) && !numbers(text, 1)) {
                return false;
            }
            if (at_.is(T_WITH) || at_.is(k_.without)) {
                take(text);
                if (at_.is(k_.local)) {
                    take(text);
                }
                if (at_.is(k_.timezone)) {
                    take(text);
                } else if (at_.is(k_.time) && at_.ahead(1) != nullptr && at_.ahead(1)->type == k_.zone) {
                    take(text);
                    take(text);
                } else {
                    return false;
                }
            }
            return true;
        case TypeForm::Field:
            take(text);
            return !at_.is(OPENPAREN) || numbers(text, 1);
        case TypeForm::Choice:
            take(text);
            if (!at_.is(OPENPAREN)) {
                return false;
            }
            take(text);
            for (;;) {
                if (!at_.is(QUOTED_STRING)) {
                    return false;
                }
                take(text);
                if (at_.is(CLOSEPAREN)) {
                    take(text);
                    return true;
                }
                if (!at_.is(COMMA)) {
                    return false;
                }
                take(text);
            }
        }
        return false;
    }

private:
    // Passes the current token, adding it to a text of words when given one.
    void pass(std::string *text = nullptr)
    {
        lastTaken_ = at_.token();
        if (text != nullptr) {
            appendTypeWord(*text, lastTaken_);
        }
        at_.advance();
    }
    void take(std::string &text) { pass(&text); }

    // CURRENT_TIMESTAMP [( [n] )]
    bool timestampCall(std::string *text)
    {
        pass(text);
        if (at_.is(OPENPAREN)) {
            pass(text);
            if (at_.is(INT)) {
                pass(text);
            }
            if (!at_.is(CLOSEPAREN)) {
                return false;
            }
            pass(text);
        }
        return true;
    }

    // ( n ) or ( n, n ), up to `most` numbers; a precision of two may be MAX
    // ([nvarchar](max) is a bracketed name with a precision).
    bool numbers(std::string &text, int most)
    {
        take(text);  // (
        for (int count = 1;; ++count) {
            if (!at_.is(INT) && !(most == 2 && count == 1 && at_.is(k_.max))) {
                return false;
            }
            take(text);
            if (at_.is(CLOSEPAREN)) {
                take(text);
                return true;
            }
            if (count == most || !at_.is(COMMA)) {
                return false;
            }
            take(text);
        }
    }

    // ( n [CHAR | BYTE] ) or ( MAX [CHAR | BYTE] )
    bool size(std::string &text)
    {
        take(text);  // (
        if (!at_.is(INT) && !at_.is(k_.max)) {
            return false;
        }
        take(text);
        if (at_.is(k_.charWord) || at_.is(k_.byteWord)) {
            take(text);
        }
        if (!at_.is(CLOSEPAREN)) {
            return false;
        }
        take(text);
        return true;
    }

    void step(PlainColumn &column, PlainColumnStep::Kind kind, std::string text = {})
    {
        column.steps.push_back({kind, std::move(text)});
    }

    bool option(PlainColumn &column)
    {
        using Kind = PlainColumnStep::Kind;
        const ANTLR3_UINT32 type = at_.type();
        if (type == T_NOT) {
            at_.advance();
            if (!at_.is(k_.null)) {
                return false;
            }
            at_.advance();
            step(column, Kind::NotNull);
        } else if (at_.is(k_.null) || at_.is(k_.enable)) {
            at_.advance();
        } else if (type == T_PRIMARY) {
            at_.advance();
            if (!at_.is(T_KEY)) {
                return false;
            }
            at_.advance();
            step(column, Kind::PrimaryKey);
        } else if (at_.is(k_.autoIncrement) || at_.is(k_.autoincrement)) {
            at_.advance();
            step(column, Kind::AutoIncrement);
        } else if (at_.is(k_.unique) || at_.is(k_.zerofill) || at_.is(k_.unsignedWord)) {
            at_.advance();
            step(column, Kind::Flag, type == k_.unique ? "unique" : type == k_.zerofill ? "zerofill" : "unsigned");
        } else if (type == T_DEFAULT) {
            at_.advance();
            pANTLR3_COMMON_TOKEN first = at_.token();
            if (!defaultValue()) {
                return false;
            }
            std::string text = kp_valueSourceText(first, lastTaken_);
            if (text.empty()) {
                return false;
            }
            step(column, Kind::Default, std::move(text));
        } else if (at_.is(k_.on)) {
            // ON UPDATE CURRENT_TIMESTAMP [( [n] )]
            at_.advance();
            if (!at_.is(k_.update)) {
                return false;
            }
            at_.advance();
            if (!at_.is(k_.currentTimestamp)) {
                return false;
            }
            std::string text;
            if (!timestampCall(&text)) {
                return false;
            }
            step(column, Kind::OnUpdate, std::move(text));
        } else if (at_.is(k_.comment)) {
            at_.advance();
            if (!at_.is(QUOTED_STRING)) {
                return false;
            }
            step(column, Kind::Comment, kp_tokenText(at_.token()));
            at_.advance();
        } else if (type == T_CHARACTER || at_.is(k_.charset)) {
            at_.advance();
            if (type == T_CHARACTER) {
                if (!at_.is(k_.set)) {
                    return false;
                }
                at_.advance();
            }
            if (!at_.is(STRING) && !at_.is(QUOTED_STRING)) {
                return false;
            }
            step(column, Kind::CharacterSet, kp_tokenText(at_.token()));
            at_.advance();
        } else if (at_.is(k_.collate)) {
            // COLLATE name[.name ...], kept as written
            at_.advance();
            pANTLR3_COMMON_TOKEN first = at_.token();
            pANTLR3_COMMON_TOKEN last = nullptr;
            for (;;) {
                if (!at_.is(STRING) && !at_.is(QUOTED_STRING)) {
                    return false;
                }
                last = at_.token();
                at_.advance();
                if (!at_.is(k_.dot)) {
                    break;
                }
                at_.advance();
            }
            std::string text = kp_valueSourceText(first, last);
            if (!text.empty()) {
                step(column, Kind::Collation, std::move(text));
            }
        } else {
            return false;
        }
        return true;
    }

    // A DEFAULT value: operands joined by + - * / % || (fieldDefaultValueEntry).
    bool defaultValue()
    {
        if (!operand()) {
            return false;
        }
        for (;;) {
            const ANTLR3_UINT32 type = at_.type();
            if (type == SIGNED_INT) {
                pass();
            } else if (type == FORWARD_SLASH || at_.is(k_.plus) || at_.is(k_.minus) || at_.is(k_.star) ||
                       at_.is(k_.percent) || at_.is(k_.concat)) {
                pass();
                if (!operand()) {
                    return false;
                }
            } else {
                return true;
            }
        }
    }

    bool operand()
    {
        const ANTLR3_UINT32 type = at_.type();
        if (at_.is(k_.null) || at_.is(k_.localtime) || at_.is(k_.localtimestamp) || type == T_TRUE ||
            type == T_FALSE) {
            pass();
        } else if (at_.is(k_.currentTimestamp)) {
            if (!timestampCall(nullptr)) {
                return false;
            }
        } else if (type == INT || type == SIGNED_INT || at_.is(k_.minus) || at_.is(k_.plus) || at_.is(k_.dot)) {
            // n, -n, - n, .n, with an optional fraction
            const bool fractionOnly = at_.is(k_.dot);
            if (type != INT && type != SIGNED_INT) {
                pass();
                if (!at_.is(INT)) {
                    return false;
                }
            }
            pass();
            if (!fractionOnly && at_.is(k_.dot)) {
                pass();
                if (!at_.is(INT)) {
                    return false;
                }
                pass();
            }
        } else if (type == QUOTED_STRING || type == STRING || (type < kp_parserTokenCount && k_.nameWords[type])) {
            // A name or string, then a string (DATE '2020-01-01', E'x') or a
            // function's arguments. ARRAY[...] and CAST(...) have rules of
            // their own.
            if (type == STRING && (kp_isWord(at_.token(), "ARRAY") || kp_isWord(at_.token(), "CAST"))) {
                return false;
            }
            pass();
            if (at_.is(QUOTED_STRING)) {
                pass();
            } else if (at_.is(OPENPAREN) && !valueParentheses()) {
                return false;
            }
        } else {
            return false;
        }
        if (at_.is(k_.cast)) {
            pass();
            std::string ignored;  // the value's text is its source
            return readType(ignored);
        }
        return true;
    }

    // ( ... ) after a function's name: balanced, as kp_skipValueInParentheses
    // skips it; a comma followed by what looks like the next table entry
    // ends the value unclosed, which the grammar reads as an error.
    bool valueParentheses()
    {
        pass();  // (
        long depth = 0;
        for (;;) {
            const ANTLR3_UINT32 type = at_.type();
            if (type == ANTLR3_TOKEN_EOF || type == SEMI || type == T_DELIMITER) {
                return false;
            }
            if (depth == 0 && type == CLOSEPAREN) {
                pass();
                return true;
            }
            if (depth == 0 && type == COMMA && kp_entryStartAhead(at_.ahead(1), at_.ahead(2))) {
                return false;
            }
            depth += type == OPENPAREN ? 1 : type == CLOSEPAREN ? -1 : 0;
            pass();
        }
    }

    Cursor &at_;
    const KnownTypes &k_;
    pANTLR3_COMMON_TOKEN lastTaken_ = nullptr;
};

} // namespace

namespace {

// A name the parser reads as one token, which can start no other entry of
// a column list: the words that start an exclusion constraint, a period,
// a LIKE parent or a spatial index are left to the grammar.
bool plainName(pANTLR3_COMMON_TOKEN name)
{
    if (name == nullptr) {
        return false;
    }
    if (name->type == QUOTED_STRING) {
        return true;
    }
    return name->type == STRING && !kp_isAnyWord(name, "EXCLUDE PERIOD LIKE SPATIAL");
}

// Reads the run of plain columns whose first name is the cursor's token,
// leaving the cursor at the COMMA or CLOSEPAREN after the run's last column.
// The run goes on over a comma only when a plain column follows it.
bool readRun(Cursor &cursor, PlainColumnRun &run)
{
    Cursor at = cursor;
    for (;;) {
        PlainColumn column;
        column.name = at.token();
        Reader reader(at);
        if (!reader.column(column)) {
            return !run.empty();
        }
        run.push_back(std::move(column));
        cursor = at;
        if (!cursor.is(COMMA)) {
            return true;
        }
        at.advance();
        if (!plainName(at.token())) {
            return true;
        }
    }
}

} // namespace

bool kp_plainColumnAhead(pANTLR3_BASE_RECOGNIZER recognizer)
{
    ParseSession *session = kp_session(recognizer);
    if (session == nullptr || !session->plainColumns || session->tokenWindow == nullptr) {
        return false;
    }
    pANTLR3_TOKEN_STREAM stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    pANTLR3_COMMON_TOKEN name = stream->_LT(stream, 1);
    ParseSession::PlainColumnProbe &probe = session->plainProbe;
    if (name == nullptr || (probe.name == name && probe.index == name->index)) {
        return name != nullptr && probe.plain;
    }
    probe.name = name;
    probe.index = name->index;
    probe.plain = false;
    probe.columns.clear();
    // The decision asks only for a token that its column rule takes as a name
    // (a keyword among them); the columns after it must be plain names.
    const auto *common = static_cast<pANTLR3_COMMON_TOKEN_STREAM>(stream->super);
    Cursor cursor(*session->tokenWindow, name, common->channel);
    probe.plain = readRun(cursor, probe.columns);
    probe.end = cursor.token();
    return probe.plain;
}

namespace {

thread_local unsigned long plainColumnsTaken = 0;

} // namespace

unsigned long kp_plainColumnsTaken()
{
    return plainColumnsTaken;
}

void kp_takePlainColumns(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN name)
{
    ParseSession *session = kp_session(recognizer);
    if (session == nullptr || name == nullptr) {
        return;
    }
    ParseSession::PlainColumnProbe &probe = session->plainProbe;
    if (probe.name != name || probe.index != name->index || !probe.plain) {
        return;  // not read: the predicate chose this way, so it never happens
    }
    pANTLR3_TOKEN_STREAM tokens = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    pANTLR3_INT_STREAM input = tokens->istream;
    while (tokens->_LT(tokens, 1) != probe.end && input->_LA(input, 1) != ANTLR3_TOKEN_EOF) {
        input->consume(input);
    }
    plainColumnsTaken += probe.columns.size();
    session->plainColumnReadings.push_back(std::move(probe.columns));
    name->custom = &session->plainColumnReadings.back();
    probe.name = nullptr;
}

bool kp_isPlainColumn(pANTLR3_BASE_TREE node)
{
    pANTLR3_COMMON_TOKEN token = node != nullptr ? node->getToken(node) : nullptr;
    return token != nullptr && token->custom != nullptr && (token->type == STRING || token->type == QUOTED_STRING);
}

void kp_addPlainColumns(pANTLR3_BASE_RECOGNIZER recognizer, SQLTable *table, pANTLR3_BASE_TREE name)
{
    pANTLR3_COMMON_TOKEN token = name != nullptr ? name->getToken(name) : nullptr;
    if (token == nullptr || token->custom == nullptr) {
        return;
    }
    using Kind = PlainColumnStep::Kind;
    for (const PlainColumn &column : *static_cast<const PlainColumnRun *>(token->custom)) {
        SQLField *field = kp_addNamedField(recognizer, table, column.name, column.type);
        if (field == nullptr) {
            continue;
        }
        for (const PlainColumnStep &step : column.steps) {
            switch (step.kind) {
            case Kind::NotNull:
                field->setNotNull(true);
                break;
            case Kind::PrimaryKey:
                field->setPrimaryKey(true);
                break;
            case Kind::AutoIncrement:
                field->setAutoIncrement(true);
                break;
            case Kind::Flag:
                field->setPropertyAsBoolean(step.text, true);
                break;
            case Kind::Default:
                field->setDefaultValueFromParsedString(step.text);
                break;
            case Kind::OnUpdate:
                field->setProperty("onUpdateFieldValue", step.text);
                break;
            case Kind::Comment:
                kp_setCommentText(field, step.text);
                break;
            case Kind::CharacterSet:
                field->setProperty("field_character_set", step.text);
                break;
            case Kind::Collation:
                field->setProperty("field_collation", step.text);
                break;
            }
        }
    }
}
