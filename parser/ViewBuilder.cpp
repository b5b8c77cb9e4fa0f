#include "ViewBuilder.h"

#include <SQLAntlrParser/SQLParserC.h>

#include <SchemaModel/SchemaModel.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <initializer_list>

namespace sqlantlr {

namespace {

// A token's text without the blank that a few keyword tokens ('UNION ')
// include.
std::string trimmedText(std::string text)
{
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) {
        text.pop_back();
    }
    return text;
}

bool sameWord(const std::string &text, const char *upperWord)
{
    return kp_textIsWord(text, upperWord);
}

bool isOneOf(const std::string &text, std::initializer_list<const char *> upperWords)
{
    return std::any_of(upperWords.begin(), upperWords.end(),
                       [&text](const char *word) { return sameWord(text, word); });
}

// Words that end a table reference where an alias could stand.
bool isAliasStop(const std::string &text)
{
    return isOneOf(text, {"ON", "USING", "JOIN", "INNER", "LEFT", "RIGHT", "FULL", "CROSS", "NATURAL", "OUTER",
                          "STRAIGHT_JOIN", "WHERE", "GROUP", "HAVING", "ORDER", "LIMIT", "OFFSET", "FETCH",
                          "UNION", "INTERSECT", "EXCEPT", "MINUS", "WINDOW", "WITH", "FOR", "INTO", "CONNECT",
                          "START", "QUALIFY", "PARTITION", "USE", "IGNORE", "FORCE", "TABLESAMPLE", "SAMPLE",
                          "LATERAL", "APPLY", "PIVOT", "UNPIVOT", "LOCK", "AS"});
}

// A token that can name something: a word, a quoted name or a variable.
bool isNameText(const std::string &text)
{
    if (text.empty()) {
        return false;
    }
    const auto c = static_cast<unsigned char>(text[0]);
    return std::isalpha(c) != 0 || c == '_' || c == '"' || c == '`' || c == '[' || c == '@' || c == '#' || c >= 0x80;
}

// A recursive reader over the token texts. A failure is kept (the first
// one wins) and makes every later step a no-op, so the readers need not
// test after each call; `attempt` reads an alternative and undoes it when
// it fails.
class QueryReader {
public:
    explicit QueryReader(const std::vector<std::string> &tokens) : t_(tokens) {}

    ViewQuery read()
    {
        query(true);
        size_t end = p_;
        if (!failed_ && p_ < t_.size()) {
            if (isTrailer(p_)) {
                p_ = t_.size();
            } else {
                fail();
            }
        }
        result_.fits = !failed_;
        result_.failAt = failAt_;
        result_.queryEnd = end;
        return std::move(result_);
    }

private:
    struct Mark {
        size_t p;
        size_t tables;
        size_t columns;
        bool columnsTaken;
    };

    const std::vector<std::string> &t_;
    size_t p_ = 0;
    bool failed_ = false;
    size_t failAt_ = 0;
    int depth_ = 0;
    // Set when the input nests too deeply or needs too many retries: no
    // alternative is tried any more, so pathological input stays linear.
    bool givenUp_ = false;
    size_t attempts_ = 0;
    bool columnsTaken_ = false;
    std::vector<std::string> cteNames_;
    ViewQuery result_;

    static constexpr int maxDepth = 200;

    bool is(size_t i, const char *upperWord) const { return i < t_.size() && sameWord(t_[i], upperWord); }
    bool at(const char *upperWord) const { return is(p_, upperWord); }
    bool atText(const char *text) const { return p_ < t_.size() && t_[p_] == text; }
    bool done() const { return failed_ || p_ >= t_.size(); }

    void fail()
    {
        if (!failed_) {
            failed_ = true;
            failAt_ = std::min(p_, t_.size());
        }
    }

    void expect(const char *text)
    {
        if (failed_) {
            return;
        }
        if (p_ < t_.size() && sameWord(t_[p_], text)) {
            ++p_;
        } else {
            fail();
        }
    }

    Mark mark() const { return {p_, result_.tables.size(), result_.selectColumns.size(), columnsTaken_}; }

    void restore(const Mark &m)
    {
        p_ = m.p;
        result_.tables.resize(m.tables);
        result_.selectColumns.resize(m.columns);
        columnsTaken_ = m.columnsTaken;
        failed_ = givenUp_;
    }

    void giveUp()
    {
        fail();
        givenUp_ = true;
    }

