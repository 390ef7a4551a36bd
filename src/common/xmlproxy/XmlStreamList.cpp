#include "xmlproxy/XmlStreamList.h"

#include "xmlproxy/XmlDocumentFile.h"
#include "xmlproxy/XmlExpansionBudget.h"

#include <xercesc/util/XMLException.hpp>

#include <exception>
#include <utility>

class XmlStreamList::Guard final : public xercesc::BinInputStream
{
public:
    Guard(XmlStreamList& io_List, std::unique_ptr<xercesc::BinInputStream> i_pStream,
          // cppcheck-suppress passedByValue ; it is moved
          std::basic_string<XMLCh> i_SystemId = {}, const XmlDocumentFile* i_pFile = nullptr) noexcept
        : m_List(io_List),
          m_pNext(io_List.m_pFirst),
          m_pStream(std::move(i_pStream)),
          m_SystemId(std::move(i_SystemId)),
          m_pFile(i_pFile)
    {
        if (m_pNext)
        {
            m_pNext->m_pPrevious = this;
        }
        m_List.m_pFirst = this;
    }

    ~Guard() override
    {
        (m_pPrevious ? m_pPrevious->m_pNext : m_List.m_pFirst) = m_pNext;
        if (m_pNext)
        {
            m_pNext->m_pPrevious = m_pPrevious;
        }
    }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

    XMLFilePos curPos() const override { return m_pStream->curPos(); }

    XMLSize_t readBytes(XMLByte* const o_pBuffer, const XMLSize_t i_MaxToRead) override
    {
        if (m_pFirstFailure)
        {
            std::rethrow_exception(m_pFirstFailure);
        }
        const XMLSize_t bytes = readGuarded(o_pBuffer, i_MaxToRead);
        m_List.count(m_SystemId, bytes);
        return bytes;
    }

    const Guard* next() const noexcept { return m_pNext; }
    bool isOver(const XmlDocumentFile& i_File) const noexcept { return m_pFile && m_pFile->isSameFile(i_File); }

    const XMLCh* getContentType() const override { return m_pStream->getContentType(); }
    const XMLCh* getEncoding() const override { return m_pStream->getEncoding(); }

private:
    XMLSize_t readGuarded(XMLByte* const o_pBuffer, const XMLSize_t i_MaxToRead)
    {
        const bool first = !std::exchange(m_Started, true);
        try
        {
            return m_pStream->readBytes(o_pBuffer, i_MaxToRead);
        }
        catch (const xercesc::XMLException&)
        {
            if (!first)
            {
                throw;
            }
            m_pFirstFailure = std::current_exception();
            return 0;
        }
    }

    XmlStreamList& m_List;
    Guard* m_pPrevious = nullptr;
    Guard* m_pNext;
    std::unique_ptr<xercesc::BinInputStream> m_pStream;
    std::basic_string<XMLCh> m_SystemId; ///< empty for the document
    const XmlDocumentFile* m_pFile;      ///< of an entity; owned by the stream
    std::exception_ptr m_pFirstFailure;  ///< of the first read; what follows it would be data with a gap
    bool m_Started = false;
};

XmlStreamList::~XmlStreamList()
{
    while (m_pFirst)
    {
        delete m_pFirst; // NOLINT(clang-analyzer-cplusplus.NewDelete): it takes itself out of the list
    }
}

xercesc::BinInputStream* XmlStreamList::guard(std::unique_ptr<xercesc::BinInputStream> i_pStream)
{
    return new Guard(*this, std::move(i_pStream));
}

xercesc::BinInputStream* XmlStreamList::guardEntity(std::unique_ptr<xercesc::BinInputStream> i_pStream,
                                                    const XMLCh* i_pSystemId, const XmlDocumentFile& i_File)
{
    return new Guard(*this, std::move(i_pStream), i_pSystemId, &i_File);
}

bool XmlStreamList::isReading(const XmlDocumentFile& i_File) const noexcept
{
    for (const Guard* pGuard = m_pFirst; pGuard; pGuard = pGuard->next())
    {
        if (pGuard->isOver(i_File))
        {
            return true;
        }
    }
    return false;
}

void XmlStreamList::count(const std::basic_string<XMLCh>& i_SystemId, XMLSize_t i_Bytes)
{
    if (m_pBudget && i_SystemId.empty())
    {
        m_pBudget->addDocument(i_Bytes);
    }
    else if (m_pBudget)
    {
        m_pBudget->chargeExternal(i_SystemId.c_str(), i_Bytes);
    }
}
