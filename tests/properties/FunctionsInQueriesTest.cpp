#include "QuerySupport.h"

#include <gtest/gtest.h>

#include <string>

// Every function in whole queries: with none, too few, right and too many arguments and with every
// type of argument, as the whole expression, in a predicate and beside operators.

namespace
{

struct Row
{
    const char* m_Expression;
    const char* m_Expected;
};

class FunctionsInQueriesTest : public testing::Test
{
protected:
    /// Node sets: r/b/@id is 1, 2, 3; r/none is empty. No value: name(r/none).
    static Node* root()
    {
        static const TestDocument s_Document("<r n='3'><b id='1'/><b id='2'/><b id='3'/>"
                                             "<c id='x' t='two words' p='  a   b '/></r>");
        return s_Document.root();
    }

    template <std::size_t Count>
    static void check(const Row (&i_Rows)[Count])
    {
        for (const Row& row : i_Rows)
        {
            EXPECT_EQ(answer(root(), row.m_Expression), row.m_Expected) << row.m_Expression;
        }
    }
};

TEST_F(FunctionsInQueriesTest, CountsOfArguments)
{
    static const Row s_Rows[] = {
        {"string()", ""},
        {"string(1,2)", "error -15005"},
        {"number()", "NaN"},
        {"number(1,2)", "error -15005"},
        {"boolean()", "error -15005"},
        {"not()", "error -15005"},
        {"count()", "error -15005"},
        {"sum()", "error -15005"},
        {"sum(r/b/@id,r/b/@id)", "error -15005"},
        {"floor()", "error -15005"},
        {"floor(1,2)", "error -15005"},
        {"ceiling()", "error -15005"},
        {"ceiling(1,2)", "error -15005"},
        {"round()", "error -15005"},
        {"round(1,2)", "error -15005"},
        {"concat()", "error -15005"},
        {"concat('a')", "error -15005"},
        {"concat('a','b')", "ab"},
        {"concat('a','b','c','d','e')", "abcde"},
        {"starts-with()", "error -15005"},
        {"starts-with('a')", "error -15005"},
        {"contains()", "error -15005"},
        {"contains('a')", "error -15005"},
        {"substring-before()", "error -15005"},
        {"substring-before('a')", "error -15005"},
        {"substring-after()", "error -15005"},
        {"substring-after('a')", "error -15005"},
        {"substring()", "error -15005"},
        {"substring('a')", "error -15005"},
        {"substring('a',1,1,1)", "error -15005"},
        {"string-length()", "error -15005"},
        {"string-length('a','b')", "error -15005"},
        {"normalize-space()", ""},
        {"normalize-space('a','b')", "error -15005"},
        {"translate()", "error -15005"},
        {"translate('a','b')", "error -15005"},
        {"translate('a','b','c')", "error -102"},
        {"translate('a','b','c','d')", "error -15005"},
        {"local-name()", "error -102"},
        {"local-name(r/b)", "error -102"},
        {"local-name(r/b,r/b)", "error -15005"},
        {"name()", "error -15004"},
        {"name(r/b,r/c)", "error -15005"},
        {"position()", "1"},
        {"last()", "1"},
        {"true()", "true"},
        {"false()", "false"},
        // Where the greatest count is the count of the call, the last arguments are taken.
        {"count(r/b,r/c)", "1"},
        {"count(r/none,r/b)", "3"},
        {"boolean(1,0)", "false"},
        {"boolean(0,1)", "true"},
        {"not(r/b,r/none)", "true"},
        {"not(r/none,r/b)", "false"},
        {"starts-with('x','ab','a')", "true"},
        {"contains('x','ab','x')", "false"},
        {"substring-before('x','a=b','=')", "a"},
        {"substring-after('x','a=b','=')", "b"},
        {"position(7)", "1"},
        {"last(r/b,'a',true())", "1"},
        {"true(false())", "true"},
        {"true(1,2)", "true"},
        {"false(true())", "false"},
    };
    check(s_Rows);
}

TEST_F(FunctionsInQueriesTest, TypesOfArgumentsOfConversions)
{
    static const Row s_Rows[] = {
        {"string(r/b/@id)", "1"},
        {"string(r/b)", ""},
        {"string(r/none)", ""},
        {"string('abc')", "abc"},
        {"string('12')", "12"},
        {"string(' 7 ')", " 7 "},
        {"string(2.50)", "2.50"},
        {"string(1 div 4)", "0.25"},
        {"string(1234567 + 0)", "1.23457e+06"},
        {"string(-0)", "0"},
        {"string(true())", "true"},
        {"string(1=2)", "false"},
        {"string(name(r/none))", ""},
        {"string(0 div 0)", "NaN"},
        {"string(1 div 0)", "Infinity"},
        {"string(-1 div 0)", "-Infinity"},
        {"number(r/b/@id)", "1"},
        {"number(r/c/@id)", "NaN"},
        {"number(r/none)", "NaN"},
        {"number('abc')", "NaN"},
        {"number('')", "NaN"},
        {"number('12')", "12"},
        {"number('007')", "7"},
        {"number('- 5')", "0"},
        {"number(2.50)", "2.5"},
        {"number(true())", "1"},
        {"number(false())", "0"},
        {"number(name(r/none))", "NaN"},
        {"number(0 div 0)", "NaN"},
        {"number(1 div 0)", "Infinity"},
        {"number(-1 div 0)", "-Infinity"},
        {"boolean(r/b/@id)", "true"},
        {"boolean(r/none)", "false"},
        {"boolean('abc')", "true"},
        {"boolean('')", "false"},
        {"boolean('0')", "true"},
        {"boolean(0)", "false"},
        {"boolean(-0)", "false"},
        {"boolean(2.5)", "true"},
        {"boolean(true())", "true"},
        {"boolean(false())", "false"},
        {"boolean(name(r/none))", "false"},
        {"boolean(0 div 0)", "false"},
        {"boolean(1 div 0)", "true"},
        {"boolean(-1 div 0)", "true"},
        {"not(r/b/@id)", "false"},
        {"not(r/none)", "true"},
        {"not('abc')", "false"},
        {"not('')", "true"},
        {"not('0')", "false"},
        {"not(0)", "true"},
        {"not(2.5)", "false"},
        {"not(true())", "false"},
        {"not(false())", "true"},
        {"not(name(r/none))", "true"},
        {"not(0 div 0)", "true"},
        {"not(1 div 0)", "false"},
        {"not(-1 div 0)", "false"},
    };
    check(s_Rows);
}

TEST_F(FunctionsInQueriesTest, TypesOfArgumentsOfNumberFunctions)
{
    static const Row s_Rows[] = {
        {"sum(r/b/@id)", "6"},
        {"sum(r/b)", "NaN"},
        {"sum(r/b/@id | r/c/@id)", "NaN"},
        {"sum(r/none)", "0"},
        {"sum('abc')", "NaN"},
        {"sum('12')", "12"},
        {"sum(2.5)", "2.5"},
        {"sum(true())", "1"},
        {"sum(name(r/none))", "NaN"},
        {"sum(0 div 0)", "NaN"},
        {"sum(1 div 0)", "Infinity"},
        {"sum(-1 div 0)", "-Infinity"},
        {"floor(r/b/@id)", "1"},
        {"floor(r/none)", "NaN"},
        {"floor('abc')", "NaN"},
        {"floor('12.7')", "12"},
        {"floor(2.5)", "2"},
        {"floor(-2.5)", "-3"},
        {"floor(true())", "1"},
        {"floor(name(r/none))", "NaN"},
        {"floor(0 div 0)", "NaN"},
        {"floor(1 div 0)", "Infinity"},
        {"floor(-1 div 0)", "-Infinity"},
        {"ceiling(r/b/@id)", "1"},
        {"ceiling(r/none)", "NaN"},
        {"ceiling('abc')", "NaN"},
        {"ceiling('12.2')", "13"},
        {"ceiling(2.5)", "3"},
        {"ceiling(-2.5)", "-2"},
        {"ceiling(-0.5)", "-0"},
        {"ceiling(true())", "1"},
        {"ceiling(name(r/none))", "NaN"},
        {"ceiling(0 div 0)", "NaN"},
        {"ceiling(1 div 0)", "Infinity"},
        {"ceiling(-1 div 0)", "-Infinity"},
        {"round(r/b/@id)", "1"},
        {"round(r/none)", "NaN"},
        {"round('abc')", "NaN"},
        {"round('12.5')", "13"},
        {"round(2.5)", "3"},
        {"round(-2.5)", "-2"},
        {"round(-2.6)", "-3"},
        {"round(0.5)", "1"},
        {"round(-0.5)", "0"},
        {"round(true())", "1"},
        {"round(name(r/none))", "NaN"},
        {"round(0 div 0)", "NaN"},
        {"round(1 div 0)", "Infinity"},
        {"round(-1 div 0)", "-Infinity"},
    };
    check(s_Rows);
}

TEST_F(FunctionsInQueriesTest, TypesOfArgumentsOfContextFunctions)
{
    static const Row s_Rows[] = {
        {"count(r/b/@id)", "3"},
        {"count(r/none)", "0"},
        {"count('abc')", "error -15004"},
        {"count(2.5)", "error -15004"},
        {"count(true())", "error -15004"},
        {"count(name(r/none))", "error -15004"},
        {"count(0 div 0)", "error -15004"},
        {"count(1 div 0)", "error -15004"},
        {"name(r/c)", "c"},
        {"name(r/b/@id)", "b"},
        {"name(r/none)", "error -15004"},
        {"name('abc')", "error -15004"},
        {"name(2.5)", "error -15004"},
        {"name(true())", "error -15004"},
        {"name(name(r/none))", "error -15004"},
        {"name(0 div 0)", "error -15004"},
        {"name(1 div 0)", "error -15004"},
        {"local-name('abc')", "error -102"},
        {"local-name(2.5)", "error -102"},
        {"local-name(true())", "error -102"},
        {"local-name(name(r/none))", "error -102"},
        {"local-name(0 div 0)", "error -102"},
        {"local-name(1 div 0)", "error -102"},
        {"translate(r/b,2.5,true())", "error -102"},
        {"translate(name(r/none),0 div 0,1 div 0)", "error -102"},
        {"position(r/b)", "1"},
        {"position(0 div 0)", "1"},
        {"last(name(r/none))", "1"},
        {"last(1 div 0)", "1"},
        {"true(r/none)", "true"},
        {"true(0 div 0)", "true"},
        {"true(name(r/none))", "true"},
        {"false('abc')", "false"},
        {"false(1 div 0)", "false"},
        {"false(r/b)", "false"},
    };
    check(s_Rows);
}

TEST_F(FunctionsInQueriesTest, TypesOfArgumentsOfStringFunctions)
{
    static const Row s_Rows[] = {
        {"concat('a',r/b/@id)", "a1"},
        {"concat('a',r/none)", "a"},
        {"concat('a',2.50)", "a2.50"},
        {"concat('a',true())", "atrue"},
        {"concat('a',name(r/none))", "a"},
        {"concat('a',0 div 0)", "aNaN"},
        {"concat('a',1 div 0)", "aInfinity"},
        {"concat('a',-1 div 0)", "a-Infinity"},
        {"starts-with(r/b/@id,'1')", "true"},
        {"starts-with('abc',r/none)", "true"},
        {"starts-with(12,1)", "true"},
        {"starts-with(true(),'tr')", "true"},
        {"starts-with(name(r/none),'a')", "false"},
        {"starts-with('NaNa',0 div 0)", "true"},
        {"starts-with(1 div 0,'In')", "true"},
        {"starts-with(-1 div 0,'-')", "true"},
        {"contains(r/c/@t,'wo w')", "true"},
        {"contains('x',r/none)", "true"},
        {"contains('abc','d')", "false"},
        {"contains(12345,34)", "true"},
        {"contains(true(),'ru')", "true"},
        {"contains('a',name(r/none))", "true"},
        {"contains(0 div 0,'aN')", "true"},
        {"contains(1 div 0,'fin')", "true"},
        {"contains(-1 div 0,'-Inf')", "true"},
        {"substring-before(r/c/@t,' ')", "two"},
        {"substring-before(r/none,' ')", ""},
        {"substring-before(12.5,'.')", "12"},
        {"substring-before(true(),'u')", "tr"},
        {"substring-before(name(r/none),'x')", ""},
        {"substring-before('a=b',name(r/none))", ""},
        {"substring-before(0 div 0,'a')", "N"},
        {"substring-before(1 div 0,'f')", "In"},
        {"substring-before(-1 div 0,'I')", "-"},
        {"substring-after(r/c/@t,' ')", "words"},
        {"substring-after(r/none,' ')", ""},
        {"substring-after(12.5,'.')", "5"},
        {"substring-after(true(),'t')", "rue"},
        {"substring-after(name(r/none),'x')", ""},
        {"substring-after('a',name(r/none))", "a"},
        {"substring-after(0 div 0,'N')", "aN"},
        {"substring-after(1 div 0,'In')", "finity"},
        {"substring-after(-1 div 0,'-')", "Infinity"},
        {"string-length(r/c/@t)", "9"},
        {"string-length(r/none)", "0"},
        {"string-length('abc')", "3"},
        {"string-length('')", "0"},
        {"string-length(' 7 ')", "3"},
        {"string-length('\U0001F600')", "2"},
        {"string-length(2.50)", "4"},
        {"string-length(true())", "4"},
        {"string-length(name(r/none))", "0"},
        {"string-length(0 div 0)", "3"},
        {"string-length(1 div 0)", "8"},
        {"string-length(-1 div 0)", "9"},
        {"normalize-space(r/c/@p)", "a b"},
        {"normalize-space(r/none)", ""},
        {"normalize-space('  a   b ')", "a b"},
        {"normalize-space(2.50)", "2.50"},
        {"normalize-space(true())", "true"},
        {"normalize-space(name(r/none))", ""},
        {"normalize-space(0 div 0)", "NaN"},
        {"normalize-space(-1 div 0)", "-Infinity"},
    };
    check(s_Rows);
}

TEST_F(FunctionsInQueriesTest, TypesOfArgumentsOfSubstring)
{
    static const Row s_Rows[] = {
        {"substring('12345',2,3)", "234"},
        {"substring('12345',0,3)", "12"},
        {"substring('12345',1.5,2.6)", "234"},
        {"substring('12345',2)", "2345"},
        {"substring('abc',2,0)", ""},
        {"substring('abc',0,1)", ""},
        // the text
        {"substring(r/c/@t,5)", "words"},
        {"substring(r/none,1)", ""},
        {"substring(12345,2)", "2345"},
        {"substring(true(),2)", "rue"},
        {"substring(name(r/none),1)", ""},
        {"substring(0 div 0,2)", "aN"},
        {"substring(1 div 0,4)", "inity"},
        {"substring(-1 div 0,2)", "Infinity"},
        // the start
        {"substring('abc',r/b/@id)", "abc"},
        {"substring('abc',r/none)", ""},
        {"substring('abc','2')", "bc"},
        {"substring('abc','x')", ""},
        {"substring('abc',true())", "abc"},
        {"substring('abc',name(r/none))", ""},
        {"substring('abc',0 div 0)", ""},
        {"substring('abc',1 div 0)", ""},
        {"substring('abc',-1 div 0)", ""},
        {"substring('abc',0 div 0,2)", ""},
        {"substring('abc',1 div 0,2)", ""},
        {"substring('abc',-1 div 0,2)", "a"}, // the infinity's number is 0
        {"substring('abc',-1 div 0,1 div 0)", "abc"},
        // the length
        {"substring('abc',1,r/b/@id)", "a"},
        {"substring('abc',1,r/none)", ""},
        {"substring('abc',1,'2')", "ab"},
        {"substring('abc',2,true())", "b"},
        {"substring('abc',1,name(r/none))", ""},
        {"substring('abc',1,0 div 0)", ""},
        {"substring('abc',2,1 div 0)", "bc"},
        {"substring('abc',1,-1 div 0)", ""},
    };
    check(s_Rows);
}

/// An operator of the same or a higher priority in front of a function leaves the stack before the
/// function's arguments; a function below the operator behind it waits for that one's result.
TEST_F(FunctionsInQueriesTest, BesideOperators)
{
    static const Row s_Rows[] = {
        {"1 + count(r/b)", "4"},
        {"count(r/b) + count(r/c)", "4"},
        {"count(r/b) * 2", "6"},
        {"2 * count(r/b)", "3"},
        {"6 div count(r/b)", "3"},
        {"2 * position()", "2"},
        {"number(1) div number(0)", "0"},
        {"floor(5.9) mod ceiling(1.2)", "2"},
        {"sum(r/b/@id) - last()", "5"},
        {"-count(r/b)", "-3"},
        {"-substring('123',2)", "23"},
        {"'a' = substring('abc',1,1)", "a"},
        {"substring('abc',1,1) = 'a'", ""},
        {"(substring('abc',1,1)) = 'a'", "true"},
        {"contains('abc','b') and true()", "true"},
        {"true() and contains('abc','b')", "true"},
        {"false() and contains('abc','b')", "true"},
        {"true() or contains('abc','z')", "false"},
        {"false() and (contains('abc','b'))", "false"},
        {"not(true()) or true()", "true"},
        // A call without arguments that reads one takes the operand in front of it.
        {"1 + count()", "NaN"},
        {"7 + string-length()", "NaN"},
        {"'b' = name()", "error -15005"},
        {"3 = last()", "false"},
        // A function that fails leaves nothing to the next one.
        {"1 + local-name()", "NaN"},
        {"local-name() + 1", "NaN"},
        {"concat('a',local-name(),'b')", "ab"},
        {"concat('a',local-name())", "error -15005"},
        {"string(local-name())", ""},
        // A literal that is a bar is joined with its neighbours as a union.
        {"concat(r/b/@id,'|')", "error -15005"},
    };
    check(s_Rows);
}

/// The conditions below as `r/b[CONDITION]/@id`.
TEST_F(FunctionsInQueriesTest, InPredicates)
{
    static const Row s_Rows[] = {
        {"true()", "1 | 2 | 3"},
        {"false()", "(none)"},
        {"true(1)", "1 | 2 | 3"},
        {"position()", "1 | 2 | 3"},
        {"position()=2", "2"},
        {"2=position()", "2"},
        {"position(7)=2", "2"},
        {"last()", "3"},
        {"last(1,2)", "3"},
        {"last()=3", "1 | 2 | 3"},
        {"position()=last()", "3"},
        {"count(@id)", "1"},
        {"count(@id)=1", "1 | 2 | 3"},
        {"count(@none)=0", "1 | 2 | 3"},
        {"count(@none,@id)=1", "1 | 2 | 3"},
        {"count('x')", "(none)"},
        {"count()", "(none)"},
        {"name()", "1 | 2 | 3"},
        {"name()='b'", "1 | 2 | 3"},
        {"'b'=name()", "(none)"},
        {"name(self::*)='b'", "1 | 2 | 3"},
        {"name(.)='b'", "(none)"}, // a lone full stop is a number
        {"string(.)='.'", "1 | 2 | 3"},
        {"name(@id)='c'", "(none)"},
        {"name(@none)", "(none)"},
        {"name(@id,@id)", "(none)"},
        {"string()", "1 | 2 | 3"},
        {"string(@id)", "1 | 2 | 3"},
        {"string(@id)='2'", "2"},
        {"string(@none)=''", "1 | 2 | 3"},
        {"string(@id,@id)", "(none)"},
        {"concat(@id,'x')='2x'", "2"},
        {"concat(@id)", "(none)"},
        {"starts-with(@id,'2')", "2"},
        {"starts-with(@id)", "(none)"},
        {"contains(@id,'3')", "3"},
        {"contains('321',@id)", "1 | 2 | 3"},
        {"contains(@id,'3')=false()", "(none)"},
        {"false()=contains(@id,'3')", "3"},
        {"@id='1' and contains(@id,'3')", "3"},
        {"contains(@id,'3') and @id='1'", "(none)"},
        {"contains()", "(none)"},
        {"substring-before(@id,'a')", "1 | 2 | 3"},
        {"substring-before(@id,'a')='zzz'", "1 | 2 | 3"},
        {"substring-before(@id)", "(none)"},
        {"substring-after(concat('k=',@id),'=')='2'", "2"},
        {"substring-after(@id)", "(none)"},
        {"substring(@id,1)='2'", "1 | 2 | 3"},
        {"'2'=substring(@id,1)", "1 | 2 | 3"},
        {"substring(@id)", "(none)"},
        {"substring(@id,1,1,1)", "(none)"},
        {"string-length(@id)", "1"},
        {"string-length(@id)=1", "1 | 2 | 3"},
        {"string-length()", "(none)"},
        {"normalize-space(concat(' ',@id))='2'", "2"},
        {"normalize-space()=''", "1 | 2 | 3"},
        {"normalize-space(@id,@id)", "(none)"},
        {"translate(@id,'1','2')", "(none)"},
        {"translate(@id)", "(none)"},
        {"local-name()", "(none)"},
        {"local-name(@id)", "(none)"},
        {"number(@id)=2", "2"},
        {"number(@id)", "1 | 2 | 3"},
        {"number()", "(none)"},
        {"number(@id,1)", "(none)"},
        {"sum(@id)=3", "3"},
        {"sum(@id,@id)", "(none)"},
        {"floor(@id)", "1 | 2 | 3"},
        {"floor()", "(none)"},
        {"ceiling(@id)=1", "1"},
        {"ceiling(@id,1)", "(none)"},
        {"round(@id)>1", "2 | 3"},
        {"round()", "(none)"},
        {"boolean(@id)", "1 | 2 | 3"},
        {"boolean(@none)", "(none)"},
        {"boolean()", "(none)"},
        {"not(@none)", "1 | 2 | 3"},
        {"not(@id='2')", "1 | 3"},
        {"not()", "(none)"},
        {"number(@id) div 0", "(none)"},
        {"not(0 div 0)", "1 | 2 | 3"},
        {"boolean(1 div 0)", "1 | 2 | 3"},
        {"boolean(name(@none))", "(none)"},
        {"string(name(@none))", "1 | 2 | 3"},
    };
    for (const Row& row : s_Rows)
    {
        const std::string expression = "r/b[" + std::string(row.m_Expression) + "]/@id";
        EXPECT_EQ(answer(root(), expression), row.m_Expected) << expression;
    }
}

} // namespace
