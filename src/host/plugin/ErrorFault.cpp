#include "plugin/ErrorFault.h"

#include "xmlproxy/XmlErrorCodes.h"

Fault faultOf(TErrorCode i_Code) noexcept
{
    switch (i_Code)
    {
    case XML_ERROR_PARSER_INITIALIZE:
    case XML_ERROR_PARSER_EXCEPTION:
    case XML_ERROR_UNKNOWN_EXCEPTION:
    case XML_ERROR_CANCELLED:
    case XML_ERROR_NO_INPUT:
    case XML_PLUGIN_ERROR_FILE_NOT_SET:
    case XML_PLUGIN_ERROR_DOCUMENT:
        return Fault::File;
    case XML_ERROR_NOT_IMPLEMENTED:
    case XML_ERROR_STEP_INDEX:
    case XML_ERROR_PATH_SPLIT:
    case XML_PLUGIN_ERROR_XPATH_NOT_SET:
    case XML_PLUGIN_ERROR_XPATH_PARSER_ERROR:
    case XML_PLUGIN_ERROR_XPATH_ARGUMENTS_NUMBER_ERROR:
    case XML_PLUGIN_ERROR_XPATH_FIRST_STEP:
    case XML_PLUGIN_ERROR_XPATH_EMPTY_STEP:
    case XML_PLUGIN_ERROR_XPATH_MALFORMED_STEP:
    case XML_PLUGIN_ERROR_XPATH_NOT_RECOGNISED:
    case XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION:
        return Fault::Expression;
    default:
        return Fault::Both;
    }
}

bool isDocumentError(TErrorCode i_Code) noexcept
{
    return i_Code != 0 && faultOf(i_Code) == Fault::File;
}
