#include "xmlproxy/AttributeTable.h"

#include "xmlproxy/XmlErrorCodes.h"

#include <gtest/gtest.h>

#include <string>

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

class SmallTable : public testing::Test
{
protected:
    SmallTable() : m_Table(1)
    {
        m_Table.add(L"id", L"7", L"0");
        m_Table.add(L"Id", L"", L"1");
    }

    AttributeTable m_Table;
};

TEST_F(SmallTable, KeepsTheOrderInWhichItWasFilled)
{
    EXPECT_EQ(L"id=7#0 Id=#1", print(m_Table));
    EXPECT_EQ(2, m_Table.count());
    EXPECT_EQ(1, m_Table.blockSize());
}

TEST_F(SmallTable, RefusesADuplicateAndStaysAsItWas)
{
    EXPECT_EQ(XML_ERROR_DUPLICATE, m_Table.add(L"id", L"8", L"2"));
    EXPECT_EQ(L"id=7#0 Id=#1", print(m_Table));
}

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
    String value(L"untouched");
    String ordinal(L"untouched");
    EXPECT_EQ(row.code, m_Table.getByName(row.wanted, value, ordinal));
    EXPECT_EQ(String(row.value), value);
    EXPECT_EQ(String(row.ordinal), ordinal);
    EXPECT_EQ(row.index, m_Table.indexOf(String(row.wanted)));
    EXPECT_EQ(row.index, m_Table.indexOf(XmlName(row.wanted)));
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
    String name(L"untouched");
    String value(L"untouched");
    m_Table.getAt(row.index, name, value);
    EXPECT_EQ(String(row.attribute), name);
    EXPECT_EQ(String(row.value), value);
    EXPECT_EQ(row.view, m_Table.nameAt(row.index));
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

TEST_P(AttributeTableSize, FindsEveryNameAfterReserve)
{
    AttributeTable table(1);
    table.reserve(GetParam(), 10, 10, 10);
    fillAndFind(table, GetParam());
}

INSTANTIATE_TEST_SUITE_P(Rows, AttributeTableSize, testing::Values(1, 31, 32, 33, 64, 65, 100, 128, 129, 100000));

} // namespace
