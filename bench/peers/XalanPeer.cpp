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

/// Up for as long as the peer lives, and first of its members.
struct Libraries
{
    Libraries()
    {
        xercesc::XMLPlatformUtils::Initialize();
        XPathEvaluator::initialize();
    }
    ~Libraries()
    {
        XPathEvaluator::terminate();
        xercesc::XMLPlatformUtils::Terminate();
    }
    Libraries(const Libraries&) = delete;
    Libraries& operator=(const Libraries&) = delete;
};

class XalanPeer final : public Peer
{
public:
    void load(const std::string& i_Path) override
    {
        m_Support.setParserLiaison(&m_Liaison);
        const XalanDOMString path(i_Path.c_str());
        const xercesc::LocalFileInputSource source(path.c_str());
        m_pDocument = m_Liaison.parseXMLStream(source);
        if (m_pDocument == nullptr)
            throw std::runtime_error("cannot read " + i_Path);
    }

    void unload() override
    {
        m_pDocument = nullptr;
        m_Liaison.reset();
    }

    void prepare(const std::string& i_Expression) override { m_Expression = XalanDOMString(i_Expression.c_str()); }

    std::size_t query() override
    {
        const XObjectPtr pAnswer = m_Evaluator.evaluate(m_Support, m_pDocument, m_Expression.c_str());
        m_Values = WideList();
        if (pAnswer->getType() != XObject::eTypeNodeSet)
        {
            XalanDOMString text;
            pAnswer->str(m_Evaluator.getExecutionContext(), text);
            add(text);
            return 1;
        }
        const NodeRefListBase& nodes = pAnswer->nodeset();
        for (NodeRefListBase::size_type i = 0; i < nodes.getLength(); ++i)
            add(nodes.item(i)->getNodeValue());
        return m_Values.count();
    }

    std::size_t evaluate() override
    {
        const XObjectPtr pAnswer = m_Evaluator.evaluate(m_Support, m_pDocument, m_Expression.c_str());
        return pAnswer->getType() == XObject::eTypeNodeSet ? pAnswer->nodeset().getLength() : 1;
    }

    std::vector<std::string> values() const override { return m_Values.narrow(); }

private:
    void add(const XalanDOMString& i_Text)
    {
        m_Values.add(std::basic_string_view<XalanDOMChar>(i_Text.c_str(), i_Text.length()));
    }

    Libraries m_Libraries;
    XalanSourceTreeInit m_Tree;
    XalanSourceTreeDOMSupport m_Support;
    XalanSourceTreeParserLiaison m_Liaison;
    XPathEvaluator m_Evaluator;
    XalanDocument* m_pDocument = nullptr;
    XalanDOMString m_Expression;
    WideList m_Values;
};

} // namespace

extern "C" __attribute__((visibility("default"))) Peer* createPeer(const char*)
{
    return new XalanPeer;
}
