#pragma once

#include <memory>
#include <stdexcept>

class SAXHandler;
class SAXParser;

/// The parser library cannot be had. `what()` names the file that could not be loaded, and says why.
class ParserLibraryError final : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The parser library in use: it is started once, for the first document that needs it, and serves every later one.
///
/// Starting it takes much longer than reading a small document. Nothing but its implementation is linked with the
/// library: where the plug-in keeps that in a module beside itself, starting loads the module and stopping unloads it.
///
/// Ownership: the one object belongs to the process until `release`; the parsers that it makes belong to the caller and
/// end before it.
/// Threads: one at a time, nothing is locked.
/// Tested by: tests/common/xmlproxy/ParserLibraryTest.cpp, tests/host/plugin/ModuleTest.cpp
class ParserLibrary
{
public:
    virtual ~ParserLibrary() = default;
    ParserLibrary(const ParserLibrary&) = delete;
    ParserLibrary& operator=(const ParserLibrary&) = delete;

    /// A parser that sends its events to \p i_pHandler, which is not owned and outlives it. Never null.
    virtual std::unique_ptr<SAXParser> makeParser(SAXHandler* i_pHandler) = 0;

    /// The one object, made on first use. Throws `ParserLibraryError`, or `std::bad_alloc` when memory is exhausted;
    /// the next call tries again.
    static ParserLibrary& instance();
    /// Stops the library; the next `instance` starts it again. May be called when it is not in use.
    static void release() noexcept;
    /// Finds out where the library is, as long as a relative path of the plug-in still leads there. May be called
    /// again.
    static void locate();

protected:
    ParserLibrary() noexcept = default;

private:
    /// A new object; throws as `instance` does. This and `locate` are defined by LinkedParserLibrary.cpp, for programs
    /// that are linked with the library, or by ParserModule.cpp, for those that load it.
    static std::unique_ptr<ParserLibrary> start();

    static ParserLibrary* s_pInstance;
};
