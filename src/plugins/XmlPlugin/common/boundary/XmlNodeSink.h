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

    /// Takes ownership of the root and destroys a previous one. Returns 0.
    TErrorCode setRoot(Node* i_pRoot) override;
    /// Each writes one trace record and returns 0.
    TErrorCode onWarning(const String& i_Message, int i_Line) override;
    TErrorCode onError(const String& i_Message, int i_Line) override;
    TErrorCode onCriticalError(const String& i_Message, int i_Line) override;

    /// Passes ownership of the root to the caller; null if there is none.
    Node* release() noexcept;

private:
    Node* m_pRoot = nullptr;
};

} // namespace XmlPlugin
