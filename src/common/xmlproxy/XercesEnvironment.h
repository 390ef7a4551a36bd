#pragma once

/// The part of the environment that the parser library asks during a parse, as if it were not set.
///
/// The library refuses every document type while `XERCES_DISABLE_DTD` is 1. While one of these lives,
/// that is 0; at its end it is what it was. Other users of the library in the process see the same
/// meanwhile. Nothing is changed when the variable is not set to 1.
///
/// Threads: one at a time; other threads may read the environment.
/// Tested by: tests/common/xmlproxy/XercesEnvironmentTest.cpp
class XercesEnvironment
{
public:
    XercesEnvironment() noexcept;
    ~XercesEnvironment();
    XercesEnvironment(const XercesEnvironment&) = delete;
    XercesEnvironment& operator=(const XercesEnvironment&) = delete;

private:
    char* m_pEntry = nullptr; ///< of the environment; null when nothing was changed
};
