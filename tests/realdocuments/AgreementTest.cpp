#include "RealDocuments.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

// Queries on which the plug-in's language and XPath 1.0 agree: each is put to both, and every
// answer must be the same, in the same order.

namespace
{

struct AgreementRow
{
    const char* name;
    Document document;
    const char* expression;
    std::size_t atLeast; ///< so many answers, or the row would compare too little
};

void PrintTo(const AgreementRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name << ": " << i_Row.expression;
}

class Agreement : public testing::TestWithParam<AgreementRow>
{
};

// clang-format off
const AgreementRow s_Agreements[] = {
    // Paths alone.
    {"paths_interfaces", Document::Wayland, "protocol/interface/@name", 10},
    {"paths_requests", Document::Wayland, "//request/@name", 30},
    {"paths_types", Document::Vulkan, "registry/types/type/@name", 755},
    {"paths_extended_enums", Document::Vulkan, "//enum/@extends", 895},
    {"paths_union", Document::Wayland, "protocol/interface/request/@name | protocol/interface/event/@name", 60},
    {"paths_absolute", Document::Wayland, "/protocol/interface/@name", 10},
    {"paths_all_attributes", Document::Wayland, "//interface/@*", 20},
    {"paths_all_children", Document::Wayland, "protocol/interface/*/@name", 70},
    {"paths_deep_in_the_middle", Document::Wayland, "protocol//entry/@value", 90},
    {"paths_deep_twice", Document::Wayland, "protocol//request//arg/@type", 45},
    {"paths_comments", Document::Vulkan, "registry/platforms/platform/@comment", 11},
    {"paths_authors", Document::Vulkan, "registry/tags/tag/@author", 15},
    {"paths_deep_union", Document::Vulkan, "//member/@len | //param/@len", 200},
    {"paths_parent", Document::Wayland, "//enum/../@name", 11},
    {"paths_self_and_parent", Document::Wayland, "protocol/./interface/request/../@version", 10},
    // Axes by name.
    {"axes_child_and_attribute", Document::Wayland, "protocol/child::interface/attribute::name", 10},
    {"axes_self", Document::Wayland, "protocol/interface/self::interface/@name", 10},
    {"axes_parent", Document::Wayland, "//entry[@value=0]/parent::enum/@name", 10},
    {"axes_parent_deep", Document::Vulkan, "//require[@feature]/parent::extension/@name", 3},
    {"axes_ancestor", Document::Wayland, "//arg/ancestor::request/@name", 20},
    {"axes_ancestor_of_offset", Document::Vulkan, "//enum[@offset]/ancestor::extension/@name", 105},
    {"axes_all_ancestors", Document::Wayland, "//request[@name='get_shell_surface']/ancestor-or-self::*/@name", 3},
    {"axes_descendant", Document::Wayland, "protocol/descendant::enum/@name", 10},
    {"axes_descendant_below_deep", Document::Wayland, "//enum/descendant::entry/@name", 90},
    // Attributes in predicates.
    {"exists", Document::Vulkan, "registry/types/type[@alias]/@alias", 120},
    {"exists_deep", Document::Vulkan, "//command[@successcodes]/@successcodes", 115},
    {"exists_twice", Document::Wayland, "//arg[@type='object'][@summary]/@summary", 15},
    {"exists_and_equals", Document::Vulkan, "registry/types/type[@category='struct' and @structextends]/@name", 230},
    {"exists_not", Document::Wayland, "//interface[not(request)]/@name", 1},
    {"equals_text", Document::Wayland, "//interface[@name='wl_surface']/request[@since]/@name", 3},
    {"equals_double_quoted", Document::Wayland, "//interface[@name=\"wl_seat\"]/request/@name", 3},
    {"equals_spaced", Document::Wayland, "//interface[ @name = 'wl_seat' ]/@version", 1},
    {"equals_text_deep", Document::Wayland, "//enum[@bitfield='true']/@name", 3},
    {"equals_text_two_steps", Document::Vulkan, "registry/enums[@name='VkResult']/enum[@value<-10]/@name", 3},
    {"equals_or", Document::Vulkan, "registry/platforms/platform[@name='win32' or @name='xcb']/@comment", 2},
    {"differs_text", Document::Wayland, "//arg[@type!='int']/@type", 75},
    {"differs_number", Document::Wayland, "protocol/interface[@version!=1]/@name", 8},
    {"number_equals", Document::Wayland, "protocol/interface[@version=4]/@name", 1},
    {"number_equals_fraction", Document::Vulkan, "registry/feature[@number=1.2]/@name", 1},
    {"number_greater", Document::Wayland, "protocol/interface[@version>3]/@name", 5},
    {"number_not_less", Document::Wayland, "protocol/interface[@version>=4]/@name", 5},
    {"number_less", Document::Wayland, "protocol/interface[@version<2]/@name", 8},
    {"number_not_greater", Document::Vulkan, "registry/enums/enum[@bitpos<=1]/@name", 90},
    {"number_on_the_left", Document::Wayland, "//interface[3 > @version]/@name", 8},
    {"number_negative", Document::Vulkan, "registry/enums[@name='VkResult']/enum[@value<0]/@name", 9},
    {"number_large", Document::Vulkan, "//extension[@number>490]/@name", 10},
    {"number_between", Document::Wayland, "//interface[@version > 3 and @version < 6]/@name", 3},
    // Elements in predicates.
    {"element", Document::Wayland, "protocol/interface[event]/@name", 11},
    {"element_and", Document::Wayland, "protocol/interface[request and event]/@name", 10},
    {"element_or", Document::Wayland, "protocol/interface[event or enum]/@name", 14},
    {"element_not_and", Document::Wayland, "protocol/interface[not(request) and event]/@name", 1},
    {"element_twice", Document::Wayland, "protocol/interface[enum][event]/@version", 8},
    {"element_deep", Document::Vulkan, "//require[type and command]/@comment", 20},
    {"element_and_attribute", Document::Vulkan, "registry/formats/format[@chroma='420' and plane]/@name", 6},
    // Places.
    {"place_second", Document::Wayland, "protocol/interface[2]/@name", 1},
    {"place_first_of_each", Document::Wayland, "protocol/interface/request[1]/@name", 10},
    {"place_first_of_each_deep", Document::Vulkan, "//enum[1]/@name", 425},
    {"place_last", Document::Wayland, "protocol/interface[last()]/@name", 1},
    {"place_last_of_each", Document::Wayland, "protocol/interface/request[last()]/@name", 10},
    {"place_last_deep", Document::Wayland, "//enum/entry[last()]/@name", 10},
    {"place_before_the_last", Document::Wayland, "//interface/request[position()=last()]/@name", 10},
    {"place_position", Document::Wayland, "protocol/interface[position()=3]/@name", 1},
    {"place_position_greater", Document::Wayland, "protocol/interface[position()>20]/@name", 2},
    {"place_position_odd", Document::Wayland, "protocol/interface[position() mod 2 = 1]/@name", 8},
    {"place_first_or_last", Document::Wayland, "//interface[position()=1 or position()=last()]/@name", 2},
    {"place_of_any_name", Document::Wayland, "protocol/interface/*[2]/@name", 10},
    {"place_after_a_filter", Document::Wayland, "protocol/interface/request[@since][2]/@name", 2},
    {"place_after_a_filter_deep", Document::Wayland, "//request[arg][2]/@name", 9},
    {"place_among_many", Document::Vulkan, "registry/types/type[position()=12]/@name", 1},
    {"place_of_a_category", Document::Vulkan, "registry/types/type[@category='enum'][10]/@name", 1},
    {"place_last_of_a_category", Document::Vulkan, "registry/types/type[@category='enum'][last()]/@name", 1},
    // Text functions in predicates.
    {"starts_with", Document::Wayland, "protocol/interface[starts-with(@name,'wl_data')]/@name", 3},
    {"starts_with_many", Document::Vulkan, "registry/types/type[starts-with(@name,'VkPipeline')]/@name", 35},
    {"starts_with_deep", Document::Wayland, "//entry[starts-with(@summary,'a')]/@summary", 4},
    {"contains", Document::Wayland, "protocol/interface[contains(@name,'shell')]/request/@name", 8},
    {"contains_a_dot", Document::Wayland, "//arg[contains(@enum,'.')]/@enum", 6},
    {"contains_and_equals", Document::Vulkan, "registry/types/type[contains(@name,'KHR') and @category='union']/@name", 3},
    {"contains_not", Document::Vulkan, "//tag[not(contains(@contact,'gitlab'))]/@name", 15},
    {"concat", Document::Wayland, "protocol/interface[concat(@name,@version)='wl_shell1']/request/@name", 1},
    {"string_length", Document::Wayland, "protocol/interface[string-length(@name)<10]/@name", 5},
    {"string_length_many", Document::Vulkan, "registry/types/type[string-length(@name)>50]/@name", 30},
    {"string", Document::Wayland, "//interface[string(@version)='3']/@name", 3},
    {"substring_after", Document::Wayland, "protocol/interface[substring-after(@name,'wl_')='seat']/enum/@name", 2},
    {"normalize_space", Document::Wayland, "//interface[normalize-space(@name)='wl_seat']/@name", 1},
    // Number, boolean and node functions in predicates.
    {"count", Document::Wayland, "protocol/interface[count(request)>10]/@name", 1},
    {"count_zero", Document::Wayland, "protocol/interface[count(event)=0]/@name", 5},
    {"count_both_sides", Document::Wayland, "//interface[count(request)>count(event)]/@name", 8},
    {"count_many", Document::Vulkan, "registry/types/type[count(member)>40]/@name", 3},
    {"number_of", Document::Vulkan, "//feature[number(@number)>1.1]/@name", 2},
    {"floor", Document::Wayland, "//interface[floor(@version div 2)=2]/@name", 3},
    {"ceiling", Document::Wayland, "//interface[ceiling(@version div 2)=2]/@name", 3},
    {"round", Document::Wayland, "//interface[round(@version div 3)=2]/@name", 2},
    {"arithmetic_times", Document::Wayland, "//interface[@version*2>10]/@name", 3},
    {"arithmetic_mod", Document::Wayland, "//interface[@version mod 2 = 0]/@name", 3},
    {"arithmetic_minus", Document::Wayland, "//interface[-@version<-6]/@name", 3},
    {"not_equal", Document::Wayland, "//interface[not(@version=1)]/@name", 8},
    {"boolean", Document::Wayland, "//request[boolean(@since)]/@name", 9},
    {"true", Document::Wayland, "//interface[true()]/@name", 10},
    {"name", Document::Wayland, "protocol/interface/*[name()='enum']/@name", 10},
    // Whole expressions.
    {"scalar_count", Document::Wayland, "count(//interface)", 1},
    {"scalar_count_filtered", Document::Vulkan, "count(//extension[@supported='disabled'])", 1},
    {"scalar_count_union", Document::Wayland, "count(//request | //event)", 1},
    {"scalar_count_all", Document::Wayland, "count(//*)", 1},
    {"scalar_sum", Document::Wayland, "sum(//interface/@version)", 1},
    {"scalar_sum_large", Document::Vulkan, "sum(//extension/@number)", 1},
    {"scalar_plus", Document::Wayland, "count(//request) + count(//event)", 1},
    {"scalar_minus", Document::Vulkan, "count(//command) - count(//command[@alias])", 1},
    {"scalar_times", Document::Wayland, "count(//request) * 2 - 1", 1},
    {"scalar_div", Document::Vulkan, "count(//enum) div 7", 1},
    {"scalar_mod", Document::Wayland, "count(//request) mod 7", 1},
    {"scalar_floor", Document::Vulkan, "floor(count(//enum) div 1000)", 1},
    {"scalar_greater", Document::Wayland, "count(//request) > count(//event)", 1},
    {"scalar_any_equal", Document::Wayland, "//interface/@name = 'wl_shell'", 1},
    {"scalar_any_number", Document::Vulkan, "string(//feature/@number=1.3)", 1},
    {"scalar_attribute_plus_one", Document::Wayland, "//interface[@name='wl_shell']/@version + 1", 1},
    {"scalar_not", Document::Wayland, "not(//interface[@name='wl_none'])", 1},
    {"scalar_string", Document::Vulkan, "string(//enum[@name='VK_UUID_SIZE']/@value)", 1},
    {"scalar_string_of_nothing", Document::Wayland, "string(//interface[@name='wl_none']/@name)", 1},
    {"scalar_concat", Document::Wayland, "concat(//interface[1]/@name, '-', //interface[2]/@name)", 1},
    {"scalar_contains", Document::Wayland, "contains(//interface/@name, 'display')", 1},
    {"scalar_starts_with", Document::Vulkan, "starts-with(//tag[1]/@contact, 'VK')", 1},
    {"scalar_substring", Document::Wayland, "substring(//interface[1]/@name, 4, 3)", 1},
    {"scalar_substring_after", Document::Vulkan, "substring-after(//feature[2]/@name,'VK_')", 1},
    {"scalar_substring_before", Document::Wayland, "substring-before(//interface[1]/@name, '_')", 1},
    {"scalar_string_length", Document::Wayland, "string-length('wl_surface')", 1},
    {"scalar_string_length_of_path", Document::Vulkan, "string-length(//tag[1]/@author)", 1},
    {"scalar_normalize_space", Document::Wayland, "normalize-space('  a   b ')", 1},
    {"scalar_name", Document::Wayland, "name(/protocol)", 1},
    {"scalar_number", Document::Vulkan, "number(//feature[3]/@number)", 1},
    {"scalar_six_digits", Document::Wayland, "123456 + 1", 1},
    {"scalar_six_digits_fraction", Document::Wayland, "22 div 7", 1},
    {"scalar_precedence", Document::Wayland, "2 + 3 * 4 - (5 - 1) div 2", 1},
    {"scalar_infinity", Document::Wayland, "-1 div 0", 1},
    {"scalar_nan", Document::Wayland, "0 div 0", 1},
};
// clang-format on

} // namespace

TEST_P(Agreement, WithXmlLint)
{
    const AgreementRow& row = GetParam();
    const std::string path = pathOf(row.document);
    const Answers expected = askXmlLint(path, row.expression);
    ASSERT_EQ(expected.failure, "");
    EXPECT_GE(expected.values.size(), row.atLeast);

    const Answers answers = askPlugin(path, row.expression);
    EXPECT_EQ(answers.failure, "");
    EXPECT_EQ(answers.values.size(), expected.values.size());
    for (std::size_t i = 0; i < std::min(answers.values.size(), expected.values.size()); ++i)
    {
        ASSERT_EQ(answers.values[i], expected.values[i]) << "answer " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(All, Agreement, testing::ValuesIn(s_Agreements),
                         [](const auto& i_Info) { return std::string(i_Info.param.name); });
