// libxml2: its document tree, and an evaluation that compiles the expression each time.

#include "Peer.h"
#include "WideList.h"

#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <memory>
#include <stdexcept>

namespace
{

struct Free
{
    void operator()(xmlDoc* i_pDocument) const { xmlFreeDoc(i_pDocument); }
    void operator()(xmlXPathContext* i_pContext) const { xmlXPathFreeContext(i_pContext); }
    void operator()(xmlXPathObject* i_pObject) const { xmlXPathFreeObject(i_pObject); }
    void operator()(xmlChar* i_pText) const { xmlFree(i_pText); }
};

template <class Type>
using Owned = std::unique_ptr<Type, Free>;

class LibXmlPeer final : public Peer
{
public:
    void load(const std::string& i_Path) override
    {
        m_pDocument.reset(xmlReadFile(i_Path.c_str(), nullptr, XML_PARSE_HUGE | XML_PARSE_COMPACT | XML_PARSE_NONET));
        if (!m_pDocument)
        {
            throw std::runtime_error("cannot read " + i_Path);
        }
        m_pContext.reset(xmlXPathNewContext(m_pDocument.get()));
    }

    void unload() override
    {
        m_pContext.reset();
        m_pDocument.reset();
    }

    void prepare(const std::string& i_Expression) override { m_Expression = i_Expression; }

    std::size_t query() override
    {
        const Owned<xmlXPathObject> pAnswer = answer();
        m_Values = WideList();
        if (pAnswer->type != XPATH_NODESET)
        {
            const Owned<xmlChar> pText(xmlXPathCastToString(pAnswer.get()));
            add(pText.get());
            return 1;
        }
        for (int i = 0; pAnswer->nodesetval != nullptr && i < pAnswer->nodesetval->nodeNr; ++i)
        {
            addValue(*pAnswer->nodesetval->nodeTab[i]);
        }
        return m_Values.count();
    }

    std::size_t evaluate() override
    {
        const Owned<xmlXPathObject> pAnswer = answer();
        if (pAnswer->type != XPATH_NODESET)
        {
            return 1;
        }
        return pAnswer->nodesetval == nullptr ? 0 : static_cast<std::size_t>(pAnswer->nodesetval->nodeNr);
    }

    std::vector<std::string> values() const override { return m_Values.narrow(); }

private:
    Owned<xmlXPathObject> answer() const
    {
        Owned<xmlXPathObject> pAnswer(
            xmlXPathEvalExpression(reinterpret_cast<const xmlChar*>(m_Expression.c_str()), m_pContext.get()));
        if (!pAnswer)
        {
            throw std::runtime_error("libxml2 refuses " + m_Expression);
        }
        return pAnswer;
    }

    /// An attribute's value is one text node, which needs no copy of libxml2's own; else it makes one.
    void addValue(xmlNode& i_Node)
    {
        const xmlNode* pText = i_Node.children;
        if (i_Node.type == XML_ATTRIBUTE_NODE && pText != nullptr && pText->next == nullptr &&
            pText->type == XML_TEXT_NODE)
        {
            add(pText->content);
            return;
        }
        const Owned<xmlChar> pContent(xmlNodeGetContent(&i_Node));
        add(pContent.get());
    }

    void add(const xmlChar* i_Text) { m_Values.add(std::string_view(reinterpret_cast<const char*>(i_Text))); }

    Owned<xmlDoc> m_pDocument;
    Owned<xmlXPathContext> m_pContext;
    std::string m_Expression;
    WideList m_Values;
};

} // namespace

extern "C" __attribute__((visibility("default"))) Peer* createPeer(const char*)
{
    return new LibXmlPeer;
}
