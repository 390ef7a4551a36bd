#pragma once

#include <string>

/// A library that is loaded at run time.
///
/// Ownership: the destructor unloads the library. Nothing obtained from it may be used afterwards.
/// Threads: one at a time.
/// Tested by: tests/host/plugin/ModuleTest.cpp
class SharedLibrary
{
public:
    /// Any function. The caller must cast it to its actual type.
    using Function = void (*)();

    /// \p i_Path is UTF-8. A relative path starts at the current folder; there is no search. Throws std::runtime_error
    /// with the system's reason if the library cannot be loaded.
    explicit SharedLibrary(const std::string& i_Path);
    ~SharedLibrary();
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;

    /// Returns null if the library has no such function.
    Function find(const char* i_Name) const noexcept;

private:
    void* m_pHandle;
};
