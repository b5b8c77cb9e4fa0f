#include <SchemaModel/SQLView.h>

#include "NameLookup.h"

using SchemaModel::detail::trimmedOrNone;

SQLView::~SQLView() = default;

std::unique_ptr<SQLView> SQLView::viewWithName(std::string_view name)
{
    auto view = std::make_unique<SQLView>();
    view->setName(name);
    return view;
}

void SQLView::setSchemaName(std::string_view schemaName)
{
    schemaName_ = trimmedOrNone(schemaName);
}

void SQLView::setBaseName(std::string_view baseName)
{
    baseName_ = trimmedOrNone(baseName);
}

void SQLView::setQueryString(std::string_view query)
{
    query_ = std::string(query);
}

void SQLView::addColumn(std::string_view column)
{
    columns_.push_back(SchemaModel::trim(column));
}

void SQLView::addSelectColumn(std::string_view column)
{
    selectColumns_.emplace_back(column);
}

void SQLView::addTableEntry(std::string_view table, std::string_view alias)
{
    tableEntries_.push_back(SQLViewTableEntry{SchemaModel::trim(table), std::string(alias)});
}
