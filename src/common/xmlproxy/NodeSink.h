#pragma once

#include "base/ErrorCode.h"
#include "base/String.h"

class Node;

/// The receiver of what a parse produces: finished trees and the parser's messages.
///
/// Ownership: its callers do not own it.
/// Threads: called on the thread that parses.
/// Tested by: tests/common/xmlproxy/DefaultSAXHandlerTest.cpp
class NodeSink
{
public:
    /// Takes ownership of a finished tree, which is not null. Called at the end tag of its root: once for a whole
    /// document, or, when outer levels are skipped, once for each element of the first level that is built. The result
    /// is ignored.
    virtual TErrorCode setRoot(Node* i_pRoot) = 0; // slot 0
    /// Receives a message of the parser and its line, counted from 1; 0 when there is none. Cannot stop the parse: the
    /// results are ignored.
    virtual TErrorCode onWarning(const String& /*i_Message*/, int /*i_Line*/) { return 0; }       // slot 1
    virtual TErrorCode onError(const String& /*i_Message*/, int /*i_Line*/) { return 0; }         // slot 2
    virtual TErrorCode onCriticalError(const String& /*i_Message*/, int /*i_Line*/) { return 0; } // slot 3
    virtual ~NodeSink() = default;                                                                // slot 4
};
