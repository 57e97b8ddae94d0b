#pragma once

#include <cstdint>

// OPOS constants the bench and its simulated printer use, under their standard names.
namespace OposAll {

// Result codes
inline constexpr int32_t OPOS_SUCCESS = 0;
inline constexpr int32_t OPOS_E_CLOSED = 101;
inline constexpr int32_t OPOS_E_CLAIMED = 102;
inline constexpr int32_t OPOS_E_NOTCLAIMED = 103;
inline constexpr int32_t OPOS_E_NOSERVICE = 104;
inline constexpr int32_t OPOS_E_DISABLED = 105;
inline constexpr int32_t OPOS_E_ILLEGAL = 106;
inline constexpr int32_t OPOS_E_NOHARDWARE = 107;
inline constexpr int32_t OPOS_E_OFFLINE = 108;
inline constexpr int32_t OPOS_E_NOEXIST = 109;
inline constexpr int32_t OPOS_E_EXISTS = 110;
inline constexpr int32_t OPOS_E_FAILURE = 111;
inline constexpr int32_t OPOS_E_TIMEOUT = 112;
inline constexpr int32_t OPOS_E_BUSY = 113;
inline constexpr int32_t OPOS_E_EXTENDED = 114;
inline constexpr int32_t OPOS_E_DEPRECATED = 115;

// Extended result codes of the fiscal printer
inline constexpr int32_t OPOS_EFPTR_COVER_OPEN = 201;
inline constexpr int32_t OPOS_EFPTR_JRN_EMPTY = 202;
inline constexpr int32_t OPOS_EFPTR_REC_EMPTY = 203;
inline constexpr int32_t OPOS_EFPTR_SLP_EMPTY = 204;
inline constexpr int32_t OPOS_EFPTR_SLP_FORM = 205;
inline constexpr int32_t OPOS_EFPTR_MISSING_DEVICES = 206;
inline constexpr int32_t OPOS_EFPTR_WRONG_STATE = 207;
inline constexpr int32_t OPOS_EFPTR_TECHNICAL_ASSISTANCE = 208;
inline constexpr int32_t OPOS_EFPTR_CLOCK_ERROR = 209;
inline constexpr int32_t OPOS_EFPTR_FISCAL_MEMORY_FULL = 210;
inline constexpr int32_t OPOS_EFPTR_FISCAL_MEMORY_DISCONNECTED = 211;
inline constexpr int32_t OPOS_EFPTR_FISCAL_TOTALS_ERROR = 212;
inline constexpr int32_t OPOS_EFPTR_BAD_ITEM_QUANTITY = 213;
inline constexpr int32_t OPOS_EFPTR_BAD_ITEM_AMOUNT = 214;
inline constexpr int32_t OPOS_EFPTR_BAD_ITEM_DESCRIPTION = 215;
inline constexpr int32_t OPOS_EFPTR_RECEIPT_TOTAL_OVERFLOW = 216;
inline constexpr int32_t OPOS_EFPTR_BAD_VAT = 217;
inline constexpr int32_t OPOS_EFPTR_BAD_PRICE = 218;
inline constexpr int32_t OPOS_EFPTR_BAD_DATE = 219;
inline constexpr int32_t OPOS_EFPTR_NEGATIVE_TOTAL = 220;
inline constexpr int32_t OPOS_EFPTR_WORD_NOT_ALLOWED = 221;
inline constexpr int32_t OPOS_EFPTR_BAD_LENGTH = 222;
inline constexpr int32_t OPOS_EFPTR_MISSING_SET_CURRENCY = 223;

// State
inline constexpr int32_t OPOS_S_CLOSED = 1;
inline constexpr int32_t OPOS_S_IDLE = 2;
inline constexpr int32_t OPOS_S_BUSY = 3;
inline constexpr int32_t OPOS_S_ERROR = 4;

// PrinterState
inline constexpr int32_t FPTR_PS_MONITOR = 1;
inline constexpr int32_t FPTR_PS_FISCAL_RECEIPT = 2;
inline constexpr int32_t FPTR_PS_FISCAL_RECEIPT_TOTAL = 3;
inline constexpr int32_t FPTR_PS_FISCAL_RECEIPT_ENDING = 4;
inline constexpr int32_t FPTR_PS_FISCAL_DOCUMENT = 5;
inline constexpr int32_t FPTR_PS_FIXED_OUTPUT = 6;
inline constexpr int32_t FPTR_PS_ITEM_LIST = 7;
inline constexpr int32_t FPTR_PS_LOCKED = 8;
inline constexpr int32_t FPTR_PS_NONFISCAL = 9;
inline constexpr int32_t FPTR_PS_REPORT = 10;

// ErrorEvent responses
inline constexpr int32_t OPOS_ER_RETRY = 11;
inline constexpr int32_t OPOS_ER_CLEAR = 12;
inline constexpr int32_t OPOS_ER_CONTINUEINPUT = 13;

// StatusUpdateEvent values
inline constexpr int32_t FPTR_SUE_COVER_OPEN = 11;
inline constexpr int32_t FPTR_SUE_COVER_OK = 12;
inline constexpr int32_t FPTR_SUE_JRN_EMPTY = 21;
inline constexpr int32_t FPTR_SUE_JRN_NEAREMPTY = 22;
inline constexpr int32_t FPTR_SUE_JRN_PAPEROK = 23;
inline constexpr int32_t FPTR_SUE_REC_EMPTY = 24;
inline constexpr int32_t FPTR_SUE_REC_NEAREMPTY = 25;
inline constexpr int32_t FPTR_SUE_REC_PAPEROK = 26;
inline constexpr int32_t OPOS_SUE_IDLE = 1001;

// Adjustment types
inline constexpr int32_t FPTR_AT_AMOUNT_DISCOUNT = 1;
inline constexpr int32_t FPTR_AT_AMOUNT_SURCHARGE = 2;
inline constexpr int32_t FPTR_AT_PERCENTAGE_DISCOUNT = 3;
inline constexpr int32_t FPTR_AT_PERCENTAGE_SURCHARGE = 4;

// Stations
inline constexpr int32_t FPTR_S_JOURNAL = 1;
inline constexpr int32_t FPTR_S_RECEIPT = 2;
inline constexpr int32_t FPTR_S_JOURNAL_RECEIPT = 3;

// TotalizerType
inline constexpr int32_t FPTR_TT_DOCUMENT = 1;
inline constexpr int32_t FPTR_TT_DAY = 2;
inline constexpr int32_t FPTR_TT_RECEIPT = 3;
inline constexpr int32_t FPTR_TT_GRAND = 4;

// ErrorLevel
inline constexpr int32_t FPTR_EL_NONE = 1;
inline constexpr int32_t FPTR_EL_RECOVERABLE = 2;
inline constexpr int32_t FPTR_EL_FATAL = 3;
inline constexpr int32_t FPTR_EL_BLOCKED = 4;

// ErrorState
inline constexpr int32_t FPTR_ES_NONE = 0;

} // namespace OposAll
