#pragma once

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

/// The constant tables of data types and step keywords. They are built before any widget, never
/// change and are read from any thread without a lock. Every integer here is a wire format: gaps
/// and doubled values are meant as they stand.

/// A data type. The name is its primary keyword; pointers are the value plus 100 (but for the
/// pointers that precede the records, which have values of their own).
enum DrelVarType : int {
    DrelNoType = 0, ///< no type, no keyword
    DrelVoid = 1,
    DrelChar = 2,
    DrelU8 = 3,
    DrelS8 = 4,
    DrelU16 = 5,
    DrelS16 = 6,
    DrelU32 = 7,
    DrelS32 = 8,
    DrelU64 = 9,
    DrelS64 = 10,
    DrelFloat = 11,
    DrelDouble = 12,
    DrelBool = 13,
    DrelCanType = 14,
    DrelLinType = 15,
    DrelEthType = 16,
    DrelUdsType = 17,
    DrelEcuInfoType = 18,
    DrelBigMsgType = 19,
    DrelString = 21,
    DrelXcpCanCfg = 70,
    DrelXcpOdtEntry = 71,
    DrelXcpDaqListCfg = 72,
    DrelXcpTransportLayerCan = 73,
    DrelXcpProtocolLayerCfg = 74,
    DrelXcpEvent = 75,
    DrelXcpCalibrationPage = 76,
    DrelXcpProgramFormat = 77,
    DrelVoidPtr = 100,
    DrelU8Ptr = 101,
    DrelS8Ptr = 102,
    DrelU16Ptr = 103,
    DrelS16Ptr = 104,
    DrelU32Ptr = 105,
    DrelS32Ptr = 106,
    DrelU64Ptr = 107,
    DrelS64Ptr = 108,
    DrelFloatPtr = 109,
    DrelDoublePtr = 110,
    DrelCharPtr = 111,
    DrelBoolPtr = 112,
    DrelCanPtr = 113,
    DrelLinPtr = 114,
    DrelEthPtr = 115,
    DrelUdsPtr = 116,
    DrelEcuInfoPtr = 117,
    DrelBigMsgPtr = 118,
    DrelXcpCanCfgPtr = 170,
    DrelXcpOdtEntryPtr = 171,
    DrelXcpDaqListCfgPtr = 172,
    DrelXcpTransportLayerCanPtr = 173,
    DrelXcpProtocolLayerCfgPtr = 174,
    DrelXcpEventPtr = 175,
    DrelXcpCalibrationPagePtr = 176,
    DrelXcpProgramFormatPtr = 177
};

/// The diagnosis side's notion of what a data item holds.
enum DataCategoryType : int {
    NoCategory = 0,
    SignedCategory = 1,
    UnsignedCategory = 2,
    Signed64Category = 3,
    Unsigned64Category = 4,
    DoubleCategory = 5,
    TextCategory = 6,
    ByteArrayCategory = 7,
    SignedArrayCategory = 8,
    Signed64ArrayCategory = 9,
    DoubleArrayCategory = 10
};

/// Every type with its keywords, 76 rows; a value's first row holds its primary keyword.
extern const std::vector<std::pair<DrelVarType, std::string>> varTypeNames;

/// Whether a type is a record, 54 rows. A value without a row is not composite.
extern const std::unordered_map<int, bool> varTypeComposite;

/// Diagnosis category to type, ten rows; its values are the types that a data item can carry.
extern const std::unordered_map<int, DrelVarType> dataCategoryVarTypes;

/// Step types with their keywords, 19 rows.
extern const std::vector<std::pair<int, std::string>> blockTypeNames;

extern const std::vector<std::string> basicValueKeywords;
extern const std::string cappletBaseName;
extern const std::string cappletSourceName;

/// The primary keyword of @p value, empty if it has no row.
std::string varTypeKeyword(DrelVarType value);

/// The type of @p keyword, primary or alias, matched exactly; DrelVoid if there is none.
DrelVarType varTypeFromKeyword(const std::string& keyword);

/// Whether @p value is a record, false for a value without a row.
bool isCompositeVarType(DrelVarType value);

/// The type that carries @p category, DrelNoType for a category without a row.
DrelVarType varTypeFromDataCategory(DataCategoryType category);
