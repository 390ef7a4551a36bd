#pragma once

#include <memory>
#include <stdexcept>

class SAXHandler;
class SAXParser;

/// The parser library is not available. `what()` names the file that could not be loaded, and says why.
class ParserLibraryError final : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The parser library. It is started once, for the first document that needs it, and then serves every later one.
///
/// Starting it takes much longer than reading a small document. Only the implementation of this class is linked with
/// the library. If the implementation is in a separate module next to the plug-in, starting loads the module and
/// stopping unloads it.
///
/// Ownership: the only object belongs to the process until `release`. The caller owns the parsers that it creates, and
/// must destroy them before.
/// Threads: one at a time; there are no locks.
/// Tested by: tests/common/xmlproxy/ParserLibraryTest.cpp, tests/host/plugin/ModuleTest.cpp
class ParserLibrary
{
public:
    virtual ~ParserLibrary() = default;
    ParserLibrary(const ParserLibrary&) = delete;
    ParserLibrary& operator=(const ParserLibrary&) = delete;

    /// Creates a parser that sends its events to \p i_pHandler, which is not owned and must outlive it. Never null.
    virtual std::unique_ptr<SAXParser> makeParser(SAXHandler* i_pHandler) = 0;

    /// The only object, created on first use. Throws `ParserLibraryError`, or `std::bad_alloc` if memory is exhausted;
    /// the next call then tries again.
    static ParserLibrary& instance();
    /// Stops the library; the next `instance` starts it again. May be called if the library is not started.
    static void release() noexcept;
    /// Finds out where the library is. Must be called while a relative path of the plug-in is still valid. May be
    /// called again.
    static void locate();

protected:
    ParserLibrary() noexcept = default;

private:
    /// Creates the object; throws the same as `instance`. This function and `locate` are defined by
    /// LinkedParserLibrary.cpp, for programs that are linked with the library, or by ParserModule.cpp, for programs
    /// that load it.
    static std::unique_ptr<ParserLibrary> start();

    static ParserLibrary* s_pInstance;
};
