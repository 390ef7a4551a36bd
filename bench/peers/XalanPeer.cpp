// Xalan-C: its own source tree over Xerces-C, and an evaluation that compiles the expression each time.

#include "Peer.h"
#include "WideList.h"

#include <memory>
#include <stdexcept>
#include <xalanc/PlatformSupport/XSLException.hpp>
#include <xalanc/XPath/NodeRefList.hpp>
#include <xalanc/XPath/XObject.hpp>
#include <xalanc/XPath/XPathEvaluator.hpp>
#include <xalanc/XalanDOM/XalanDocument.hpp>
#include <xalanc/XalanSourceTree/XalanSourceTreeDOMSupport.hpp>
#include <xalanc/XalanSourceTree/XalanSourceTreeInit.hpp>
#include <xalanc/XalanSourceTree/XalanSourceTreeParserLiaison.hpp>
#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace
{

using namespace xalanc;

/// What can be made only once the libraries are initialised.
struct Engine
{
    XalanSourceTreeInit m_Tree;
    XalanSourceTreeDOMSupport m_Support;
    XalanSourceTreeParserLiaison m_Liaison;
    XPathEvaluator m_Evaluator;
    XalanDOMString m_Expression;
};

class XalanPeer final : public Peer
{
public:
    void start() override
    {
        xercesc::XMLPlatformUtils::Initialize();
        XPathEvaluator::initialize();
        m_pEngine = std::make_unique<Engine>();
        m_pEngine->m_Support.setParserLiaison(&m_pEngine->m_Liaison);
    }

    void load(const std::string& i_Path) override
    {
        const XalanDOMString path(i_Path.c_str());
        const xercesc::LocalFileInputSource source(path.c_str());
        m_pDocument = m_pEngine->m_Liaison.parseXMLStream(source);
        if (m_pDocument == nullptr)
        {
            throw std::runtime_error("cannot read " + i_Path);
        }
    }

    void unload() override
    {
        m_pDocument = nullptr;
        m_pEngine->m_Liaison.reset();
    }

    void prepare(const std::string& i_Expression) override
    {
        m_pEngine->m_Expression = XalanDOMString(i_Expression.c_str());
    }

    std::size_t query() override
    {
        const XObjectPtr pAnswer = answer();
        m_Values = WideList();
        if (pAnswer->getType() != XObject::eTypeNodeSet)
        {
            XalanDOMString text;
            pAnswer->str(m_pEngine->m_Evaluator.getExecutionContext(), text);
            add(text);
            return 1;
        }
        const NodeRefListBase& nodes = pAnswer->nodeset();
        for (NodeRefListBase::size_type i = 0; i < nodes.getLength(); ++i)
        {
            add(nodes.item(i)->getNodeValue());
        }
        return m_Values.count();
    }

    std::size_t evaluate() override
    {
        const XObjectPtr pAnswer = answer();
        return pAnswer->getType() == XObject::eTypeNodeSet ? pAnswer->nodeset().getLength() : 1;
    }

    std::vector<std::string> values() const override { return m_Values.narrow(); }

private:
    XObjectPtr answer()
    {
        Engine& engine = *m_pEngine;
        return engine.m_Evaluator.evaluate(engine.m_Support, m_pDocument, engine.m_Expression.c_str());
    }
    void add(const XalanDOMString& i_Text)
    {
        m_Values.add(std::basic_string_view<XalanDOMChar>(i_Text.c_str(), i_Text.length()));
    }

    std::unique_ptr<Engine> m_pEngine;
    XalanDocument* m_pDocument = nullptr;
    WideList m_Values;
};

} // namespace

extern "C" __attribute__((visibility("default"))) Peer* createPeer(const char*)
{
    return new XalanPeer;
}
