// Input: the bytes of a document.
#include "InputFile.h"
#include "TreeChecks.h"

#include "boundary/XmlCache.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <sstream>
#include <string>

using namespace XmlPlugin;

namespace
{

std::string written(const Node& i_Root)
{
    std::ostringstream out;
    i_Root.write(out, 0);
    return out.str();
}

/// A copy is written as the tree that it was made of.
void checkClone(const Node& i_Root, const std::string& i_Written)
{
    const std::unique_ptr<Node> pClone(i_Root.clone());
    FUZZ_CHECK(written(*pClone) == i_Written, i_Written);
    FUZZ_CHECK(!pClone->getParent() && pClone->sequence() == 0, i_Written);
}

/// What is written of a tree is read as the same tree.
void checkWritten(const ParsedFile& i_Parsed, const std::string& i_Written)
{
    const ParsedFile again(InputFile::holding(i_Written, "written"));
    FUZZ_CHECK(again.print() == i_Parsed.print(), i_Written);
}

/// The cache answers as the parse does, and the second time without one.
void checkCache(const String& i_Path, const ParsedFile& i_Parsed)
{
    Node* pRoot = nullptr;
    Node* pAgain = nullptr;
    const TErrorCode code = XmlCache::getInstance()->getDocument(i_Path, pRoot);
    FUZZ_CHECK(code == (i_Parsed.m_Status == 0 ? 0 : XML_PLUGIN_ERROR_DOCUMENT), std::to_string(code));
    if (code == 0)
    {
        FUZZ_CHECK((pRoot ? printTree(*pRoot) : "no tree\n") == i_Parsed.print(), i_Parsed.print());
        FUZZ_CHECK(XmlCache::getInstance()->getDocument(i_Path, pAgain) == 0 && pAgain == pRoot, i_Parsed.print());
    }
    else
    {
        FUZZ_CHECK(!pRoot, std::to_string(code));
    }
    XmlCache::destroyInstance();
}

} // namespace

void fuzzOne(std::string_view i_Bytes)
{
    enum Check : unsigned
    {
        Cache,
        Clone,
        Written,
        Count
    };
    const CheckChoice choice(i_Bytes, Count);
    const String path = InputFile::holding(i_Bytes);
    const ParsedFile parsed(path);
    if (choice.isDue(Cache))
    {
        checkCache(path, parsed);
    }
    if (parsed.m_Status != 0 || !parsed.m_pRoot)
    {
        return;
    }
    const unsigned missing = checkParsedTree(*parsed.m_pRoot);
    if (choice.isDue(Clone))
    {
        checkClone(*parsed.m_pRoot, written(*parsed.m_pRoot));
    }
    // What is written has no attribute twice. A document of XML 1.1 may hold what one of XML 1.0 must not.
    if (choice.isDue(Written) && missing == 0 && i_Bytes.find("1.1") == std::string_view::npos)
    {
        checkWritten(parsed, written(*parsed.m_pRoot));
    }
}
