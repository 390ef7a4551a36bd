#include "Support.h"

#include "boundary/XmlFileParser.h"
#include "boundary/XmlNodeSink.h"
#include "compile/XPathExpressionsParser.h"
#include "values/XPathOutputList.h"
#include "xmlproxy/Node.h"

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <tuple>

namespace
{

struct Document
{
    String file;
    DocumentFacts facts;
    std::unique_ptr<Node> pTree;
};

/// All documents of the run, in a folder of their own.
class Documents
{
public:
    Documents() : m_Folder((std::filesystem::temp_directory_path() / "stage-bench-XXXXXX").string())
    {
        require(mkdtemp(m_Folder.data()) != nullptr, "a folder for the documents");
    }
    ~Documents()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_Folder, ignored);
    }
    Documents(const Documents&) = delete;
    Documents& operator=(const Documents&) = delete;

    Document& get(Shape i_Shape, DocumentSize i_Size)
    {
        Document& document = m_Documents[{i_Shape, i_Size.elements, i_Size.bytes}];
        if (document.file.isEmpty())
        {
            const std::string path = m_Folder + "/" + std::to_string(m_Documents.size()) + ".xml";
            document.facts = writeDocument(path, i_Shape, i_Size);
            document.file = wide(path);
        }
        return document;
    }

private:
    std::string m_Folder;
    std::map<std::tuple<Shape, std::size_t, std::size_t>, Document> m_Documents;
};

Document& document(Shape i_Shape, DocumentSize i_Size)
{
    static Documents s_Documents;
    return s_Documents.get(i_Shape, i_Size);
}

} // namespace

void require(bool i_IsTrue, std::string_view i_What)
{
    if (i_IsTrue)
    {
        return;
    }
    std::cerr << "wrong before it was timed: " << i_What << '\n';
    std::exit(EXIT_FAILURE);
}

String wide(std::string_view i_Text)
{
    return {i_Text.data(), i_Text.size()};
}

const String& documentFile(Shape i_Shape, DocumentSize i_Size)
{
    return document(i_Shape, i_Size).file;
}

DocumentFacts documentFacts(Shape i_Shape, DocumentSize i_Size)
{
    return document(i_Shape, i_Size).facts;
}

Node& documentTree(Shape i_Shape, DocumentSize i_Size)
{
    std::unique_ptr<Node>& pTree = document(i_Shape, i_Size).pTree;
    if (!pTree)
    {
        pTree = parseDocument(i_Shape, i_Size);
    }
    return *pTree;
}

std::unique_ptr<Node> parseDocument(Shape i_Shape, DocumentSize i_Size)
{
    XmlPlugin::XmlNodeSink sink;
    const XmlPlugin::XmlFileParser parser(documentFile(i_Shape, i_Size), sink);
    std::unique_ptr<Node> pRoot(sink.release());
    require(parser.status() == 0 && pRoot, "a document is read");
    return pRoot;
}

std::size_t countElements(const Node& i_Root)
{
    std::size_t count = 0;
    for (const Node* pNode = &i_Root; pNode != nullptr;)
    {
        count += pNode->getType() == Node::ElementNode ? 1U : 0U;
        const Node* pNext = pNode->children().front();
        for (; pNext == nullptr && pNode != &i_Root; pNode = pNode->getParent())
        {
            if (pNode->nextSibling() != nullptr)
            {
                pNext = pNode->nextSibling();
                break;
            }
        }
        pNode = pNext;
    }
    return count;
}

std::string valueOf(const char* i_Expression, Node* i_pRoot)
{
    XmlPlugin::XPathExpressionsParser parser(wide(i_Expression));
    XmlPlugin::XPathOutputList records;
    require(parser.runParser(i_pRoot) == 0 && parser.getValues(records) == 0, i_Expression);
    require(records.size() == 1, i_Expression);
    return records.front()->m_Value.toNarrow();
}
