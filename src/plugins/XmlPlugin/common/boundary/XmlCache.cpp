#include "boundary/XmlCache.h"

#include "boundary/XmlFileParser.h"
#include "boundary/XmlNodeSink.h"
#include "values/XPathText.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <new>
#include <utility>

namespace XmlPlugin
{

XmlCache* XmlCache::s_pInstance = nullptr;

XmlCache::~XmlCache() = default;

XmlCache* XmlCache::getInstance()
{
    if (!s_pInstance)
    {
        s_pInstance = new (std::nothrow) XmlCache;
    }
    return s_pInstance;
}

void XmlCache::destroyInstance() noexcept
{
    delete std::exchange(s_pInstance, nullptr);
}

TErrorCode XmlCache::getDocument(std::wstring_view i_File, Node*& o_pRoot)
{
    o_pRoot = nullptr;
    const auto pKnown = m_Documents.find(i_File);
    if (pKnown != m_Documents.end())
    {
        o_pRoot = pKnown->second.get();
        return XML_SUCCESS;
    }
    const String file = copyOf(i_File);
    XmlNodeSink sink;
    const XmlFileParser parser(file, sink);
    if (parser.status() != 0)
    {
        return XML_PLUGIN_ERROR_DOCUMENT;
    }
    std::unique_ptr<Node> pRoot(sink.release());
    o_pRoot = m_Documents.emplace(file, std::move(pRoot)).first->second.get();
    return XML_SUCCESS;
}

} // namespace XmlPlugin
