// Everything a caller of the SQL script importer needs.
#pragma once

#include <SchemaModel/SchemaModel.h>

#include <SQLAntlrParser/KpError.h>
#include <SQLAntlrParser/SQLAntlrParserVersion.h>
#include <SQLAntlrParser/SQLLog.h>
#include <SQLAntlrParser/SQLParser.h>
#include <SQLAntlrParser/SQLParserC.h>
#include <SQLAntlrParser/SQLParserException.h>
