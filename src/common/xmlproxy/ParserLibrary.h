#pragma once

#include <memory>

class SAXHandler;
class SAXParser;

/// The parser library in use: it is started once, for the first document that needs it, and serves every later one.
///
/// Starting it takes much longer than reading a small document.
///
/// Ownership: the one object belongs to the process until `release`; the parsers that it makes belong to the caller and
/// end before it.
/// Threads: one at a time, nothing is locked.
/// Tested by: tests/common/xmlproxy/ParserLibraryTest.cpp
class ParserLibrary
{
public:
    virtual ~ParserLibrary() = default;
    ParserLibrary(const ParserLibrary&) = delete;
    ParserLibrary& operator=(const ParserLibrary&) = delete;

    /// A parser that sends its events to \p i_pHandler, which is not owned and outlives it. Never null.
    virtual std::unique_ptr<SAXParser> makeParser(SAXHandler* i_pHandler) = 0;

    /// The one object, made on first use. `std::bad_alloc` when memory is exhausted; the next call tries again.
    static ParserLibrary& instance();
    /// Stops the library; the next `instance` starts it again. May be called when it is not in use.
    static void release() noexcept;

protected:
    ParserLibrary() noexcept = default;

private:
    static ParserLibrary* s_pInstance;
};
