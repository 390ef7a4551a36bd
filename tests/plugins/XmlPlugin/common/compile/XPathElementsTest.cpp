#include "compile/XPathElements.h"

#include "functions/XPathOperator.h"
#include "values/XPathArgument.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

using namespace XmlPlugin;

namespace
{

TEST(XPathElements, MakesOperandsOfLentTexts)
{
    XPathElements elements;
    const std::wstring_view text = elements.keep(L"'a", L"b", L"c'");
    EXPECT_EQ(text, L"'abc'");
    XPathArgument& operand = elements.addArgument(text);
    EXPECT_EQ(operand.textView().data(), text.data());
    EXPECT_EQ(operand.GetDataType(), StringType);
    EXPECT_EQ(operand.GetExpressionString(), String(L"abc"));
    EXPECT_EQ(operand.text(), String(L"'abc'"));
    EXPECT_EQ(elements.addArgument(L"'12'").GetExpressionNumb(), 12.0);
    EXPECT_EQ(elements.addArgument(L"a/@b").GetDataType(), NodeSetType);
    XPathArgument& number = elements.addNumber(L"042", 42.0);
    EXPECT_EQ(number.GetDataType(), NumberType);
    EXPECT_EQ(number.GetExpressionNumb(), 42.0);
    EXPECT_EQ(number.GetExpressionString(), String(L"042"));
}

TEST(XPathElements, AnOwnTextTakesTheLentOnesPlace)
{
    XPathElements elements;
    XPathArgument& operand = elements.addArgument(L"7");
    operand.setExpression(String(L"longer than before"));
    EXPECT_EQ(operand.textView(), L"longer than before");
    EXPECT_EQ(operand.GetExpressionNumb(), 7.0);
}

TEST(XPathElements, MakesOperatorsAndTheirFunctionsWhenEvaluated)
{
    XPathElements elements;
    XPathExpression& plus = XPathExpression::create(L"+", {}, elements);
    ASSERT_TRUE(plus.isOperator());
    EXPECT_EQ(plus.getPriority(), 3);
    EXPECT_FALSE(plus.isInfix());
    EXPECT_EQ(plus.getArgumentsCount(), 2);
    EXPECT_EQ(plus.getOutputArgument(), nullptr);
    auto& call = static_cast<XPathOperator&>(XPathExpression::create(L"concat", L"(", elements));
    EXPECT_TRUE(call.isInfix());
    EXPECT_EQ(call.getArgumentsCount(), 1);
    call.setArgumentsCount(2);
    EXPECT_EQ(call.getArgumentsCount(), 2);

    XPathArgument& one = elements.addArgument(L"1");
    XPathArgument& two = elements.addArgument(L"2");
    EXPECT_EQ(plus.evaluate({&two, &one}), 0);
    EXPECT_EQ(plus.getOutputArgument()->GetExpressionString(), String(L"3"));
    EXPECT_EQ(call.evaluate({&two, plus.getOutputArgument()}), 0);
    EXPECT_EQ(call.getOutputArgument()->GetExpressionString(), String(L"32"));
    EXPECT_EQ(call.getArgumentsCount(), 2);
    call.reset();
    EXPECT_EQ(call.getOutputArgument(), nullptr);
}

TEST(XPathElements, KeepsAllOfManyElements)
{
    XPathElements elements;
    std::vector<XPathExpression*> made;
    for (int i = 0; i < 2000; ++i)
    {
        const std::wstring text = std::to_wstring(i);
        made.push_back(i % 3 == 0 ? &XPathExpression::create(L"(", {}, elements)
                                  : &XPathExpression::create(elements.keep(text), {}, elements));
    }
    for (int i = 0; i < 2000; ++i)
    {
        const auto index = static_cast<std::size_t>(i);
        if (i % 3 == 0)
        {
            EXPECT_EQ(made[index]->textView(), L"(");
        }
        else
        {
            EXPECT_EQ(made[index]->GetExpressionNumb(), i);
        }
    }
}

TEST(XPathElements, MemoryOfEverySizeIsAlignedAndApart)
{
    XPathElements elements;
    std::vector<std::pair<unsigned char*, std::size_t>> blocks;
    for (const std::size_t size : {1u, 7u, 16u, 17u, 3000u, 100u, 8191u, 8192u, 8193u, 50000u, 3u, 5000u, 1u})
    {
        auto* pBlock = static_cast<unsigned char*>(elements.allocate(size));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pBlock) % alignof(std::max_align_t), 0u) << size;
        std::memset(pBlock, static_cast<int>(blocks.size()), size);
        blocks.emplace_back(pBlock, size);
    }
    for (std::size_t i = 0; i < blocks.size(); ++i)
    {
        for (std::size_t place = 0; place < blocks[i].second; ++place)
        {
            ASSERT_EQ(blocks[i].first[place], i);
        }
    }
}

} // namespace
