#include "model/type_tables.h"

#include "model/step_kinds.h"

const std::vector<std::pair<DrelVarType, std::string>> varTypeNames = {
    {DrelVoid, "void"},
    {DrelChar, "char"},
    {DrelU8, "u8"},
    {DrelS8, "s8"},
    {DrelU16, "u16"},
    {DrelS16, "s16"},
    {DrelU32, "u32"},
    {DrelS32, "s32"},
    {DrelS32, "int"},
    {DrelU64, "u64"},
    {DrelS64, "s64"},
    {DrelFloat, "float"},
    {DrelDouble, "double"},
    {DrelBool, "bool"},
    {DrelCanType, "DrelCan"},
    {DrelLinType, "DrelLin"},
    {DrelEthType, "DrelEth"},
    {DrelUdsType, "DrelUds"},
    {DrelEcuInfoType, "DrelEcuInfo"},
    {DrelBigMsgType, "DrelBigMsg"},
    {DrelString, "string"},
    {DrelVoidPtr, "void*"},
    {DrelVoidPtr, "pvoid"},
    {DrelU8Ptr, "u8*"},
    {DrelU8Ptr, "pu8"},
    {DrelS8Ptr, "s8*"},
    {DrelS8Ptr, "ps8"},
    {DrelU16Ptr, "u16*"},
    {DrelU16Ptr, "pu16"},
    {DrelS16Ptr, "s16*"},
    {DrelS16Ptr, "ps16"},
    {DrelU32Ptr, "u32*"},
    {DrelU32Ptr, "pu32"},
    {DrelS32Ptr, "s32*"},
    {DrelS32Ptr, "ps32"},
    {DrelS32Ptr, "int*"},
    {DrelU64Ptr, "u64*"},
    {DrelU64Ptr, "pu64"},
    {DrelS64Ptr, "s64*"},
    {DrelS64Ptr, "ps64"},
    {DrelFloatPtr, "float*"},
    {DrelFloatPtr, "pfloat"},
    {DrelDoublePtr, "double*"},
    {DrelDoublePtr, "pdouble"},
    {DrelCharPtr, "char*"},
    {DrelCharPtr, "pchar"},
    {DrelBoolPtr, "bool*"},
    {DrelBoolPtr, "pbool"},
    {DrelCanPtr, "PDrelCan"},
    {DrelCanPtr, "DrelCan*"},
    {DrelLinPtr, "PDrelLin"},
    {DrelLinPtr, "DrelLin*"},
    {DrelEthPtr, "PDrelEth"},
    {DrelEthPtr, "DrelEth*"},
    {DrelUdsPtr, "PDrelUds"},
    {DrelUdsPtr, "DrelUds*"},
    {DrelEcuInfoPtr, "PDrelEcuInfo"},
    {DrelEcuInfoPtr, "DrelEcuInfo*"},
    {DrelBigMsgPtr, "DrelBigMsg*"},
    {DrelBigMsgPtr, "PDrelBigMsg"},
    {DrelXcpCanCfg, "XcpCanCfg"},
    {DrelXcpCanCfgPtr, "XcpCanCfg*"},
    {DrelXcpOdtEntry, "XcpODTEntry"},
    {DrelXcpOdtEntryPtr, "XcpODTEntry*"},
    {DrelXcpDaqListCfg, "XcpDAQListCfg"},
    {DrelXcpDaqListCfgPtr, "XcpDAQListCfg*"},
    {DrelXcpTransportLayerCan, "XcpTransportLayerCan"},
    {DrelXcpTransportLayerCanPtr, "XcpTransportLayerCan*"},
    {DrelXcpProtocolLayerCfg, "XcpProtocolLayerCfg"},
    {DrelXcpProtocolLayerCfgPtr, "XcpProtocolLayerCfg*"},
    {DrelXcpEvent, "XcpEvent"},
    {DrelXcpEventPtr, "XcpEvent*"},
    {DrelXcpCalibrationPage, "XcpCalibrationPage"},
    {DrelXcpCalibrationPagePtr, "XcpCalibrationPage*"},
    {DrelXcpProgramFormat, "XcpProgramFormat"},
    {DrelXcpProgramFormatPtr, "XcpProgramFormat*"},
};

