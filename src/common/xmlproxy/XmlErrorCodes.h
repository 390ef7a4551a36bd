#pragma once

#include "base/ErrorCode.h"

/// Every code that the document layer, the engine and the plug-in return, in one list:
/// X(value, name, what it means).
/// The constants below, the tool's messages and docs/errors.md come from it or are tested against it.
#define XML_ERROR_CODES(X)                                                                                             \
    X(-101, XML_ERROR_NULL_ARGUMENT, "a required argument is null")                                                    \
    X(-102, XML_ERROR_NOT_IMPLEMENTED, "the function is not implemented")                                              \
    X(-103, XML_ERROR_STEP_INDEX, "a location path has no step of this index")                                         \
    X(-260, XML_ERROR_PATH_SPLIT, "a location path could not be split")                                                \
    X(-1001, XML_ERROR_NO_VALUE, "no such entry")                                                                      \
    X(-1002, XML_ERROR_INDEX_RANGE, "an index is out of range")                                                        \
    X(-1003, XML_ERROR_PARSER_INITIALIZE, "the XML parser library could not be initialised")                           \
    X(-1004, XML_ERROR_PARSER_EXCEPTION, "the XML parser library gave up the document")                                \
    X(-1005, XML_ERROR_UNKNOWN_EXCEPTION, "an unknown exception ended the parse")                                      \
    X(-1006, XML_ERROR_NOT_FOUND, "not found")                                                                         \
    X(-1007, XML_ERROR_DUPLICATE, "an attribute of this name is already there")                                        \
    X(-1009, XML_ERROR_NULL_TEXT, "a required text is null")                                                           \
    X(-1010, XML_ERROR_CANCELLED, "the parse was cancelled")                                                           \
    X(-1011, XML_ERROR_NO_INPUT, "no input source could be created")                                                   \
    X(-10008, XML_ERROR_UNKNOWN_EXPRESSION_TYPE, "unknown expression type")                                            \
    X(-15000, XML_PLUGIN_ERROR_FILE_NOT_SET, "the property \"file\" is not set")                                       \
    X(-15001, XML_PLUGIN_ERROR_XPATH_NOT_SET, "the property \"xpath\" is not set")                                     \
    X(-15002, XML_PLUGIN_ERROR_NO_VALUE, "no value found, although one must exist")                                    \
    X(-15003, XML_PLUGIN_ERROR_MORE_THAN_ONE_VALUE, "more than one value found where one string is wanted")            \
    X(-15004, XML_PLUGIN_ERROR_XPATH_PARSER_ERROR, "the expression has no value")                                      \
    X(-15005, XML_PLUGIN_ERROR_XPATH_ARGUMENTS_NUMBER_ERROR, "too many or too few arguments")                          \
    X(-15006, XML_PLUGIN_ERROR_XPATH_FIRST_STEP, "the first step of a location path is malformed")                     \
    X(-15100, XML_PLUGIN_ERROR_XPATH_EMPTY_STEP, "a location path has an empty step")                                  \
    X(-15101, XML_PLUGIN_ERROR_XPATH_MALFORMED_STEP, "a step of a location path is malformed")                         \
    X(-15103, XML_PLUGIN_ERROR_DOCUMENT, "the document could not be read as XML")                                      \
    X(-15104, XML_PLUGIN_ERROR_XPATH_NODE_WITHOUT_VALUE, "the node has no such value")                                 \
    X(-15105, XML_PLUGIN_ERROR_XPATH_NOT_RECOGNISED, "the expression is not recognised")                               \
    X(-15106, XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION, "an empty predicate is not supported")

#define XML_ERROR_CONSTANT(value, name, text) name = value,
enum XmlErrorCode : TErrorCode
{
    XML_SUCCESS = 0,
    XML_ERROR_CODES(XML_ERROR_CONSTANT)
};
#undef XML_ERROR_CONSTANT

/// The meaning of \p i_Code in one line of English without a full stop, "unknown error" for a code that is not in the
/// list. Never null; valid as long as the process.
inline const char* xmlErrorText(TErrorCode i_Code) noexcept
{
    switch (i_Code)
    {
#define XML_ERROR_CASE(value, name, text)                                                                              \
    case value:                                                                                                        \
        return text;
        XML_ERROR_CODES(XML_ERROR_CASE)
#undef XML_ERROR_CASE
    case 0:
        return "success";
    default:
        return "unknown error";
    }
}
