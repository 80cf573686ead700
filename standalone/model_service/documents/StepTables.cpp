#include "standalone/model_service/documents/StepTables.h"

#include "model/type_tables.h"
#include "standalone/model_service/documents/property_json.h"
#include "standalone/model_service/json/FieldReader.h"
#include "standalone/model_service/json/json_text.h"

namespace standalone {

namespace {

template <class Fits>
const BaseStepProperty* findIn(const std::vector<BaseStepProperty>& properties, Fits fits)
{
    for (const auto& property : properties) {
        if (fits(property))
            return &property;
        if (const auto* child = findIn(property.children, fits))
            return child;
    }
    return nullptr;
}

const BaseStepProperty* findKind(const std::vector<BaseStepProperty>& properties, int baseType,
                                 int stepType)
{
    return findIn(properties, [=](const BaseStepProperty& p) {
        return p.baseType == baseType && p.stepType == stepType;
    });
}

std::string keywordOf(int stepType)
{
    for (const auto& [type, keyword] : blockTypeNames) {
        if (type == stepType && !keyword.empty())
            return keyword;
    }
    switch (stepType) {
    case step_type::GotoTag:
        return "goto标签";
    case step_type::Condition:
        return "条件";
    case step_type::PopupWindow:
        return "弹窗";
    case step_type::Delay:
        return "延时";
    case step_type::SendMessage:
        return "发送CAN";
    case step_type::RecvMessage:
        return "接收CAN";
    case step_type::Buzz:
        return "蜂鸣器";
    default:
        return {};
    }
}

BaseStepProperty builtIn(int stepType)
{
    BaseStepProperty property;
    property.name = keywordOf(stepType);
    property.stepType = stepType;
    property.showInPalette = !step_kinds::isCloser(stepType);
    property.hasChildren = step_kinds::isOpener(stepType) || step_kinds::isBranch(stepType);
    property.editable = true;
    property.nameEditable = property.tagEnabled = property.showInPalette;
    return property;
}

} // namespace

StepTables& stepTables()
{
    static StepTables tables;
    return tables;
}

void StepTables::load(const std::string& json)
{
    LoadReport report(QStringLiteral("默认步骤表"));
    JsonTree document;
    if (!parseObject(QByteArray::fromStdString(json), report, document))
        return;
    const DocumentPlace whole;
    FieldReader reader(document.root(), report, whole);
    m_defaults = readProperties(reader.takeArray("steps"), report, {"steps", whole});
    m_isLoaded = true;
}

const BaseStepProperty* StepTables::findDefault(int baseType, int stepType) const
{
    return findKind(m_defaults, baseType, stepType);
}

void StepTables::addCustom(const std::string& owner,
                           const std::vector<BaseStepProperty>& properties)
{
    auto& list = m_customs[owner];
    list.insert(list.end(), properties.begin(), properties.end());
}

void StepTables::removeCustom(const std::string& owner)
{
    m_customs.erase(owner);
}

void StepTables::renameOwner(const std::string& oldOwner, const std::string& newOwner)
{
    auto node = m_customs.extract(oldOwner);
    if (node.empty())
        return;
    m_customs.erase(newOwner);
    node.key() = newOwner;
    m_customs.insert(std::move(node));
}

const BaseStepProperty* StepTables::findCustom(const std::string& owner, int baseType,
                                               int stepType) const
{
    const auto list = m_customs.find(owner);
    return list == m_customs.end() ? nullptr : findKind(list->second, baseType, stepType);
}

const BaseStepProperty* StepTables::findCustom(const std::string& owner, int baseType,
                                               const std::string& name) const
{
    const auto list = m_customs.find(owner);
    if (list == m_customs.end())
        return nullptr;
    return findIn(list->second, [&](const BaseStepProperty& p) {
        return p.baseType == baseType && p.name == name;
    });
}

BaseStepProperty StepTables::propertyFor(logicBlockType baseType, int stepType) const
{
    if (const auto* known = findDefault(baseType, stepType))
        return *known;
    if (baseType == BasicStep)
        return builtIn(stepType);
    BaseStepProperty none;
    none.baseType = baseType;
    none.stepType = stepType;
    return none;
}

} // namespace standalone
