// The direct reading of plain table columns and plain CREATE TABLE
// statements (see PlainColumns.h). Each form read here is read exactly as
// the parser's rules read it (grammar/20-CreateTable.g, 30-Columns.g,
// 40-DataTypes.g, 50-Expressions.g, 55-References.g, 58-Keys.g) and applied
// as the walker applies it (treegrammar/): the same tokens make the same
// texts through the same helpers. A token that is not part of these forms
// makes the column, or the statement, the grammar's to read.
#include "PlainColumns.h"

#include "ActionHelpers.h"
#include "ParseSession.h"
#include "PlainColumnReading.h"
#include "ReferenceBuilder.h"
#include "TokenWindow.h"
#include "VellumGrammarCParser.h"

#include <SQLAntlrParser/SQLParserC.h>
#include <SchemaModel/SchemaModel.h>

#include <array>
#include <cstring>
#include <memory>
#include <optional>

using sqlantlr::ParseSession;
using sqlantlr::PlainColumn;
using sqlantlr::PlainColumnRun;
using sqlantlr::PlainColumnStep;
using sqlantlr::PlainEntry;
using sqlantlr::PlainReference;
using sqlantlr::PlainTable;
using sqlantlr::PlainTableOption;

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
    ANTLR3_UINT32 references = 0, deleteWord = 0, noAction = 0, action = 0, restrict = 0, cascade = 0;
    ANTLR3_UINT32 deferrable = 0, initially = 0, immediate = 0, deferred = 0;
    ANTLR3_UINT32 create = 0, table = 0, ifWord = 0, exists = 0, index = 0, constraint = 0, engine = 0, typeWord = 0;
    ANTLR3_UINT32 identity = 0, clustered = 0, nonclustered = 0, asc = 0, desc = 0, fillfactor = 0;
    // Oracle's state words after a table's CHECK.
    std::array<bool, kp_parserTokenCount> checkStates{};
    std::array<TypeForm, kp_parserTokenCount> forms{};
    // The keywords that may serve as names (a default may call one: now()).
    std::array<bool, kp_parserTokenCount> nameWords{};

    KnownTypes()
    {
        const auto type = kp_literalType;
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
        references = type("REFERENCES");
        deleteWord = type("DELETE");
        noAction = type("NO_ACTION");
        action = type("ACTION");
        restrict = type("RESTRICT");
        cascade = type("CASCADE");
        deferrable = type("DEFERRABLE");
        initially = type("INITIALLY");
        immediate = type("IMMEDIATE");
        deferred = type("DEFERRED");
        create = type("CREATE");
        table = type("TABLE");
        ifWord = type("IF");
        exists = type("EXISTS");
        index = type("INDEX");
        constraint = type("CONSTRAINT");
        engine = type("ENGINE");
        typeWord = type("TYPE");
        identity = type("IDENTITY");
        clustered = type("CLUSTERED");
        nonclustered = type("NONCLUSTERED");
        asc = type("ASC");
        desc = type("DESC");
        fillfactor = type("FILLFACTOR");
        for (const char *word : {"ENABLE", "DISABLE", "VALIDATE", "NOVALIDATE", "RELY", "NORELY"}) {
            if (ANTLR3_UINT32 t = type(word)) {
                checkStates[t] = true;
            }
        }
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

thread_local unsigned long plainColumnsTaken = 0;
thread_local unsigned long plainTablesTaken = 0;
thread_local unsigned long plainTablesReadAhead = 0;

const KnownTypes &known()
{
    static const KnownTypes types;
    return types;
}

// The parser-channel tokens from a starting token on, read from the token
// window, or from a statement the window reads ahead; a token past the end
// of input, or past the end of the statement read ahead, is nullptr.
class Cursor {
public:
    Cursor(sqlantlr::TokenWindow &window, pANTLR3_COMMON_TOKEN first, ANTLR3_UINT32 channel)
        : window_(&window), channel_(channel), index_(first->index), token_(first)
    {
    }
    // Over the statement the window reads ahead (TokenWindow::startAhead),
    // from its first word and its second, if read already. The tokens are
    // read once: such a cursor is not copied to look ahead, as a window's
    // may be.
    Cursor(sqlantlr::TokenWindow &window, pANTLR3_COMMON_TOKEN first, pANTLR3_COMMON_TOKEN second)
        : window_(&window), readsAhead_(true), token_(first)
    {
        next_[0] = second;
        count_ = second != nullptr ? 1 : 0;
    }

    pANTLR3_COMMON_TOKEN token() const { return token_; }
    // The token before the current one on the channel.
    pANTLR3_COMMON_TOKEN previous() const { return previous_; }
    ANTLR3_UINT32 type() const { return token_ != nullptr ? token_->type : ANTLR3_TOKEN_EOF; }
    bool is(ANTLR3_UINT32 type) const { return token_ != nullptr && type != 0 && token_->type == type; }
    void advance()
    {
        previous_ = token_;
        if (readsAhead_) {
            if (count_ > 0) {
                token_ = next_[0];
                std::copy(next_.begin() + 1, next_.begin() + count_, next_.begin());
                --count_;
            } else if (token_ != nullptr) {
                token_ = window_->nextAhead();
            }
            return;
        }
        do {
            token_ = window_->raw(++index_);
        } while (token_ != nullptr && token_->channel != channel_);
    }
    // The token k places ahead on the channel (1: the next one).
    pANTLR3_COMMON_TOKEN ahead(int k) const
    {
        if (readsAhead_) {
            if (token_ == nullptr || k < 1 || k > static_cast<int>(next_.size())) {
                return nullptr;
            }
            while (count_ < k) {
                pANTLR3_COMMON_TOKEN next = window_->nextAhead();
                if (next == nullptr) {
                    return nullptr;
                }
                next_[static_cast<size_t>(count_++)] = next;
            }
            return next_[static_cast<size_t>(k - 1)];
        }
        ANTLR3_MARKER at = index_;
        pANTLR3_COMMON_TOKEN token = token_;
        while (k-- > 0 && token != nullptr) {
            do {
                token = window_->raw(++at);
            } while (token != nullptr && token->channel != channel_);
        }
        return token;
    }
    // Between entries: the tokens read ahead before the current one may be
    // reused (the window's tokens stay as they are). The current token and
    // those after it are the last ones read.
    void recycle()
    {
        if (readsAhead_) {
            window_->recycleAhead(static_cast<size_t>(count_) + 1);
        }
    }

private:
    sqlantlr::TokenWindow *window_;
    bool readsAhead_ = false;
    ANTLR3_UINT32 channel_ = ANTLR3_TOKEN_DEFAULT_CHANNEL;
    ANTLR3_MARKER index_ = 0;
    pANTLR3_COMMON_TOKEN token_;
    pANTLR3_COMMON_TOKEN previous_ = nullptr;
    // Read ahead after the current token, not yet passed (ahead() fills it).
    mutable std::array<pANTLR3_COMMON_TOKEN, 4> next_{};
    mutable int count_ = 0;
};

// Consumes the parser's tokens through `last`: the window moves to `last`
// at once and consumes it as the parser would, so that LT(-1) is `last` and
// LT(1) the token after it.
void consumeThrough(sqlantlr::TokenWindow &window, pANTLR3_TOKEN_STREAM tokens, pANTLR3_COMMON_TOKEN last)
{
    window.moveTo(last->index);
    tokens->istream->consume(tokens->istream);
}

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
    if (name->type != STRING) {
        return false;
    }
    const char16_t *units = nullptr;
    size_t count = 0;
    if (kp_tokenUnits(name, &units, &count) && count > 0) {
        switch (units[0]) {
        case u'E': case u'e': case u'P': case u'p': case u'L': case u'l': case u'S': case u's':
            break;
        default:
            return true;  // none of the words below
        }
    }
    return !kp_isAnyWord(name, "EXCLUDE PERIOD LIKE SPATIAL");
}

