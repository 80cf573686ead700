#pragma once

#include <string>

/// The fields of the classes that do something. See block_fields.h.
namespace block_fields {

template <class Archive, class Block> void visitApi(Archive& ar, Block& b)
{
    ar.field("call", b.callText);
    ar.code("returnVariable", b.returnVariable);
    ar.field("returnType", b.returnType);
    ar.field("userFunction", b.userFunction, false);
    auto parameters = b.parameters();
    ar.list("parameters", parameters, [](auto& element, auto& parameter) {
        element.field("type", parameter.type);
        element.code("value", parameter.value);
        element.field("description", parameter.description);
    });
    if constexpr (Archive::Reads)
        b.setParameters(parameters);
}

template <class Archive, class Block> void visitStatement(Archive& ar, Block& b)
{
    std::string code = b.customCode();
    bool split = b.getSplitFile();
    ar.code("code", code);
    ar.field("splitFile", split, false);
    if constexpr (Archive::Reads) {
        b.setCustomCode(code);
        b.setSplitFile(split);
    }
}

template <class Archive, class Block> void visitExpression(Archive& ar, Block& b)
{
    ar.code("left", b.leftValue);
    ar.code("right", b.rightExpression);
}

template <class Archive, class Block> void visitPopup(Archive& ar, Block& b)
{
    ar.field("title", b.title);
    ar.field("content", b.content);
    ar.field("assignmentKind", b.assignmentKind, 0);
    ar.code("value", b.value);
    ar.field("variableSource", b.variableSource, 0);
    ar.code("variableName", b.variableName);
    ar.field("variableIsSystem", b.variableIsSystem, false);
    auto buttons = b.buttons();
    ar.list("buttons", buttons, [](auto& element, auto& button) {
        element.field("name", button.name);
        element.code("code", button.code);
    });
    if constexpr (Archive::Reads)
        b.setButtons(buttons);
}

template <class Archive, class Block> void visitDelay(Archive& ar, Block& b)
{
    ar.field("delay", b.delay, 1000);
}

template <class Archive, class Block> void visitSend(Archive& ar, Block& b)
{
    ar.field("frameType", b.frameType, 0);
    ar.field("frameFormat", b.frameFormat, 0);
    ar.field("idType", b.idType, 1);
    ar.field("frameId", b.frameId, 0u);
    ar.field("dataSize", b.dataSize, 8);
    ar.field("channel", b.channel, 1);
    ar.field("data", b.data);
    ar.code("messageVariable", b.messageVariable);
}

template <class Archive, class Block> void visitRecv(Archive& ar, Block& b)
{
    const auto target = [](auto& record, auto& t) {
        record.code("variable", t.variable);
        record.field("isSystem", t.isSystem, false);
    };
    ar.record("id", b.id, target);
    ar.record("dataSize", b.dataSize, target);
    ar.record("channel", b.channel, target);
    ar.record("data", b.data, target);
    ar.code("messageVariable", b.messageVariable);
    ar.field("waitTime", b.waitTime, 1000);
    ar.code("successStatement", b.successStatement);
}

template <class Archive, class Block> void visitBuzz(Archive& ar, Block& b)
{
    ar.field("firstFrequency", b.firstFrequency, 5000);
    ar.field("firstDuration", b.firstDuration, 500);
    ar.field("secondFrequency", b.secondFrequency, 3000);
    ar.field("secondDuration", b.secondDuration, 500);
    ar.field("repeatCount", b.repeatCount, 1);
    ar.field("channel", b.channel, 1);
}

template <class Archive, class Block> void visitUds(Archive& ar, Block& b)
{
    std::string config = b.udsConfig();
    ar.field("text", b.stepText);
    ar.field("config", config);
    ar.field("callCode", b.callCode);
    ar.field("taskCode", b.taskCode);
    ar.field("declareCode", b.declareCode);
    if constexpr (Archive::Reads)
        b.setUdsConfig(config);
}

} // namespace block_fields
