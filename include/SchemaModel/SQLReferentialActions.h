#pragma once

/// Action codes of ON DELETE / ON UPDATE clauses.
enum SQLReferentialAction : int {
    SQLNoActionWritten = 0,
    SQLCascade = 1,
    SQLRestrict = 2,
    SQLSetNull = 3,
    SQLNoAction = 4,
    SQLSetDefault = 5
};

enum class SQLCardinality { Unspecified, ZeroOrOne, ExactlyOne, ZeroOrMore, OneOrMore };

/// Referential actions and deferral of a reference between tables.
class SQLReferentialActions {
public:
    virtual ~SQLReferentialActions() = default;

    virtual void setDeleteAction(int action) = 0;
    virtual void setUpdateAction(int action) = 0;
    virtual void setDeferrable(bool deferrable) = 0;
    virtual void setInitiallyDeferred(bool initiallyDeferred) = 0;

    virtual int getDeleteAction() const = 0;
    virtual int getUpdateAction() const = 0;
    virtual bool isDeferrable() const = 0;
    virtual bool isInitiallyDeferred() const = 0;

protected:
    SQLReferentialActions() = default;
    SQLReferentialActions(const SQLReferentialActions &) = default;
    SQLReferentialActions &operator=(const SQLReferentialActions &) = default;
};
