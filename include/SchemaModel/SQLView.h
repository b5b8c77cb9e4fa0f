#pragma once

#include <SchemaModel/SQLObject.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A table used in a view's FROM clause.
struct SQLViewTableEntry {
    std::string name;
    std::string alias;
};

/// A view. Unlike a table, it keeps the name it was created with when given
/// a base name.
class SQLView : public SQLObject {
public:
    SQLView() = default;
    ~SQLView() override;

    static std::unique_ptr<SQLView> viewWithName(std::string_view name);

    /// Trimmed; an empty result clears the schema name.
    void setSchemaName(std::string_view schemaName);
    std::optional<std::string> getSchemaName() const { return schemaName_; }
    /// Trimmed; does not rename the view.
    void setBaseName(std::string_view baseName);
    std::optional<std::string> getBaseName() const { return baseName_; }

    /// Query text, stored exactly as given.
    void setQueryString(std::string_view query);
    std::optional<std::string> getQueryString() const { return query_; }

    /// A column name of the view's column list (trimmed).
    void addColumn(std::string_view column);
    const std::vector<std::string> &columns() const { return columns_; }
    /// A select-list item, stored exactly as given.
    void addSelectColumn(std::string_view column);
    const std::vector<std::string> &selectColumns() const { return selectColumns_; }
    /// The table name is trimmed, the alias kept as given.
    void addTableEntry(std::string_view table, std::string_view alias);
    const std::vector<SQLViewTableEntry> &tableEntries() const { return tableEntries_; }

private:
    std::optional<std::string> schemaName_;
    std::optional<std::string> baseName_;
    std::optional<std::string> query_;
    std::vector<std::string> columns_;
    std::vector<std::string> selectColumns_;
    std::vector<SQLViewTableEntry> tableEntries_;
};
