#pragma once

#include <xercesc/util/BinInputStream.hpp>

#include <memory>

/// The streams that are handed to the parser library for one parse.
///
/// The library reports and counts only what goes wrong after its first read from a stream; and it
/// forgets a stream that it has been given when memory runs out at once. So each stream gets a
/// guard around it, which puts a failure of the first read off to the others, and whose end this
/// list sees to.
///
/// Ownership: the library owns the guards and a guard its stream; the list deletes the guards that
/// are left at its end, when the library is through.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XmlStreamListTest.cpp
class XmlStreamList
{
public:
    XmlStreamList() = default;
    ~XmlStreamList();
    XmlStreamList(const XmlStreamList&) = delete;
    XmlStreamList& operator=(const XmlStreamList&) = delete;

    /// \p i_pStream (required) with a guard around it.
    xercesc::BinInputStream* guard(std::unique_ptr<xercesc::BinInputStream> i_pStream);

private:
    class Guard;

    Guard* m_pFirst = nullptr;
};
