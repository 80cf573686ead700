#pragma once

#include <string>

/// The fields of the classes that steer the flow. See block_fields.h.
namespace block_fields {

template <class Archive, class Block> void visitCondition(Archive& ar, Block& b)
{
    std::string left = b.getFun1();
    std::string right = b.getFun2();
    std::string op = b.getOperator();
    bool isArray = b.getOperatorIsArray();
    int arraySize = b.getArraySize();
    ar.code("left", left);
    ar.field("operator", op, "==");
    ar.code("right", right);
    ar.field("isArray", isArray, false);
    ar.field("arraySize", arraySize, 1);
    if constexpr (Archive::Reads) {
        b.setFun1(left);
        b.setFun2(right);
        b.setOperator(op, isArray, arraySize);
    }
}

template <class Archive, class Block> void visitFor(Archive& ar, Block& b)
{
    bool custom = b.getCustom();
    std::string variable = b.getVariableName();
    bool define = b.isNeedDefine();
    int begin = b.getBeginValue();
    int end = b.getEndValue();
    int step = b.getStepValue();
    std::string init = b.getFun1();
    std::string condition = b.getFun2();
    std::string increment = b.getFun3();
    ar.field("custom", custom, false);
    ar.field("variable", variable, "i");
    ar.field("defineVariable", define, true);
    ar.field("begin", begin, 0);
    ar.field("end", end, 10);
    ar.field("step", step, 1);
    ar.code("initialisation", init);
    ar.code("condition", condition);
    ar.code("increment", increment);
    if constexpr (Archive::Reads) {
        b.setCustom(custom);
        b.setVariableName(variable, define);
        b.setRangeValue(begin, end, step);
        b.setFun1(init);
        b.setFun2(condition);
        b.setFun3(increment);
    }
}

template <class Archive, class Block> void visitGoto(Archive& ar, Block& b)
{
    ar.field("targetTag", b.targetTag);
    ar.field("targetUuid", b.targetUuid);
}

template <class Archive, class Block> void visitSequence(Archive& ar, Block& b)
{
    ar.field("source", b.sourceKind, 0);
    ar.field("sequenceName", b.sequenceName);
    ar.field("sequenceId", b.sequenceId);
    ar.field("templateId", b.templateId);
    ar.field("templateName", b.templateName);
    ar.field("templateJson", b.templateJson);
    ar.record("carriedTemplate", b.carried, [](auto& record, auto& carried) {
        record.field("id", carried.id);
        record.field("name", carried.name);
        record.field("json", carried.json);
    });
}

} // namespace block_fields
