#pragma once

/// Hides the environment variable that the parser library reads during a parse.
///
/// The library rejects every document type declaration if `XERCES_DISABLE_DTD` is 1. The constructor sets the variable
/// to 0, and the destructor restores it. Other users of the library in the process see the change too. If the variable
/// is not 1, nothing changes.
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
    char* m_pEntry = nullptr; ///< in the environment; null if nothing was changed
};
