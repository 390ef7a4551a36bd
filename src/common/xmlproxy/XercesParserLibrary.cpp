#include "xmlproxy/XercesParserLibrary.h"

#include "xmlproxy/XercesParser.h"

std::unique_ptr<SAXParser> XercesParserLibrary::makeParser(SAXHandler* i_pHandler)
{
    m_Library.hold();
    return std::make_unique<XercesParser>(i_pHandler);
}
