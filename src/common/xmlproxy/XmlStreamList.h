#pragma once

#include <xercesc/util/BinInputStream.hpp>

#include <memory>
#include <string>

class XmlDocumentFile;
class XmlExpansionBudget;

/// The streams that are handed to the parser library for one parse.
///
/// The library reports and counts only what goes wrong after its first read from a stream; and it
/// forgets a stream that it has been given when memory runs out at once. So each stream gets a
/// guard around it, which puts a failure of the first read off to the others, and whose end this
/// list sees to. The guard also counts the bytes for the parse's budget, if there is one.
///
/// Ownership: the budget is not owned and outlives the streams. The library owns the guards and a guard its stream; the
/// list deletes the guards that are left at its end, when the library is through. Threads: one at a time. Tested by:
/// tests/common/xmlproxy/XmlStreamListTest.cpp
class XmlStreamList
{
public:
    explicit XmlStreamList(XmlExpansionBudget* i_pBudget = nullptr) noexcept : m_pBudget(i_pBudget) {}
    ~XmlStreamList();
    XmlStreamList(const XmlStreamList&) = delete;
    XmlStreamList& operator=(const XmlStreamList&) = delete;

    /// The stream of the document (required) with a guard around it.
    xercesc::BinInputStream* guard(std::unique_ptr<xercesc::BinInputStream> i_pStream);
    /// The same for an external entity: its system identifier, and the file, which the stream owns.
    xercesc::BinInputStream* guardEntity(std::unique_ptr<xercesc::BinInputStream> i_pStream, const XMLCh* i_pSystemId,
                                         const XmlDocumentFile& i_File);
    /// Whether a stream over this file, by whatever name, has not come to its end of life.
    bool isReading(const XmlDocumentFile& i_File) const noexcept;

private:
    class Guard;

    void count(const std::basic_string<XMLCh>& i_SystemId, XMLSize_t i_Bytes);

    Guard* m_pFirst = nullptr;
    XmlExpansionBudget* m_pBudget;
};
