#pragma once

#include <xercesc/util/BinInputStream.hpp>

#include <memory>
#include <string>

class XmlDocumentFile;
class XmlExpansionBudget;

/// The streams that the parser library receives during one parse.
///
/// The library reports and counts only failures after its first read from a stream, and it forgets a new stream if
/// memory runs out immediately. Therefore each stream is wrapped in a guard, which postpones a failure of the first
/// read to the next one, and this list deletes the guards that the library has forgotten. The guard also counts the
/// bytes for the parse's budget, if there is one.
///
/// Ownership: the budget is not owned and must outlive the streams. The library owns the guards, and a guard owns its
/// stream. The list must be destroyed after the library has finished; it then deletes the guards that are left.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XmlStreamListTest.cpp
class XmlStreamList
{
public:
    explicit XmlStreamList(XmlExpansionBudget* i_pBudget = nullptr) noexcept : m_pBudget(i_pBudget) {}
    ~XmlStreamList();
    XmlStreamList(const XmlStreamList&) = delete;
    XmlStreamList& operator=(const XmlStreamList&) = delete;

    /// Returns the stream of the document (not null) wrapped in a guard, which the caller must pass to the library.
    xercesc::BinInputStream* guard(std::unique_ptr<xercesc::BinInputStream> i_pStream);
    /// Same, for an external entity: its system identifier, and the file, which the stream owns.
    xercesc::BinInputStream* guardEntity(std::unique_ptr<xercesc::BinInputStream> i_pStream, const XMLCh* i_pSystemId,
                                         const XmlDocumentFile& i_File);
    /// Whether a stream over this file, by whatever name, still exists.
    bool isReading(const XmlDocumentFile& i_File) const noexcept;

private:
    class Guard;

    void count(const std::basic_string<XMLCh>& i_SystemId, XMLSize_t i_Bytes);

    Guard* m_pFirst = nullptr;
    XmlExpansionBudget* m_pBudget;
};
