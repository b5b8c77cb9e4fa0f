#pragma once

#include <SchemaModel/SQLObject.h>
#include <SchemaModel/SQLReferentialActions.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class SQLContainer;
class SQLField;
class SQLTable;

/// One column pair of a foreign key: a source field of the owning table and
/// a target field of the referenced table (known by name until resolved).
class SQLForeignKeyEntry {
public:
    /// A non-null target also records the target's name, so resolution by
    /// name can find it again.
    SQLForeignKeyEntry(SQLField *source, SQLField *target);

    /// Stores the trimmed target field name; an empty result clears it.
    void setTargetByName(std::string_view targetName);

    SQLField *getSource() const { return source_; }
    /// The target name as set, or else the resolved target's name.
    std::optional<std::string> getTargetName() const;
    SQLField *getTarget() const { return target_; }

private:
    friend class SQLContainer;

    SQLField *source_;
    SQLField *target_;
    std::optional<std::string> targetName_;
};

/// A table-level foreign key; owns its entries.
class SQLForeignKey : public SQLObject, public SQLReferentialActions {
public:
    SQLForeignKey() = default;
    ~SQLForeignKey() override;

    void setDefaultCardinalityForImport();
    void setSourceCardinality(SQLCardinality cardinality) { sourceCardinality_ = cardinality; }
    void setTargetCardinality(SQLCardinality cardinality) { targetCardinality_ = cardinality; }
    SQLCardinality getSourceCardinality() const { return sourceCardinality_; }
    SQLCardinality getTargetCardinality() const { return targetCardinality_; }

    /// Stores the trimmed, possibly schema-qualified table name ("t" or "s.t").
    void setTargetTableByName(std::string_view tableName);
    std::optional<std::string> getTargetTableName() const { return targetTableName_; }

    /// Returns the added entry, or nullptr when given nullptr.
    SQLForeignKeyEntry *addForeignKeyEntry(std::unique_ptr<SQLForeignKeyEntry> entry);
    const std::vector<std::unique_ptr<SQLForeignKeyEntry>> &entries() const { return entries_; }

    /// True after SQLContainer::postLoadProcess found the target table and a
    /// target field for every entry.
    bool isResolved() const { return resolved_; }
    SQLTable *getTargetTable() const { return targetTable_; }

    void setDeleteAction(int action) override { deleteAction_ = action; }
    void setUpdateAction(int action) override { updateAction_ = action; }
    void setDeferrable(bool deferrable) override { deferrable_ = deferrable; }
    void setInitiallyDeferred(bool initiallyDeferred) override { initiallyDeferred_ = initiallyDeferred; }
    int getDeleteAction() const override { return deleteAction_; }
    int getUpdateAction() const override { return updateAction_; }
    bool isDeferrable() const override { return deferrable_; }
    bool isInitiallyDeferred() const override { return initiallyDeferred_; }

private:
    friend class SQLContainer;

    std::optional<std::string> targetTableName_;
    std::vector<std::unique_ptr<SQLForeignKeyEntry>> entries_;
    SQLTable *targetTable_ = nullptr;
    bool resolved_ = false;
    int deleteAction_ = SQLNoActionWritten;
    int updateAction_ = SQLNoActionWritten;
    bool deferrable_ = false;
    bool initiallyDeferred_ = false;
    SQLCardinality sourceCardinality_ = SQLCardinality::Unspecified;
    SQLCardinality targetCardinality_ = SQLCardinality::Unspecified;
};