// A column named by the token: its text and place.
void nameColumn(PlainColumn &column, pANTLR3_COMMON_TOKEN name)
{
    column.name.clear();
    kp_appendTokenText(column.name, name);
    column.line = static_cast<int>(name->line);
    column.position = static_cast<int>(name->charPosition);
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
            kp_appendRunWord(*text, text->empty(), lastTaken_);
        }
        at_.advance();
    }
    void take(std::string &text) { pass(&text); }

    // Passes the current token; true when the next one is of the type.
    bool nextIs(ANTLR3_UINT32 type)
    {
        at_.advance();
        return at_.is(type);
    }

    // Passes the current token; true when the next one is a number without
    // a fraction, signed or not.
    bool nextIsInteger()
    {
        at_.advance();
        return at_.is(INT) || at_.is(SIGNED_INT);
    }

    // Passes SQL Server's CLUSTERED or NONCLUSTERED, if it is the current token.
    bool clustering()
    {
        if (!at_.is(k_.clustered) && !at_.is(k_.nonclustered)) {
            return false;
        }
        at_.advance();
        return true;
    }

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

    // ( n ) or ( n, n ), up to `most` numbers; a precision and scale may be *
    // (NUMBER(*,2)), a precision MAX ([nvarchar](max) is a bracketed name
    // with a precision).
    bool numbers(std::string &text, int most)
    {
        take(text);  // (
        for (int count = 1;; ++count) {
            if (!at_.is(INT) && !(most == 2 && (at_.is(k_.star) || (count == 1 && at_.is(k_.max))))) {
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
        column.steps.emplace_back(kind, std::move(text));
    }

    bool option(PlainColumn &column)
    {
        using Kind = PlainColumnStep::Kind;
        const ANTLR3_UINT32 type = at_.type();
        if (type == T_NOT) {
            if (!nextIs(k_.null)) {
                return false;
            }
            at_.advance();
            step(column, Kind::NotNull);
        } else if (at_.is(k_.null) || at_.is(k_.enable)) {
            at_.advance();
        } else if (type == T_PRIMARY) {
            // PRIMARY KEY [CLUSTERED | NONCLUSTERED] (SQL Server)
            if (!nextIs(T_KEY)) {
                return false;
            }
            at_.advance();
            if (clustering() && at_.is(T_HASH)) {
                return false;
            }
            step(column, Kind::PrimaryKey);
        } else if (at_.is(k_.identity)) {
            // SQL Server's IDENTITY [(seed, increment)]: it does not make the
            // column auto-increment
            at_.advance();
            if (at_.is(OPENPAREN)) {
                if (!nextIsInteger() || !nextIs(COMMA) || !nextIsInteger() || !nextIs(CLOSEPAREN)) {
                    return false;
                }
                at_.advance();
            }
        } else if (at_.is(k_.autoIncrement) || at_.is(k_.autoincrement)) {
            at_.advance();
            step(column, Kind::AutoIncrement);
        } else if (at_.is(k_.unique) || at_.is(k_.zerofill) || at_.is(k_.unsignedWord)) {
            at_.advance();
            // UNIQUE [CLUSTERED | NONCLUSTERED] (SQL Server)
            if (type == k_.unique && clustering() && at_.is(T_HASH)) {
                return false;
            }
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
            if (!nextIs(k_.update)) {
                return false;
            }
            if (!nextIs(k_.currentTimestamp)) {
                return false;
            }
            std::string text;
            if (!timestampCall(&text)) {
                return false;
            }
            step(column, Kind::OnUpdate, std::move(text));
        } else if (at_.is(k_.comment)) {
            if (!nextIs(QUOTED_STRING)) {
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
                if (!nextIs(k_.dot)) {
                    break;
                }
                at_.advance();
            }
            std::string text = kp_valueSourceText(first, last);
            if (!text.empty()) {
                step(column, Kind::Collation, std::move(text));
            }
        } else if (at_.is(k_.references)) {
            return reference(column);
        } else if (type == T_CHECK) {
            return columnCheck(column, nullptr);
        } else if (at_.is(k_.constraint)) {
            return namedConstraint(column);
        } else {
            return false;
        }
        return true;
    }

    // CHECK (condition) on a column, named or not.
    bool columnCheck(PlainColumn &column, const std::string *name)
    {
        if (!nextIs(OPENPAREN) || !valueParentheses()) {
            return false;
        }
        PlainColumnStep check{PlainColumnStep::Kind::Check};
        if (insideFirst_ != nullptr) {
            check.text = kp_valueSourceText(insideFirst_, insideLast_);
        }
        check.hasDetail = name != nullptr;
        if (name != nullptr) {
            check.detail = *name;
        }
        column.steps.push_back(std::move(check));
        return true;
    }

    // CONSTRAINT name and one column constraint: NOT NULL (which, named,
    // does not make the column not null), PRIMARY KEY, UNIQUE, [FOREIGN KEY]
    // REFERENCES, CHECK or DEFAULT. Only a CHECK takes the name.
    bool namedConstraint(PlainColumn &column)
    {
        if (!nextIs(STRING) && !at_.is(QUOTED_STRING)) {
            return false;
        }
        const std::string name = kp_tokenText(at_.token());
        at_.advance();
        const ANTLR3_UINT32 type = at_.type();
        if (type == T_NOT) {
            if (!nextIs(k_.null)) {
                return false;
            }
            at_.advance();
            return true;
        }
        if (type == T_CHECK) {
            return columnCheck(column, &name);
        }
        if (type == T_FOREIGN) {
            if (!nextIs(T_KEY) || !nextIs(k_.references)) {
                return false;
            }
            return reference(column);
        }
        if (type == T_PRIMARY || type == T_DEFAULT || at_.is(k_.unique) || at_.is(k_.references)) {
            return option(column);
        }
        return false;
    }

    // A column's REFERENCES clause: the reference, then its actions in order.
    bool reference(PlainColumn &column)
    {
        PlainReference reference;
        if (!referenceClause(reference)) {
            return false;
        }
        PlainColumnStep target{PlainColumnStep::Kind::Reference};
        target.text = SQLParserC::tableNameFromReturnArray(reference.parts);
        target.hasDetail = !reference.columns.empty();
        target.detail = target.hasDetail ? reference.columns.front() : std::string();
        target.line = reference.line;
        target.position = reference.position;
        column.steps.push_back(std::move(target));
        for (PlainColumnStep &step : reference.actions) {
            column.steps.push_back(std::move(step));
        }
        return true;
    }

    // REFERENCES table [(columns)] [ON UPDATE | ON DELETE action ...]
    // [[NOT] DEFERRABLE | INITIALLY IMMEDIATE | DEFERRED ...]
    bool referenceClause(PlainReference &reference)
    {
        using Kind = PlainColumnStep::Kind;
        reference.line = static_cast<int>(at_.token()->line);
        reference.position = static_cast<int>(at_.token()->charPosition);
        at_.advance();
        for (;;) {
            if (!at_.is(STRING) && !at_.is(QUOTED_STRING)) {
                return false;
            }
            reference.parts.push_back(kp_tokenText(at_.token()));
            if (!nextIs(k_.dot) || reference.parts.size() == 2) {
                break;
            }
            at_.advance();
        }
        if (at_.is(OPENPAREN)) {
            reference.listWritten = true;
            for (;;) {
                if (!nextIs(STRING) && !at_.is(QUOTED_STRING)) {
                    return false;
                }
                reference.columns.push_back(kp_tokenText(at_.token()));
                if (nextIs(CLOSEPAREN)) {
                    break;
                }
                if (!at_.is(COMMA)) {
                    return false;
                }
            }
            at_.advance();
        }
        while (at_.is(k_.on)) {
            at_.advance();
            PlainColumnStep step{at_.is(k_.update) ? Kind::UpdateAction : Kind::DeleteAction};
            if (!at_.is(k_.update) && !at_.is(k_.deleteWord)) {
                return false;
            }
            at_.advance();
            if (at_.is(k_.noAction)) {
                step.code = SQLNoAction;
            } else if (at_.is(T_NO)) {
                if (!nextIs(k_.action)) {
                    return false;
                }
                step.code = SQLNoAction;
            } else if (at_.is(k_.restrict)) {
                step.code = SQLRestrict;
            } else if (at_.is(k_.cascade)) {
                step.code = SQLCascade;
            } else if (at_.is(k_.set)) {
                at_.advance();
                if (at_.is(T_DEFAULT)) {
                    step.code = SQLSetDefault;
                } else if (at_.is(k_.null)) {
                    step.code = SQLSetNull;
                } else {
                    return false;
                }
            } else {
                return false;
            }
            at_.advance();
            reference.actions.push_back(std::move(step));
        }
        PlainColumnStep step{Kind::Deferrable};
        while (deferral(step)) {
            reference.actions.push_back(std::move(step));
        }
        return true;
    }

    // [NOT] DEFERRABLE | INITIALLY IMMEDIATE | DEFERRED: passed, and read
    // into step (a Deferrable or InitiallyDeferred step); false, with
    // nothing passed, for anything else.
    bool deferral(PlainColumnStep &step)
    {
        using Kind = PlainColumnStep::Kind;
        const pANTLR3_COMMON_TOKEN next = at_.ahead(1);
        if (at_.is(k_.deferrable)) {
            step = PlainColumnStep{Kind::Deferrable};
            step.code = 1;
        } else if (at_.is(T_NOT) && next != nullptr && next->type == k_.deferrable) {
            step = PlainColumnStep{Kind::Deferrable};
            at_.advance();
        } else if (at_.is(k_.initially) && next != nullptr &&
                   (next->type == k_.immediate || next->type == k_.deferred)) {
            step = PlainColumnStep{Kind::InitiallyDeferred};
            step.code = next->type == k_.deferred ? 1 : 0;
            at_.advance();
        } else {
            return false;
        }
        at_.advance();
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
        if (type == OPENPAREN) {
            // ( value ), as SQL Server writes defaults: skipped unread
            if (!valueParentheses()) {
                return false;
            }
        } else if (at_.is(k_.null) || at_.is(k_.localtime) || at_.is(k_.localtimestamp) || type == T_TRUE ||
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
        insideFirst_ = at_.is(CLOSEPAREN) ? nullptr : at_.token();
        long depth = 0;
        for (;;) {
            const ANTLR3_UINT32 type = at_.type();
            if (type == ANTLR3_TOKEN_EOF || type == SEMI || type == T_DELIMITER) {
                return false;
            }
            if (depth == 0 && type == CLOSEPAREN) {
                insideLast_ = lastTaken_;
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

public:
    // ---- A whole CREATE TABLE statement ----

    // CREATE TABLE [IF NOT EXISTS] name[.name ...] ( entries ) [options] ;
    // with the cursor at CREATE. True when every part is of the plain forms,
    // with the cursor at the statement's SEMI.
    bool table(PlainTable &table)
    {
        if (!at_.is(k_.create)) {
            return false;
        }
        if (!nextIs(k_.table)) {
            return false;
        }
        at_.advance();
        if (at_.is(k_.ifWord)) {
            if (!nextIs(T_NOT)) {
                return false;
            }
            if (!nextIs(k_.exists)) {
                return false;
            }
            at_.advance();
        }
        for (;;) {
            if (!at_.is(STRING) && !at_.is(QUOTED_STRING)) {
                return false;
            }
            table.name.push_back(kp_tokenText(at_.token()));
            if (!nextIs(k_.dot)) {
                break;
            }
            at_.advance();
        }
        if (!at_.is(OPENPAREN)) {
            return false;
        }
        at_.advance();
        for (;;) {
            if (!entry(table)) {
                return false;
            }
            at_.recycle();  // the entry keeps no tokens
            if (at_.is(CLOSEPAREN)) {
                break;
            }
            at_.advance();  // the COMMA; one before the closing parenthesis is dropped
            if (at_.is(CLOSEPAREN)) {
                break;
            }
        }
        at_.advance();
        return options(table);
    }

private:
    // One entry of the column list, ending at COMMA or CLOSEPAREN.
    bool entry(PlainTable &table)
    {
        PlainEntry &entry = table.nextEntry();
        // A CONSTRAINT name names a CHECK or a foreign key; keys and indexes
        // do not take it (an index is named by the name after its kind word).
        std::optional<std::string> constraintName;
        if (at_.is(k_.constraint)) {
            if (!nextIs(STRING) && !at_.is(QUOTED_STRING)) {
                return false;
            }
            constraintName = kp_tokenText(at_.token());
            at_.advance();
        }
        const ANTLR3_UINT32 type = at_.type();
        if (type == T_PRIMARY) {
            // PRIMARY KEY [CLUSTERED | NONCLUSTERED] [name] (a [ASC | DESC], ...)
            // [state] [WITH (options)] [ON file group]: the key's name, sort
            // orders (taken only after SQL Server's clustering word) and
            // storage leave nothing.
            entry.kind = PlainEntry::Kind::PrimaryKey;
            if (!nextIs(T_KEY)) {
                return false;
            }
            at_.advance();
            const bool clustered = clustering();
            if (clustered && at_.is(T_HASH)) {
                return false;
            }
            if (at_.is(STRING) || at_.is(QUOTED_STRING)) {
                at_.advance();
            }
            if (!columnList(entry.columns, clustered) || !skipKeyStorage()) {
                return false;
            }
        } else if (at_.is(k_.unique) || type == T_KEY || at_.is(k_.index)) {
            // UNIQUE [CLUSTERED | NONCLUSTERED] [KEY | INDEX] [name] (a [ASC | DESC], ...),
            // KEY | INDEX [name] (a [ASC | DESC], ...), then the state and
            // storage of a key: sort orders and storage leave nothing
            entry.kind = at_.is(k_.unique) ? PlainEntry::Kind::Unique : PlainEntry::Kind::Index;
            at_.advance();
            if (entry.kind == PlainEntry::Kind::Unique) {
                if (clustering() && at_.is(T_HASH)) {
                    return false;
                }
                if (at_.is(T_KEY) || at_.is(k_.index)) {
                    at_.advance();
                }
            }
            if (at_.is(STRING) || at_.is(QUOTED_STRING)) {
                entry.name = kp_tokenText(at_.token());
                at_.advance();
            }
            if (!columnList(entry.columns, true) || !skipKeyStorage()) {
                return false;
            }
        } else if (type == T_CHECK || type == T_FOREIGN) {
            // [CONSTRAINT name] CHECK (...) | FOREIGN KEY ...
            entry.name = std::move(constraintName);
            if (type == T_FOREIGN ? !foreignKey(entry) : !check(entry)) {
                return false;
            }
        } else if (constraintName) {
            return false;
        } else if (plainName(at_.token())) {
            entry.kind = PlainEntry::Kind::Column;
            nameColumn(entry.column, at_.token());
            if (!column(entry.column)) {
                return false;
            }
        } else {
            return false;
        }
        if (!at_.is(COMMA) && !at_.is(CLOSEPAREN)) {
            return false;
        }
        table.keepEntry();
        return true;
    }

    // CHECK (condition) [ENABLE | DISABLE | VALIDATE | ...]
    bool check(PlainEntry &entry)
    {
        entry.kind = PlainEntry::Kind::Check;
        if (!nextIs(OPENPAREN) || !valueParentheses()) {
            return false;
        }
        // The condition's text, from the first token inside the parentheses to
        // the last (kp_carryTextInside); none when they are empty.
        if (insideFirst_ != nullptr) {
            entry.text = kp_valueSourceText(insideFirst_, insideLast_);
        }
        skipStateWords();
        return true;
    }

    // FOREIGN KEY [name] (columns) REFERENCES ... [ENABLE | DISABLE | ...]
    bool foreignKey(PlainEntry &entry)
    {
        entry.kind = PlainEntry::Kind::ForeignKey;
        pANTLR3_COMMON_TOKEN foreignWord = at_.token();  // where the driver's records stand
        if (!nextIs(T_KEY)) {
            return false;
        }
        at_.advance();
        if (at_.is(STRING) || at_.is(QUOTED_STRING)) {
            entry.keyName = kp_tokenText(at_.token());
            at_.advance();
        }
        if (!columnList(entry.columns) || !at_.is(k_.references) || !referenceClause(entry.reference)) {
            return false;
        }
        entry.reference.line = static_cast<int>(foreignWord->line);
        entry.reference.position = static_cast<int>(foreignWord->charPosition);
        skipStateWords();
        return true;
    }

    // The state words of a key or index (ENABLE, DISABLE, ..., [NOT]
    // DEFERRABLE, INITIALLY IMMEDIATE | DEFERRED): they leave nothing.
    void skipKeyState()
    {
        PlainColumnStep ignored{PlainColumnStep::Kind::Deferrable};
        for (;;) {
            if (at_.type() < kp_parserTokenCount && k_.checkStates[at_.type()]) {
                at_.advance();
            } else if (!deferral(ignored)) {
                return;
            }
        }
    }

    // Oracle's state words after a table's constraint.
    void skipStateWords()
    {
        while (at_.type() < kp_parserTokenCount && k_.checkStates[at_.type()]) {
            at_.advance();
        }
    }

    // The state of a key or index: the state words of skipKeyState and SQL
    // Server's WITH (name = value, ...) and ON file group, in any order.
    // False where something else of the grammar's stands.
    bool skipKeyStorage()
    {
        for (;;) {
            skipKeyState();
            if (at_.is(T_WITH)) {
                if (!storageOptions()) {
                    return false;
                }
            } else if (at_.is(k_.on)) {
                if (!fileGroup()) {
                    return false;
                }
            } else {
                return true;
            }
        }
    }

    // WITH ( name = value, ... ) of SQL Server's index options: values that
    // are numbers, words or ON; lists and anything else are the grammar's.
    bool storageOptions()
    {
        if (!nextIs(OPENPAREN)) {
            return false;
        }
        for (;;) {
            const ANTLR3_UINT32 name = nextType();
            if ((name != STRING && name != k_.fillfactor) || !nextIs(EQUALS)) {
                return false;
            }
            const ANTLR3_UINT32 value = nextType();
            if (value != INT && value != STRING && value != k_.on) {
                return false;
            }
            const ANTLR3_UINT32 after = nextType();
            if (after == CLOSEPAREN) {
                at_.advance();
                return true;
            }
            if (after != COMMA) {
                return false;
            }
        }
    }

    // SQL Server's file group after ON, TEXTIMAGE_ON or FILESTREAM_ON (the
    // cursor at that word): name, [name] or PRIMARY. A partition scheme's
    // (column), a qualified name and ON COMMIT are the grammar's.
    bool fileGroup()
    {
        const ANTLR3_UINT32 group = nextType();
        if ((group != T_PRIMARY && group != STRING && group != QUOTED_STRING) || kp_isWord(at_.token(), "COMMIT")) {
            return false;
        }
        const ANTLR3_UINT32 after = nextType();
        return after != OPENPAREN && after != k_.dot;
    }

    // Passes the current token; the type of the next one.
    ANTLR3_UINT32 nextType()
    {
        at_.advance();
        return at_.type();
    }

    // ( a, b ): names that read as columns of a key, not as a type's size or
    // values (KEY e (10) is a column called key). With sorted, each may
    // take ASC or DESC (which leaves nothing; a primary key's columns take
    // them only after SQL Server's clustering word, else they are reported).
    bool columnList(std::vector<std::string> &columns, bool sorted = false)
    {
        if (!at_.is(OPENPAREN)) {
            return false;
        }
        at_.advance();
        for (;;) {
            pANTLR3_COMMON_TOKEN name = at_.token();
            if (!at_.is(STRING) && !(at_.is(QUOTED_STRING) && kp_tokenText(name).rfind('\'', 0) != 0)) {
                return false;
            }
            columns.push_back(kp_tokenText(name));
            at_.advance();
            if (sorted && (at_.is(k_.asc) || at_.is(k_.desc))) {
                at_.advance();
            }
            if (at_.is(CLOSEPAREN)) {
                at_.advance();
                return true;
            }
            if (!at_.is(COMMA)) {
                return false;
            }
            at_.advance();
        }
    }

    // Table options after the column list, up to the statement's SEMI.
    bool options(PlainTable &table)
    {
        using Kind = PlainTableOption::Kind;
        for (;;) {
            const ANTLR3_UINT32 type = at_.type();
            if (type == SEMI) {
                return true;
            }
            if (type == COMMA) {
                at_.advance();
            } else if (at_.is(k_.engine) || at_.is(k_.typeWord)) {
                // ENGINE = name
                if (!nextIs(EQUALS)) {
                    return false;
                }
                if (!nextIs(STRING)) {
                    return false;
                }
                table.options.push_back({Kind::Engine, kp_tokenText(at_.token())});
                at_.advance();
            } else if (at_.is(k_.autoIncrement)) {
                // AUTO_INCREMENT = n
                if (!nextIs(EQUALS)) {
                    return false;
                }
                if (!nextIs(INT)) {
                    return false;
                }
                at_.advance();
                if (at_.is(COMMA) && at_.ahead(1) != nullptr && at_.ahead(1)->type == INT) {
                    return false;  // n, n
                }
            } else if (at_.is(k_.comment)) {
                // COMMENT = 'text'
                if (!nextIs(EQUALS)) {
                    return false;
                }
                at_.advance();
                if (!at_.is(STRING) && !at_.is(QUOTED_STRING)) {
                    return false;
                }
                table.options.push_back({Kind::Comment, kp_tokenText(at_.token())});
                at_.advance();
            } else if (type == T_DEFAULT || type == T_CHARACTER || at_.is(k_.charset) || at_.is(k_.collate)) {
                // [DEFAULT] CHARSET | CHARACTER SET [=] name, [DEFAULT] COLLATE [=] name
                if (type == T_DEFAULT) {
                    at_.advance();
                }
                const bool collation = at_.is(k_.collate);
                if (at_.is(T_CHARACTER)) {
                    if (!nextIs(k_.set)) {
                        return false;
                    }
                } else if (!at_.is(k_.charset) && !collation) {
                    return false;
                }
                at_.advance();
                if (at_.is(EQUALS)) {
                    at_.advance();
                }
                if (!at_.is(STRING) && !at_.is(QUOTED_STRING)) {
                    return false;
                }
                table.options.push_back({collation ? Kind::Collation : Kind::CharacterSet, kp_tokenText(at_.token())});
                at_.advance();
                // A collation is read as an expression: nothing of one may follow.
                if (collation && (at_.is(k_.dot) || at_.is(OPENPAREN) || at_.is(QUOTED_STRING) || at_.is(k_.cast) ||
                                  at_.is(k_.plus) || at_.is(k_.minus) || at_.is(k_.star) || at_.is(FORWARD_SLASH))) {
                    return false;
                }
            } else if (at_.is(k_.on) || (at_.is(STRING) && kp_isAnyWord(at_.token(), "TEXTIMAGE_ON FILESTREAM_ON"))) {
                if (!fileGroup()) {
                    return false;
                }
            } else {
                return false;
            }
        }
    }

    Cursor &at_;
    const KnownTypes &k_;
    pANTLR3_COMMON_TOKEN lastTaken_ = nullptr;
    // The first and last tokens inside the parentheses valueParentheses passed last.
    pANTLR3_COMMON_TOKEN insideFirst_ = nullptr;
    pANTLR3_COMMON_TOKEN insideLast_ = nullptr;
};

} // namespace

namespace {

// Reads the run of plain columns whose first name is the cursor's token,
// leaving the cursor at the COMMA or CLOSEPAREN after the run's last column.
// The run goes on over a comma only when a plain column follows it.
bool readRun(Cursor &cursor, PlainColumnRun &run)
{
    Cursor at = cursor;
    for (;;) {
        PlainColumn column;
        nameColumn(column, at.token());
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
    probe.last = cursor.previous();
    return probe.plain;
}

unsigned long kp_plainColumnsTaken()
{
    return plainColumnsTaken;
}

unsigned long kp_plainTablesTaken()
{
    return plainTablesTaken;
}

unsigned long kp_plainTablesReadAhead()
{
    return plainTablesReadAhead;
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
    consumeThrough(*session->tokenWindow, static_cast<pANTLR3_PARSER>(recognizer->super)->tstream, probe.last);
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

namespace {

// Makes a plain column's field and applies its options, as the walker's
// column rule does.
void applyColumn(ParseSession *session, SQLTable *table, const PlainColumn &column)
{
    using Kind = PlainColumnStep::Kind;
    // The last DEFAULT is the one that stays: it is set with the type.
    std::optional<std::string_view> defaultValue;
    for (const PlainColumnStep &step : column.steps) {
        if (step.kind == Kind::Default) {
            defaultValue = step.text;
        }
    }
    SQLField *field =
        kp_addFieldAt(session, table, column.name, column.type, defaultValue, column.line, column.position);
    if (field == nullptr) {
        // Without a table the column's reference is still reported.
        for (const PlainColumnStep &step : column.steps) {
            if (step.kind == PlainColumnStep::Kind::Reference) {
                kp_setFieldReferenceNamed(session, nullptr, step.text,
                                          step.hasDetail ? std::optional<std::string>(step.detail) : std::nullopt,
                                          step.line, step.position);
            }
        }
        return;
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
            break;  // set with the field
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
        case Kind::Reference:
            kp_setFieldReferenceNamed(session, field, step.text,
                                      step.hasDetail ? std::optional<std::string>(step.detail) : std::nullopt,
                                      step.line, step.position);
            break;
        case Kind::UpdateAction:
            field->setUpdateAction(step.code);
            break;
        case Kind::DeleteAction:
            field->setDeleteAction(step.code);
            break;
        case Kind::Deferrable:
            field->setDeferrable(step.code != 0);
            break;
        case Kind::InitiallyDeferred:
            field->setInitiallyDeferred(step.code != 0);
            break;
        case Kind::Check:
            if (!step.text.empty()) {
                kp_addCheckConstraint(field, step.text, step.hasDetail ? &step.detail : nullptr);
            }
            break;
        }
    }
}

// Hands a table's foreign key to the driver as the walker does: the last of
// each action and deferral clause counts.
void addForeignKey(ParseSession *session, SQLTable *table, const PlainEntry &entry)
{
    const PlainReference &reference = entry.reference;
    KpForeignKeyClause clause;
    if (entry.keyName) {
        clause.keyName = *entry.keyName;
    }
    clause.localColumns = &entry.columns;
    clause.targetParts = &reference.parts;
    clause.targetColumns = reference.listWritten ? &reference.columns : nullptr;
    for (const PlainColumnStep &action : reference.actions) {
        switch (action.kind) {
        case PlainColumnStep::Kind::UpdateAction:
            clause.updateAction = action.code;
            break;
        case PlainColumnStep::Kind::DeleteAction:
            clause.deleteAction = action.code;
            break;
        case PlainColumnStep::Kind::Deferrable:
            clause.deferrable = action.code != 0;
            break;
        case PlainColumnStep::Kind::InitiallyDeferred:
            clause.initiallyDeferred = action.code != 0;
            break;
        default:
            break;
        }
    }
    kp_addForeignKeyAt(session != nullptr ? session->driver : nullptr, table, entry.name ? &*entry.name : nullptr,
                       reference.line, reference.position, clause);
}

// Builds a plain CREATE TABLE statement's table as the walker's table rules
// do: the table, then each entry and each option in the order written.
void applyTable(ParseSession *session, SQLContainer &container, const PlainTable &plain)
{
    SQLTable *table = kp_beginTable(&container, &plain.name);
    if (table == nullptr) {
        return;
    }
    using Kind = PlainEntry::Kind;
    table->reserveFields(static_cast<size_t>(std::count_if(
        plain.entries().begin(), plain.entries().end(), [](const PlainEntry &entry) { return entry.kind == Kind::Column; })));
    for (const PlainEntry &entry : plain.entries()) {
        switch (entry.kind) {
        case Kind::Column:
            applyColumn(session, table, entry.column);
            break;
        case Kind::PrimaryKey:
            for (const std::string &column : entry.columns) {
                kp_setPrimaryKeyColumnNamed(table, column);
            }
            break;
        case Kind::Unique:
        case Kind::Index: {
            std::unique_ptr<SQLIndex> index =
                entry.kind == Kind::Unique ? kp_newUniqueConstraint() : kp_newTableIndex(nullptr);
            if (entry.name) {
                index->setName(*entry.name);
            }
            for (const std::string &column : entry.columns) {
                kp_addIndexEntryNamed(index.get(), column, std::string());
            }
            kp_addTableIndex(table, std::move(index));
            break;
        }
        case Kind::ForeignKey:
            addForeignKey(session, table, entry);
            break;
        case Kind::Check:
            if (!entry.text.empty()) {
                kp_addCheckConstraint(table, entry.text, entry.name ? &*entry.name : nullptr);
            }
            break;
        }
    }
    for (const PlainTableOption &option : plain.options) {
        const std::string &value = option.value;
        switch (option.kind) {
        case PlainTableOption::Kind::Engine:
            table->setTableType(value);
            break;
        case PlainTableOption::Kind::CharacterSet:
            table->setProperty("table_character_set", value);
            break;
        case PlainTableOption::Kind::Collation:
            table->setProperty("table_collation", value);
            break;
        case PlainTableOption::Kind::Comment:
            kp_setCommentText(table, value);
            break;
        }
    }
}

} // namespace

bool kp_importPlainTable(ParseSession &session, pANTLR3_TOKEN_STREAM tokens, SQLContainer &container)
{
    if (!session.plainColumns || session.tokenWindow == nullptr) {
        return false;
    }
    pANTLR3_COMMON_TOKEN first = tokens->_LT(tokens, 1);
    if (first == nullptr || first->type != known().create) {
        return false;
    }
    sqlantlr::TokenWindow &window = *session.tokenWindow;
    PlainTable &table = session.plainTable;
    table.clear();
    // Most statements are read ahead from the text by the lexer's fast path
    // into tokens of their own, reused as the reading goes on: the window's
    // tokens and the script-line filter's steps are then spared for all but
    // the ";". The reading is the same over either kind of token: only a
    // statement whose reading ahead stopped early is read from the window.
    bool readAhead = false;
    pANTLR3_COMMON_TOKEN second = nullptr;
    if (session.plainTokens && window.startAhead(&second)) {
        Cursor cursor(window, first, second);
        Reader reader(cursor);
        readAhead = reader.table(table) && cursor.is(SEMI);
        const bool stopped = window.stoppedAhead();
        window.endAhead(readAhead);
        if (!readAhead && !stopped) {
            return false;
        }
    }
    pANTLR3_COMMON_TOKEN last = nullptr;
    if (!readAhead) {
        table.clear();
        const auto *common = static_cast<pANTLR3_COMMON_TOKEN_STREAM>(tokens->super);
        Cursor cursor(window, first, common->channel);
        Reader reader(cursor);
        if (!reader.table(table)) {
            return false;
        }
        last = cursor.previous();
    }
    // The table's records come with the walker's; reading the statement's
    // tokens made the lexer's own, as parsing them would have.
    const bool deferred = session.deferRecords;
    session.deferRecords = true;
    applyTable(&session, container, table);
    session.deferRecords = deferred;
    ++plainTablesTaken;
    plainTablesReadAhead += readAhead ? 1 : 0;
    for (const PlainEntry &entry : table.entries()) {
        plainColumnsTaken += entry.kind == PlainEntry::Kind::Column ? 1 : 0;
    }
    // Through the token before the SEMI: the first word when read ahead,
    // as the SEMI is then the next token the window reads.
    consumeThrough(window, tokens, readAhead ? first : last);
    tokens->istream->consume(tokens->istream);  // the SEMI
    return true;
}

void kp_addPlainColumns(pANTLR3_BASE_RECOGNIZER recognizer, SQLTable *table, pANTLR3_BASE_TREE name)
{
    pANTLR3_COMMON_TOKEN token = name != nullptr ? name->getToken(name) : nullptr;
    if (token == nullptr || token->custom == nullptr) {
        return;
    }
    ParseSession *session = kp_session(recognizer);
    for (const PlainColumn &column : *static_cast<const PlainColumnRun *>(token->custom)) {
        applyColumn(session, table, column);
    }
}

namespace sqlantlr {

void PlainEntry::clear()
{
    kind = Kind::Column;
    column.name.clear();
    column.line = 0;
    column.position = 0;
    column.type.clear();
    column.steps.clear();
    name.reset();
    keyName.reset();
    columns.clear();
    text.clear();
    reference.line = 0;
    reference.position = 0;
    reference.parts.clear();
    reference.columns.clear();
    reference.listWritten = false;
    reference.actions.clear();
}

PlainEntry &PlainTable::nextEntry()
{
    if (kept_ == entries_.size()) {
        entries_.emplace_back();
    } else {
        entries_[kept_].clear();
    }
    return entries_[kept_];
}

void PlainTable::clear()
{
    name.clear();
    options.clear();
    kept_ = 0;
}

} // namespace sqlantlr
