// The boundary of the module with the parser library: the one function that the plug-in finds by name. Everything else
// is hidden (XercesModule.map).

#include "xmlproxy/ParserModule.h"
#include "xmlproxy/XercesParserLibrary.h"
#include "xmlproxy/XmlName.h"

#include <new>

extern "C" __attribute__((visibility("default"))) ParserLibrary* createXercesLibrary(std::uint64_t i_NameSecret)
{
    XmlName::shareSecret(i_NameSecret);
    return new (std::nothrow) XercesParserLibrary;
}
