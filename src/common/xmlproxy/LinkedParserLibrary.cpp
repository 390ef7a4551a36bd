// The parser library of programs that are linked with it.

#include "xmlproxy/ParserLibrary.h"
#include "xmlproxy/XercesParserLibrary.h"

std::unique_ptr<ParserLibrary> ParserLibrary::start()
{
    return std::make_unique<XercesParserLibrary>();
}

void ParserLibrary::locate() {}
