#pragma once

#include <SchemaModel/Names.h>
#include <SchemaModel/SQLContainer.h>
#include <SchemaModel/SQLField.h>
#include <SchemaModel/SQLForeignKey.h>
#include <SchemaModel/SQLIndex.h>
#include <SchemaModel/SQLObject.h>
#include <SchemaModel/SQLReferentialActions.h>
#include <SchemaModel/SQLTable.h>
#include <SchemaModel/SQLView.h>