    template <typename Read> bool attempt(Read read)
    {
        if (++attempts_ > 4 * t_.size() + 100) {
            giveUp();
        }
        if (givenUp_) {
            return false;
        }
        const Mark m = mark();
        read();
        if (failed_) {
            restore(m);
            return false;
        }
        return true;
    }

    // WITH CHECK OPTION, WITH CASCADED|LOCAL CHECK OPTION, WITH READ ONLY,
    // WITH [NO] DATA: options of the view statement, not of the query.
    bool isTrailer(size_t i) const
    {
        return is(i, "WITH") && i + 1 < t_.size()
               && isOneOf(t_[i + 1], {"CHECK", "READ", "CASCADED", "LOCAL", "NO", "DATA"});
    }

    bool startsQuery(size_t i) const { return is(i, "SELECT") || is(i, "WITH") || is(i, "VALUES"); }

    // Where an expression run stops: the start of the next clause.
    bool isClauseStop(size_t i) const
    {
        const std::string &s = t_[i];
        if (isOneOf(s, {"WHERE", "HAVING", "LIMIT", "UNION", "INTERSECT", "EXCEPT", "MINUS", "WINDOW", "INTO",
                        "QUALIFY"})) {
            return true;
        }
        if (sameWord(s, "FROM")) {
            return !(i > 0 && sameWord(t_[i - 1], "DISTINCT"));  // IS [NOT] DISTINCT FROM
        }
        if (i + 1 >= t_.size()) {
            return false;
        }
        const std::string &next = t_[i + 1];
        if (isOneOf(s, {"GROUP", "CONNECT"})) {
            return sameWord(next, "BY");
        }
        if (sameWord(s, "ORDER")) {
            return sameWord(next, "BY") || sameWord(next, "SIBLINGS");
        }
        if (sameWord(s, "START")) {
            return sameWord(next, "WITH");
        }
        if (sameWord(s, "FETCH")) {
            return isOneOf(next, {"FIRST", "NEXT"});
        }
        if (sameWord(s, "OFFSET")) {
            return std::isdigit(static_cast<unsigned char>(next[0])) != 0 || next == "(" || next == "@";
        }
        if (sameWord(s, "FOR")) {
            return isOneOf(next, {"UPDATE", "XML", "JSON", "BROWSE", "SHARE", "NO", "KEY", "READ"});
        }
        if (sameWord(s, "LOCK")) {
            return sameWord(next, "IN");
        }
        return isTrailer(i);
    }

    bool isJoinStart(size_t i) const
    {
        const std::string &s = t_[i];
        if (isOneOf(s, {"LEFT", "RIGHT"})) {
            return !(i + 1 < t_.size() && t_[i + 1] == "(");  // LEFT(x, 2) is a function
        }
        return isOneOf(s, {"JOIN", "INNER", "FULL", "CROSS", "NATURAL", "STRAIGHT_JOIN"})
               || (sameWord(s, "OUTER") && is(i + 1, "APPLY"));
    }

    enum class Run { Item, Clause, JoinCondition };

    // An expression up to the next clause; parentheses are read as groups,
    // so sub-selects inside them are found.
    void expressionRun(Run mode)
    {
        while (!done()) {
            const std::string &s = t_[p_];
            if (s == ")" || s == ";" || s == "}") {
                return;
            }
            if (s == ",") {
                if (mode != Run::Clause) {
                    return;
                }
                ++p_;
                continue;
            }
            if (s == "(") {
                parenGroup();
                continue;
            }
            if (isClauseStop(p_) || (mode == Run::JoinCondition && isJoinStart(p_))) {
                return;
            }
            ++p_;
        }
    }

    // ( ... ): a sub-select or anything balanced.
    void parenGroup()
    {
        if (++depth_ > maxDepth) {
            giveUp();
        }
        ++p_;
        if (!(startsQuery(p_) && attempt([this] { query(false); expect(")"); }))) {
            insideParens();
            expect(")");
        }
        --depth_;
    }

    void insideParens()
    {
        while (!done() && t_[p_] != ")") {
            if (t_[p_] == "(") {
                parenGroup();
            } else {
                ++p_;
            }
        }
    }