const std::unordered_map<int, bool> varTypeComposite = {
    {DrelNoType, false},
    {DrelVoid, false},
    {DrelChar, false},
    {DrelU8, false},
    {DrelS8, false},
    {DrelU16, false},
    {DrelS16, false},
    {DrelU32, false},
    {DrelS32, false},
    {DrelU64, false},
    {DrelS64, false},
    {DrelFloat, false},
    {DrelDouble, false},
    {DrelBool, false},
    {DrelCanType, true},
    {DrelLinType, true},
    {DrelEthType, true},
    {DrelUdsType, true},
    {DrelEcuInfoType, true},
    {DrelBigMsgType, true},
    {DrelString, false},
    {DrelVoidPtr, false},
    {DrelU8Ptr, false},
    {DrelS8Ptr, false},
    {DrelU16Ptr, false},
    {DrelS16Ptr, false},
    {DrelU32Ptr, false},
    {DrelS32Ptr, false},
    {DrelU64Ptr, false},
    {DrelS64Ptr, false},
    {DrelFloatPtr, false},
    {DrelDoublePtr, false},
    {DrelCharPtr, false},
    {DrelBoolPtr, false},
    {DrelCanPtr, true},
    {DrelLinPtr, true},
    {DrelEthPtr, true},
    {DrelUdsPtr, true},
    {DrelEcuInfoPtr, true},
    {DrelBigMsgPtr, true},
    {DrelXcpCanCfg, true},
    {DrelXcpCanCfgPtr, true},
    {DrelXcpOdtEntry, true},
    {DrelXcpOdtEntryPtr, true},
    {DrelXcpDaqListCfg, true},
    {DrelXcpDaqListCfgPtr, true},
    {DrelXcpTransportLayerCan, true},
    {DrelXcpTransportLayerCanPtr, true},
    {DrelXcpProtocolLayerCfg, true},
    {DrelXcpProtocolLayerCfgPtr, true},
    {DrelXcpEvent, true},
    {DrelXcpEventPtr, true},
    {DrelXcpCalibrationPage, true},
    {DrelXcpProgramFormat, true},
};

const std::unordered_map<int, DrelVarType> dataCategoryVarTypes = {
    {SignedCategory, DrelS32},           {UnsignedCategory, DrelU32},
    {Signed64Category, DrelS64},         {Unsigned64Category, DrelU64},
    {DoubleCategory, DrelDouble},        {TextCategory, DrelCharPtr},
    {ByteArrayCategory, DrelU8Ptr},      {SignedArrayCategory, DrelS32Ptr},
    {Signed64ArrayCategory, DrelS64Ptr}, {DoubleArrayCategory, DrelDoublePtr},
};

const std::vector<std::pair<int, std::string>> blockTypeNames = {
    {step_type::None, ""},
    {step_type::If, "if"},
    {step_type::ElseIf, "else if"},
    {step_type::Else, "else"},
    {step_type::EndIf, "endif"},
    {step_type::For, "for"},
    {step_type::EndFor, "endfor"},
    {step_type::While, "while"},
    {step_type::EndWhile, "endwhile"},
    {step_type::DoWhile, "do while"},
    {step_type::EndDoWhile, "end dowhile"},
    {step_type::Break, "break"},
    {step_type::Continue, "contiune"},
    {step_type::Goto, "goto"},
    {step_type::Api, "API函数"},
    {step_type::Statement, "语句"},
    {step_type::Expression, "表达式"},
    {step_type::Sequence, "序列"},
    {step_type::Custom, "自定义"},
};

const std::vector<std::string> basicValueKeywords = {"int", "double", "string", "CANMsg"};
const std::string cappletBaseName = "a_capplet";
const std::string cappletSourceName = "a_capplet.cpp";

std::string varTypeKeyword(DrelVarType value)
{
    for (const auto& row : varTypeNames) {
        if (row.first == value)
            return row.second;
    }
    return {};
}

DrelVarType varTypeFromKeyword(const std::string& keyword)
{
    for (const auto& row : varTypeNames) {
        if (row.second == keyword)
            return row.first;
    }
    return DrelVoid;
}

bool isCompositeVarType(DrelVarType value)
{
    const auto row = varTypeComposite.find(value);
    return row != varTypeComposite.end() && row->second;
}

DrelVarType varTypeFromDataCategory(DataCategoryType category)
{
    const auto row = dataCategoryVarTypes.find(category);
    return row == dataCategoryVarTypes.end() ? DrelNoType : row->second;
}
