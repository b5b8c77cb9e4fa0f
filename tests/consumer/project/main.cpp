// A program built against the installed library.
#include <SQLAntlrParser/SQLAntlrParser.h>

#include <iostream>

int main()
{
    SQLParser parser;
    std::unique_ptr<SQLContainer> model = parser.parseString("CREATE TABLE item (id INT PRIMARY KEY);");
    if (model == nullptr) {
        return 1;
    }
    std::cout << "SQLAntlrParser " << SQLAntlrParserVersionNumber << " tables=" << model->tables().size()
              << " records=" << parser.getExceptionList().size() << "\n";
    return 0;
}
