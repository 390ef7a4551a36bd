#include "input/SpooledInput.h"

#include "system/Console.h"

SpooledInput::SpooledInput()
{
    Console::readInput([this](std::string_view i_Bytes) { m_File.append(i_Bytes); });
    m_File.close();
}
