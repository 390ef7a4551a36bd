#include "values/XPathNumberText.h"

#include "xmlproxy/XmlText.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>

using namespace XmlPlugin;

namespace
{

TEST(XPathNumberText, RecognisesNumbers)
{
    struct Row
    {
        const char* text;
        bool isNumber;
    };
    const Row rows[] = {
        {"12", true},      {"-3.5", true},   {".5", true},    {"5.", true},        {"- 5", true},       {"-5 5 ", true},
        {"\t7\r\n", true}, {"-", true},      {".", true},     {"-.", true},        {"- .", true},       {"1e3", false},
        {"+1", false},     {"1.2.3", false}, {"..", false},   {"", false},         {" ", false},        {"5 5", false},
        {"--5", false},    {"5-", false},    {"-\t5", false}, {"NaN", false},      {"Infinity", false}, {"0x10", false},
        {"'5'", false},    {"1,5", false},   {"5a", false},   {"\xC3\xA9", false},
    };
    for (const Row& row : rows)
    {
        EXPECT_EQ(XPathNumberText::isNumber(viewOf(String(row.text))), row.isNumber) << '[' << row.text << ']';
    }
}

TEST(XPathNumberText, ReadsNumbers)
{
    const double largest = std::numeric_limits<double>::max();
    struct Row
    {
        std::string text;
        double number;
    };
    const Row rows[] = {
        {"12", 12.0},
        {"-3.5", -3.5},
        {".5", 0.5},
        {"-.5", -0.5},
        {"5.", 5.0},
        {"- 5", 0.0},
        {"-", 0.0},
        {".", 0.0},
        {"", 0.0},
        {"x", 0.0},
        {"7x", 7.0},
        {"1e3", 1.0},
        {"inf", 0.0},
        {"nan", 0.0},
        {"0.1", 0.1},
        {"123456789012345678", 123456789012345678.0},
        {std::string(400, '9'), largest},
        {"-" + std::string(400, '9'), -largest},
        {std::string(400, '9') + ".5", largest},
        {"0." + std::string(400, '0') + "1", 0.0},
        {std::string(500, '0') + "7", 7.0},
        {"1." + std::string(500, '0'), 1.0},
    };
    for (const Row& row : rows)
    {
        EXPECT_EQ(XPathNumberText::read(viewOf(String(row.text.c_str()))), row.number) << row.text;
    }

    const double tiny = XPathNumberText::read(viewOf(String(("0." + std::string(319, '0') + "12345").c_str())));
    EXPECT_GT(tiny, 0.0);
    EXPECT_LT(tiny, std::numeric_limits<double>::min());
    EXPECT_TRUE(std::signbit(XPathNumberText::read(L"-0")));
}

TEST(XPathNumberText, PrintsNumbers)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    struct Row
    {
        double number;
        const char* text;
    };
    const Row rows[] = {
        {0.5, "0.5"},
        {3.0, "3"},
        {1234567.0, "1.23457e+06"},
        {1e-7, "1e-07"},
        {999999.0, "999999"},
        {1e6, "1e+06"},
        {0.0001, "0.0001"},
        {0.00001, "1e-05"},
        {100.0 / 3.0, "33.3333"},
        {-2.5, "-2.5"},
        {0.0, "0"},
        {-0.0, "-0"},
        {1e300, "1e+300"},
        {std::numeric_limits<double>::denorm_min(), "4.94066e-324"},
        {-std::numeric_limits<double>::max(), "-1.79769e+308"},
        {infinity, "inf"},
        {-infinity, "-inf"},
        {nan, "nan"},
        {-nan, "nan"},
    };
    for (const Row& row : rows)
    {
        EXPECT_EQ(XPathNumberText::print(row.number).toNarrow(), row.text);
    }
}

TEST(XPathNumberText, PrintsAsTheRuntimeDoes)
{
    std::mt19937_64 random(20);
    std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
    std::uniform_int_distribution<int> exponent(-20, 20);
    for (int i = 0; i < 20000; ++i)
    {
        const double number = mantissa(random) * std::pow(10.0, exponent(random));
        char expected[64];
        std::snprintf(expected, sizeof(expected), "%.6g", number);
        ASSERT_EQ(XPathNumberText::print(number).toNarrow(), expected);
    }
}

TEST(XPathNumberText, PrintsAsAStreamDoes)
{
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    const auto expectSame = [&](double i_Number)
    {
        stream.str({});
        stream << i_Number;
        ASSERT_EQ(XPathNumberText::print(i_Number).toNarrow(), stream.str());
    };
    std::mt19937_64 random(21);
    for (int i = 0; i < 1000000; ++i)
    {
        double number = 0.0;
        const std::uint64_t bits = random();
        std::memcpy(&number, &bits, sizeof(number));
        if (!std::isnan(number)) // printed without its sign
        {
            expectSame(number);
        }
    }
    for (const double middle : {0.0, 1e5, 1e6, -1e6, 1e7, 2147483648.0, -2147483648.0})
    {
        for (int i = -3000; i <= 3000; ++i)
        {
            expectSame(middle + i);
            expectSame(middle + i / 8.0);
        }
    }
    expectSame(-0.0);
}

TEST(XPathNumberText, ReadsDigitsAsTheRuntimeDoes)
{
    std::mt19937_64 random(22);
    for (int i = 0; i < 100000; ++i)
    {
        std::string text;
        for (auto count = random() % 20 + 1; count != 0; --count)
        {
            text += static_cast<char>('0' + random() % 10);
        }
        if (i % 3 == 0)
        {
            text.insert(random() % (text.size() + 1), ".");
        }
        if (i % 5 == 0)
        {
            text.insert(0, "-");
        }
        ASSERT_EQ(XPathNumberText::read(viewOf(String(text.c_str()))), std::strtod(text.c_str(), nullptr)) << text;
    }
}

TEST(XPathNumberText, DoesNotDependOnTheLocale)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const char* pName : {"de_DE.UTF-8", "fr_FR.UTF-8", "de_DE", "C.UTF-8"})
    {
        if (!std::setlocale(LC_ALL, pName))
        {
            continue;
        }
        EXPECT_EQ(XPathNumberText::print(1.5).toNarrow(), "1.5") << pName;
        EXPECT_EQ(XPathNumberText::read(L"1.5"), 1.5) << pName;
        EXPECT_FALSE(XPathNumberText::isNumber(L"1,5")) << pName;
    }
    std::setlocale(LC_ALL, before.c_str());
}

TEST(XPathNumberText, ReadsOperands)
{
    struct Row
    {
        const wchar_t* text;
        bool isNumber;
        double number;
    };
    const Row rows[] = {
        {L"5", true, 5.0},        {L" 5 ", true, 5.0},  {L"'5'", true, 5.0}, {L"\" -2.5 \"", true, -2.5},
        {L"- 5", true, 0.0},      {L"", false, 0.0},    {L"''", false, 0.0}, {L"'abc'", false, 0.0},
        {L"\"'5'\"", false, 0.0}, {L"a/b", false, 0.0}, {L"'", false, 0.0},
    };
    for (const Row& row : rows)
    {
        double number = 77.0;
        EXPECT_EQ(XPathNumberText::readOperand(row.text, number), row.isNumber) << String(row.text).toNarrow();
        EXPECT_EQ(number, row.isNumber ? row.number : 77.0) << String(row.text).toNarrow();
    }
}

} // namespace
