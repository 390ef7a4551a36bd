#include "boundary/XmlNodeSink.h"

#include "values/XmlTrace.h"
#include "xmlproxy/Node.h"

#include <utility>

XML_TRACE_SOURCE(L"XmlNodeSink")

namespace XmlPlugin
{

XmlNodeSink::~XmlNodeSink()
{
    delete m_pRoot;
}

TErrorCode XmlNodeSink::setRoot(Node* i_pRoot)
{
    delete std::exchange(m_pRoot, i_pRoot);
    return 0;
}

Node* XmlNodeSink::release() noexcept
{
    return std::exchange(m_pRoot, nullptr);
}

TErrorCode XmlNodeSink::onWarning(const String& i_Message, int i_Line)
{
    const Trace trace(s_Tracer, L"XmlNodeSink::onWarning(const String& ,int)");
    XML_TRACE_AT(trace, TraceWarning, 55)
        << L"Warning parsing XML file at line " << i_Line << L" message is: " << i_Message << Trace::end;
    return 0;
}

TErrorCode XmlNodeSink::onError(const String& i_Message, int i_Line)
{
    const Trace trace(s_Tracer, L"XmlNodeSink::onError(const String& ,int)");
    XML_TRACE_AT(trace, TraceError, 62) << L"Error parsing XML file at line " << i_Line << L" message is: " << i_Message
                                        << Trace::end;
    return 0;
}

TErrorCode XmlNodeSink::onCriticalError(const String& i_Message, int i_Line)
{
    const Trace trace(s_Tracer, L"XmlNodeSink::onCriticalError(const String& ,int)");
    XML_TRACE_AT(trace, TraceError, 69) << L"Critical error parsing XML file at line " << i_Line << L" message is: "
                                        << i_Message << Trace::end;
    return 0;
}

} // namespace XmlPlugin
