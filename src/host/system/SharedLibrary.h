#pragma once

#include <string>

/// A library that is loaded while the program runs.
///
/// Ownership: the library is unloaded with the object; nothing obtained from it may be used then.
/// Threads: one at a time.
/// Tested by: tests/host/plugin/ModuleTest.cpp
class SharedLibrary
{
public:
    /// Any function; cast it to its own type.
    using Function = void (*)();

    /// \p i_Path is UTF-8 and taken from the current folder when relative, never searched for.
    /// Throws std::runtime_error with the system's reason.
    explicit SharedLibrary(const std::string& i_Path);
    ~SharedLibrary();
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;

    /// Null when the library has no such function.
    Function find(const char* i_Name) const noexcept;

private:
    void* m_pHandle;
};