    void query(bool top)
    {
        if (++depth_ > maxDepth) {
            giveUp();
        }
        if (at("WITH")) {
            commonTableExpressions();
        }
        queryTerm(top);
        while (!done() && isOneOf(t_[p_], {"UNION", "INTERSECT", "EXCEPT", "MINUS"})) {
            ++p_;
            if (at("ALL") || at("DISTINCT")) {
                ++p_;
            }
            queryTerm(false);
        }
        clauses();
        --depth_;
    }

    void commonTableExpressions()
    {
        ++p_;
        if (at("RECURSIVE")) {
            ++p_;
        }
        do {
            if (at(",")) {
                ++p_;
            }
            if (done() || !isNameText(t_[p_])) {
                fail();
                return;
            }
            cteNames_.push_back(t_[p_++]);
            if (atText("(")) {
                parenGroup();  // column names
            }
            expect("AS");
            if (at("NOT")) {
                ++p_;
            }
            if (at("MATERIALIZED")) {
                ++p_;
            }
            expect("(");
            if (!failed_) {
                query(false);
            }
            expect(")");
        } while (!done() && atText(","));
    }

    void queryTerm(bool top)
    {
        if (done()) {
            fail();
            return;
        }
        if (atText("(")) {
            ++p_;
            query(top);
            expect(")");
        } else if (at("SELECT")) {
            select(top);
        } else if (at("VALUES")) {
            ++p_;
            expressionRun(Run::Clause);
        } else if (at("TABLE")) {
            ++p_;
            namedTable();
        } else {
            fail();
        }
    }

    void select(bool top)
    {
        ++p_;
        selectModifiers();
        const bool record = top && !columnsTaken_;
        columnsTaken_ = columnsTaken_ || top;
        for (;;) {
            const size_t first = p_;
            expressionRun(Run::Item);
            if (failed_) {
                return;
            }
            if (p_ == first) {
                fail();
                return;
            }
            if (record) {
                result_.selectColumns.emplace_back(first, p_);
            }
            if (!atText(",")) {
                break;
            }
            ++p_;
        }
        if (at("INTO")) {
            ++p_;
            expressionRun(Run::Item);
        }
        if (at("FROM")) {
            ++p_;
            fromList();
        }
        clauses();
    }

    void selectModifiers()
    {
        for (;;) {
            if (at("DISTINCT") && is(p_ + 1, "ON") && is(p_ + 2, "(")) {
                p_ += 2;
                parenGroup();
            } else if (at("TOP")) {
                ++p_;
                if (atText("(")) {
                    parenGroup();
                } else if (!done()) {
                    ++p_;
                }
                if (at("PERCENT")) {
                    ++p_;
                }
                if (at("WITH") && is(p_ + 1, "TIES")) {
                    p_ += 2;
                }
            } else if (!done() && isOneOf(t_[p_], {"DISTINCT", "ALL", "DISTINCTROW", "UNIQUE",
                                                     "SQL_CALC_FOUND_ROWS", "STRAIGHT_JOIN", "HIGH_PRIORITY",
                                                     "SQL_NO_CACHE", "SQL_CACHE", "SQL_SMALL_RESULT",
                                                     "SQL_BIG_RESULT", "SQL_BUFFER_RESULT"})) {
                ++p_;
            } else {
                return;
            }
        }
    }

    // WHERE, GROUP BY, HAVING, ORDER BY, LIMIT and the like, in any order.
    void clauses()
    {
        while (!done() && !isTrailer(p_) && isClauseStop(p_)
               && !isOneOf(t_[p_], {"UNION", "INTERSECT", "EXCEPT", "MINUS", "FROM"})) {
            if (at("ORDER") && is(p_ + 1, "SIBLINGS")) {
                p_ += 2;
                expect("BY");
            } else {
                p_ += isOneOf(t_[p_], {"GROUP", "CONNECT", "START", "ORDER"}) ? 2 : 1;
            }
            expressionRun(Run::Clause);
        }
    }

    void fromList()
    {
        tableReference();
        while (!done() && atText(",")) {
            ++p_;
            tableReference();
        }
    }

