// Numbers of the protocol.
#pragma once

#include <cstdint>

namespace tds {

namespace wire {  // types
inline constexpr std::uint8_t null = 0x1F, int1 = 0x30, bit = 0x32, int2 = 0x34, int4 = 0x38,
                              dateTime4 = 0x3A, float4 = 0x3B, money8 = 0x3C, dateTime8 = 0x3D, float8 = 0x3E,
                              money4 = 0x7A, int8 = 0x7F;
inline constexpr std::uint8_t guid = 0x24, intN = 0x26, bitN = 0x68, oldDecimal = 0x37, oldNumeric = 0x3F,
                              decimalN = 0x6A, numericN = 0x6C, floatN = 0x6D, moneyN = 0x6E,
                              dateTimeN = 0x6F, dateN = 0x28, timeN = 0x29, dateTime2N = 0x2A, offsetN = 0x2B;
inline constexpr std::uint8_t oldChar = 0x2F, oldVarChar = 0x27, oldBinary = 0x2D, oldVarBinary = 0x25;
inline constexpr std::uint8_t bigVarBinary = 0xA5, bigVarChar = 0xA7, bigBinary = 0xAD, bigChar = 0xAF,
                              nVarChar = 0xE7, nChar = 0xEF;
inline constexpr std::uint8_t image = 0x22, text = 0x23, nText = 0x63;
}  // namespace wire

namespace token {
inline constexpr std::uint8_t returnStatus = 0x79, columns = 0x81, order = 0xA9, error = 0xAA, info = 0xAB,
                              returnValue = 0xAC, loginAck = 0xAD, row = 0xD1, packedRow = 0xD2,
                              environment = 0xE3, done = 0xFD, doneProcedure = 0xFE, doneInProcedure = 0xFF;
}  // namespace token

}  // namespace tds
