#pragma once

#include "xmlproxy/NodeSink.h"

namespace XmlPlugin
{

/// Receives the tree of one parse and writes the parser's messages to the trace.
///
/// Ownership: owns the root until it is released.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/boundary/XmlNodeSinkTest.cpp
class XmlNodeSink final : public NodeSink
{
public:
    XmlNodeSink() noexcept = default;
    ~XmlNodeSink() override;
    XmlNodeSink(const XmlNodeSink&) = delete;
    XmlNodeSink& operator=(const XmlNodeSink&) = delete;

    /// Takes ownership; a root that was there before is destroyed. 0.
    TErrorCode setRoot(Node* i_pRoot) override;
    /// One trace record each. 0.
    TErrorCode onWarning(const String& i_Message, int i_Line) override;
    TErrorCode onError(const String& i_Message, int i_Line) override;
    TErrorCode onCriticalError(const String& i_Message, int i_Line) override;

    /// The root, now the caller's; null when there is none.
    Node* release() noexcept;

private:
    Node* m_pRoot = nullptr;
};

} // namespace XmlPlugin