    void tableReference()
    {
        tableFactor();
        while (!done() && isJoinStart(p_)) {
            bool apply = false;
            if (at("NATURAL")) {
                ++p_;
            }
            if (!done() && isOneOf(t_[p_], {"INNER", "CROSS", "LEFT", "RIGHT", "FULL", "OUTER"})) {
                ++p_;
            }
            if (at("OUTER")) {
                ++p_;
            }
            if (!done() && isOneOf(t_[p_], {"HASH", "LOOP", "MERGE", "REMOTE"})) {
                ++p_;  // SQL Server join hints
            }
            if (at("APPLY")) {
                apply = true;
                ++p_;
            } else if (at("JOIN") || at("STRAIGHT_JOIN")) {
                ++p_;
            } else {
                fail();
                return;
            }
            tableFactor();
            if (apply) {
                continue;
            }
            if (at("ON")) {
                ++p_;
                expressionRun(Run::JoinCondition);
            } else if (at("USING")) {
                ++p_;
                expect("(");
                insideParens();
                expect(")");
            }
        }
    }

    void tableFactor()
    {
        if (done()) {
            fail();
            return;
        }
        if (atText("{")) {  // ODBC { OJ t1 LEFT OUTER JOIN t2 ON ... }
            ++p_;
            expect("OJ");
            tableReference();
            expect("}");
            return;
        }
        if (at("LATERAL") || (at("ONLY") && p_ + 1 < t_.size() && isNameText(t_[p_ + 1]))) {
            ++p_;
        }
        if (atText("(")) {
            const bool derived = attempt([this] {
                ++p_;
                query(false);
                expect(")");
            });
            if (!derived) {
                ++p_;
                fromList();
                expect(")");
            }
            alias();
            tableHints();
            return;
        }
        namedTable();
    }

    // A table name with its alias and hints, or a table function.
    void namedTable()
    {
        if (done() || !isNameText(t_[p_])) {
            fail();
            return;
        }
        std::vector<std::string> parts{t_[p_++]};
        while (!done() && atText(".")) {
            ++p_;
            if (atText(".")) {
                parts.emplace_back();  // db..table
                continue;
            }
            if (done() || !isNameText(t_[p_])) {
                fail();
                return;
            }
            parts.push_back(t_[p_++]);
        }
        if (atText("@") && p_ + 1 < t_.size() && isNameText(t_[p_ + 1])) {
            p_ += 2;  // Oracle database link
        }
        const bool function = atText("(") && !isLockHint(p_);
        if (function) {
            parenGroup();
        } else if (atText("(")) {
            parenGroup();  // legacy SQL Server hint: t (NOLOCK)
        }
        if (at("PARTITION") && is(p_ + 1, "(")) {
            ++p_;
            parenGroup();
        }
        const size_t aliasAt = is(p_, "AS") ? p_ + 1 : p_;
        alias();
        const bool hasAlias = p_ > aliasAt;
        tableHints();
        if (failed_ || function || isCteName(parts)) {
            return;
        }
        const std::string aliasText = hasAlias ? t_[aliasAt] : std::string();
        result_.tables.push_back({SQLParserC::tableNameFromReturnArray(parts), aliasText});
    }

    bool isLockHint(size_t i) const
    {
        return is(i, "(") && i + 2 < t_.size() && t_[i + 2] == ")"
               && isOneOf(t_[i + 1], {"NOLOCK", "READUNCOMMITTED", "UPDLOCK", "HOLDLOCK", "ROWLOCK", "TABLOCK",
                                      "NOWAIT", "READPAST", "XLOCK", "PAGLOCK"});
    }

    bool isCteName(const std::vector<std::string> &parts) const
    {
        return parts.size() == 1 && std::find(cteNames_.begin(), cteNames_.end(), parts[0]) != cteNames_.end();
    }

    // [AS] alias [(column names)]
    void alias()
    {
        if (done()) {
            return;
        }
        if (at("AS")) {
            ++p_;
            if (done() || t_[p_] == "(" || t_[p_] == ")" || t_[p_] == ",") {
                fail();
                return;
            }
            ++p_;
        } else if (isNameText(t_[p_]) && !isAliasStop(t_[p_]) && !isClauseStop(p_) && !isJoinStart(p_)) {
            ++p_;
        } else {
            return;
        }
        if (atText("(") && !isLockHint(p_)) {
            parenGroup();
        }
    }

