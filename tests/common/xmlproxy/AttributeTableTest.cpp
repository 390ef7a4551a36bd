#include "xmlproxy/AttributeTable.h"

#include "TestTrees.h"
#include "xmlproxy/XmlErrorCodes.h"
#include "xmlproxy/XmlTreeMemory.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace
{

/// `name=value#ordinal`, in index order.
std::wstring print(const AttributeTable& i_Table)
{
    std::wstring text;
    for (int index = 0; index < i_Table.count(); ++index)
    {
        text += index > 0 ? L" " : L"";
        text += i_Table.nameAt(index);
        text += L"=";
        text += i_Table.valueAt(index);
        text += L"#";
        text += i_Table.ordinalAt(index);
    }
    return text;
}

enum Kind
{
    Filled,  ///< by `add`
    Packed,  ///< by `create`
    Unpacked ///< by `create`, then added to
};

/// One of each kind, with the same attributes: `id` is "7" and `Id` is empty.
class SmallTable : public testing::Test
{
protected:
    SmallTable() : m_Filled(1)
    {
        m_Filled.add(L"id", L"7", L"0");
        m_Filled.add(L"Id", L"", L"1");
        m_Memory.startTag(u"a");
        const XmlName* pFirst = m_Memory.addAttribute(u"id");
        const XmlName* pSecond = m_Memory.addAttribute(u"Id");
        const std::vector<PackedAttributes::Source> sources{{pFirst, u"7", 1}, {pSecond, u"", 0}};
        m_pPacked.reset(AttributeTable::create(m_Memory, sources, 0));
        m_pUnpacked.reset(AttributeTable::create(m_Memory, {sources.data(), 1}, 0));
        m_pUnpacked->add(L"Id", L"", L"1");
    }

    AttributeTable& table(Kind i_Kind)
    {
        return i_Kind == Filled ? m_Filled : i_Kind == Packed ? *m_pPacked : *m_pUnpacked;
    }

private:
    XmlTreeMemory m_Memory;
    AttributeTable m_Filled;
    std::unique_ptr<AttributeTable> m_pPacked;
    std::unique_ptr<AttributeTable> m_pUnpacked;
};

class TableOfAnyKind : public SmallTable, public testing::WithParamInterface<Kind>
{
};

TEST_P(TableOfAnyKind, KeepsTheOrderInWhichItWasFilled)
{
    const AttributeTable& filled = table(GetParam());
    EXPECT_EQ(L"id=7#0 Id=#1", print(filled));
    EXPECT_EQ(2, filled.count());
    EXPECT_EQ(1, filled.blockSize());
    EXPECT_EQ(0U, filled.orderAt(0));
    EXPECT_EQ(1U, filled.orderAt(1));
    EXPECT_EQ(GetParam() != Filled, filled.isInMemory());
}

TEST_P(TableOfAnyKind, RefusesADuplicateAndStaysAsItWas)
{
    EXPECT_EQ(XML_ERROR_DUPLICATE, table(GetParam()).add(L"id", L"8", L"2"));
    EXPECT_EQ(L"id=7#0 Id=#1", print(table(GetParam())));
}

TEST_P(TableOfAnyKind, TakesAnotherAttribute)
{
    EXPECT_EQ(XML_SUCCESS, table(GetParam()).add(L"x", L"8", L"12"));
    EXPECT_EQ(L"id=7#0 Id=#1 x=8#12", print(table(GetParam())));
    EXPECT_EQ(12U, table(GetParam()).orderAt(2));
}

TEST_P(TableOfAnyKind, HasNothingOutsideItsCount)
{
    for (const int index : {-1, 2, 1000})
    {
        EXPECT_TRUE(table(GetParam()).nameAt(index).empty());
        EXPECT_TRUE(table(GetParam()).valueAt(index).empty());
        EXPECT_TRUE(table(GetParam()).ordinalAt(index).empty());
        EXPECT_EQ(0U, table(GetParam()).orderAt(index));
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, TableOfAnyKind, testing::Values(Filled, Packed, Unpacked));

struct NameRow
{
    const char* name;
    const wchar_t* wanted;
    TErrorCode code;
    int index;
    const wchar_t* value;
    const wchar_t* ordinal;
};

const NameRow s_NameRows[] = {
    {"present", L"id", XML_SUCCESS, 0, L"7", L"0"},
    {"other_case", L"Id", XML_SUCCESS, 1, L"", L"1"},
    {"absent", L"ID", XML_ERROR_NOT_FOUND, -1, L"untouched", L"untouched"},
    {"prefix", L"i", XML_ERROR_NOT_FOUND, -1, L"untouched", L"untouched"},
    {"longer", L"id2", XML_ERROR_NOT_FOUND, -1, L"untouched", L"untouched"},
    {"empty", L"", XML_ERROR_NOT_FOUND, -1, L"untouched", L"untouched"},
};

class TableByName : public SmallTable, public testing::WithParamInterface<NameRow>
{
};

TEST_P(TableByName, FindsTheExactName)
{
    const NameRow& row = GetParam();
    for (const Kind kind : {Filled, Packed, Unpacked})
    {
        SCOPED_TRACE(kind);
        String value(L"untouched");
        String ordinal(L"untouched");
        EXPECT_EQ(row.code, table(kind).getByName(row.wanted, value, ordinal));
        EXPECT_EQ(String(row.value), value);
        EXPECT_EQ(String(row.ordinal), ordinal);
        EXPECT_EQ(row.index, table(kind).indexOf(String(row.wanted)));
        EXPECT_EQ(row.index, table(kind).indexOf(XmlName(row.wanted)));
        EXPECT_EQ(row.index, table(kind).indexOf(XmlNameView(row.wanted)));
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, TableByName, testing::ValuesIn(s_NameRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

struct IndexRow
{
    const char* name;
    int index;
    const wchar_t* attribute;
    const wchar_t* value;
    const wchar_t* view;
};

const IndexRow s_IndexRows[] = {
    {"first", 0, L"id", L"7", L"id"},
    {"last", 1, L"Id", L"", L"Id"},
    {"at_count", 2, L"untouched", L"untouched", L""},
    {"far_beyond", 1000, L"untouched", L"untouched", L""},
    {"negative_is_first", -1, L"id", L"7", L""},
};

class TableByIndex : public SmallTable, public testing::WithParamInterface<IndexRow>
{
};

TEST_P(TableByIndex, CopiesWhatIsThere)
{
    const IndexRow& row = GetParam();
    for (const Kind kind : {Filled, Packed, Unpacked})
    {
        SCOPED_TRACE(kind);
        String name(L"untouched");
        String value(L"untouched");
        table(kind).getAt(row.index, name, value);
        EXPECT_EQ(String(row.attribute), name);
        EXPECT_EQ(String(row.value), value);
        EXPECT_EQ(row.view, table(kind).nameAt(row.index));
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, TableByIndex, testing::ValuesIn(s_IndexRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

TEST(AttributeTable, EmptyFindsNothing)
{
    const AttributeTable table(1);
    String value(L"untouched");
    String ordinal(L"untouched");
    EXPECT_EQ(XML_ERROR_NOT_FOUND, table.getByName(L"id", value, ordinal));
    table.getAt(0, value, ordinal);
    table.getAt(-1, value, ordinal);
    EXPECT_EQ(String(L"untouched"), value);
    EXPECT_EQ(String(L"untouched"), ordinal);
    EXPECT_EQ(-1, table.indexOf(L"id"));
    EXPECT_TRUE(table.valueAt(0).empty());
    EXPECT_TRUE(table.ordinalAt(-1).empty());
}

TEST(AttributeTable, EmptyOneOfATreeIsLikeAnyOther)
{
    XmlTreeMemory memory;
    const std::unique_ptr<AttributeTable> pTable(AttributeTable::create(memory, {}, 3));
    EXPECT_EQ(0, pTable->count());
    EXPECT_EQ(1, pTable->blockSize());
    EXPECT_EQ(-1, pTable->indexOf(String(L"id")));
    EXPECT_EQ(-1, pTable->indexOf(XmlName(L"id")));
    EXPECT_TRUE(pTable->nameAt(0).empty() && pTable->valueAt(0).empty() && pTable->ordinalAt(0).empty());
    EXPECT_EQ(XML_SUCCESS, pTable->add(L"id", L"7", L"4"));
    EXPECT_EQ(L"id=7#4", print(*pTable));
    EXPECT_TRUE(memory.hasOthers());
}

TEST(AttributeTable, OrdinalsOfATreeAreDecimal)
{
    XmlTreeMemory memory;
    const XmlName& name = memory.startTag(u"a");
    const std::vector<PackedAttributes::Source> sources{{&name, u"", 0}};
    for (const std::uint32_t ordinal : {0U, 9U, 10U, 4294967295U})
    {
        const std::unique_ptr<AttributeTable> pTable(AttributeTable::create(memory, sources, ordinal));
        EXPECT_EQ(std::to_wstring(ordinal), pTable->ordinalAt(0));
        EXPECT_EQ(ordinal, pTable->orderAt(0));
    }
}

/// Fills a table with `i_Count` attributes and checks every name against it, and one that is absent.
void fillAndFind(AttributeTable& io_Table, int i_Count)
{
    for (int index = 0; index < i_Count; ++index)
    {
        const String number = String::valueOf(index);
        ASSERT_EQ(XML_SUCCESS, io_Table.add(L"n" + number, L"v" + number, number));
    }
    EXPECT_EQ(XML_ERROR_DUPLICATE, io_Table.add(L"n0", L"", L""));
    EXPECT_EQ(XML_ERROR_DUPLICATE, io_Table.add(L"n" + String::valueOf(i_Count - 1), L"", L""));
    ASSERT_EQ(i_Count, io_Table.count());
    String value;
    String ordinal;
    for (int index = i_Count - 1; index >= 0; --index)
    {
        const String number = String::valueOf(index);
        ASSERT_EQ(XML_SUCCESS, io_Table.getByName(L"n" + number, value, ordinal));
        ASSERT_EQ(L"v" + number, value);
        ASSERT_EQ(number, ordinal);
    }
    EXPECT_EQ(XML_ERROR_NOT_FOUND, io_Table.getByName(L"n", value, ordinal));
    EXPECT_EQ(-1, io_Table.indexOf(L"n" + String::valueOf(i_Count)));
}

using AttributeTableSize = testing::TestWithParam<int>;

TEST_P(AttributeTableSize, FindsEveryName)
{
    AttributeTable table(1);
    fillAndFind(table, GetParam());
}

INSTANTIATE_TEST_SUITE_P(Rows, AttributeTableSize, testing::Values(1, 31, 32, 33, 64, 65, 100, 128, 129, 100000));

} // namespace
