#include "model/process_blocks.h"

#include <algorithm>

void ApiProcessBlock::setParameters(const std::vector<Parameter>& parameters)
{
    m_parameters = parameters;
}

void ConditionProcessBlock::setCondition(const ConditionProcessBlock& other)
{
    m_left = other.m_left;
    m_right = other.m_right;
    m_operator = other.m_operator;
    m_isArray = other.m_isArray;
    m_arraySize = other.m_arraySize;
}

void PopupWindowProcessBlock::createBtn()
{
    const auto isTaken = [this](const std::string& name) {
        return std::any_of(m_buttons.begin(), m_buttons.end(),
                           [&](const Button& button) { return button.name == name; });
    };
    std::size_t number = m_buttons.size() + 1;
    std::string name = "按钮" + std::to_string(number);
    while (isTaken(name))
        name = "按钮" + std::to_string(++number);
    m_buttons.push_back({name, {}});
}

void PopupWindowProcessBlock::renameBtn(int index, const std::string& name)
{
    if (index >= 0 && index < static_cast<int>(m_buttons.size()))
        m_buttons[static_cast<std::size_t>(index)].name = name;
}

void PopupWindowProcessBlock::updateBtnCode(int index, const std::string& code)
{
    if (index >= 0 && index < static_cast<int>(m_buttons.size()))
        m_buttons[static_cast<std::size_t>(index)].code = code;
}

void PopupWindowProcessBlock::removeBtn(int index)
{
    if (index >= 0 && index < static_cast<int>(m_buttons.size()))
        m_buttons.erase(m_buttons.begin() + index);
}

void UdsProcessBlock::setUdsConfig(const std::string& json)
{
    m_config = json;
}

std::string UdsProcessBlock::udsConfig() const
{
    return m_config;
}