    // WITH (NOLOCK), USE INDEX (...), TABLESAMPLE ..., PIVOT (...) alias.
    void tableHints()
    {
        while (!done()) {
            if ((at("WITH") && is(p_ + 1, "(")) || isLockHint(p_)) {
                if (at("WITH")) {
                    ++p_;
                }
                parenGroup();
            } else if (isOneOf(t_[p_], {"USE", "IGNORE", "FORCE"}) && (is(p_ + 1, "INDEX") || is(p_ + 1, "KEY"))) {
                while (!done() && !atText("(")) {
                    ++p_;
                }
                expect("(");
                insideParens();
                expect(")");
            } else if (isOneOf(t_[p_], {"TABLESAMPLE", "SAMPLE", "PIVOT", "UNPIVOT"})) {
                ++p_;
                while (!done() && !atText("(")) {
                    ++p_;
                }
                if (!done()) {
                    parenGroup();
                }
                if (at("REPEATABLE") || at("SEED")) {
                    ++p_;
                    if (atText("(")) {
                        parenGroup();
                    }
                }
                alias();
            } else {
                return;
            }
        }
    }
};

} // namespace

ViewQuery readViewQuery(const std::vector<std::string> &tokens)
{
    return QueryReader(tokens).read();
}

std::string joinTokenTexts(const std::vector<std::string> &tokens, size_t from, size_t to)
{
    std::string text;
    for (size_t i = from; i < to && i < tokens.size(); ++i) {
        if (i > from) {
            text += ' ';
        }
        text += tokens[i];
    }
    return text;
}

} // namespace sqlantlr

void kp_checkViewQuery(pANTLR3_BASE_RECOGNIZER recognizer, pANTLR3_COMMON_TOKEN start, pANTLR3_COMMON_TOKEN stop)
{
    auto stream = static_cast<pANTLR3_PARSER>(recognizer->super)->tstream;
    std::vector<std::string> texts;
    std::vector<pANTLR3_COMMON_TOKEN> tokens;
    if (start != nullptr && stop != nullptr && start->type != ANTLR3_TOKEN_EOF) {
        const ANTLR3_MARKER last = stop->getTokenIndex(stop);
        for (ANTLR3_MARKER i = start->getTokenIndex(start); i <= last; ++i) {
            pANTLR3_COMMON_TOKEN token = stream->get(stream, static_cast<ANTLR3_UINT32>(i));
            if (token == nullptr || token->getChannel(token) != ANTLR3_TOKEN_DEFAULT_CHANNEL) {
                continue;
            }
            tokens.push_back(token);
            texts.push_back(sqlantlr::trimmedText(kp_tokenText(token)));
        }
    }
    const sqlantlr::ViewQuery query = sqlantlr::readViewQuery(texts);
    if (!query.fits) {
        pANTLR3_COMMON_TOKEN at = query.failAt < tokens.size() ? tokens[query.failAt] : stream->_LT(stream, 1);
        kp_raiseNoViableAlternative(recognizer, at);
    }
}

std::unique_ptr<SQLView> kp_newView(const std::vector<std::string> *nameParts)
{
    if (nameParts == nullptr || nameParts->empty()) {
        return nullptr;
    }
    auto view = SQLView::viewWithName((*nameParts)[0]);
    if (nameParts->size() == 2) {
        view->setSchemaName((*nameParts)[0]);
        view->setBaseName((*nameParts)[1]);
    }
    return view;
}

void kp_addViewColumns(SQLView *view, const std::vector<std::string> *columns)
{
    if (view == nullptr || columns == nullptr) {
        return;
    }
    for (const std::string &column : *columns) {
        view->addColumn(column);
    }
}

void kp_setViewQuery(pANTLR3_BASE_RECOGNIZER recognizer, SQLView *view, ANTLR3_MARKER from)
{
    if (view == nullptr) {
        return;
    }
    std::vector<std::string> texts;
    kp_forEachRunNode(recognizer, from, [&texts](pANTLR3_BASE_TREE node) {
        texts.push_back(sqlantlr::trimmedText(kp_nodeText(node)));
        return true;
    });
    const sqlantlr::ViewQuery query = sqlantlr::readViewQuery(texts);
    for (const auto &column : query.selectColumns) {
        view->addSelectColumn(sqlantlr::joinTokenTexts(texts, column.first, column.second));
    }
    for (const SQLViewTableEntry &table : query.tables) {
        view->addTableEntry(table.name, table.alias);
    }
    view->setQueryString(sqlantlr::joinTokenTexts(texts, 0, query.fits ? query.queryEnd : texts.size()));
}

void kp_addView(SQLContainer *c, std::unique_ptr<SQLView> view)
{
    if (c != nullptr && view != nullptr) {
        c->add(std::move(view));
    }
}
