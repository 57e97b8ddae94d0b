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

// Power reporting
inline constexpr int32_t OPOS_PR_NONE = 0;
inline constexpr int32_t OPOS_PR_STANDARD = 1;
inline constexpr int32_t OPOS_PN_DISABLED = 0;
inline constexpr int32_t OPOS_PN_ENABLED = 1;
inline constexpr int32_t OPOS_PS_UNKNOWN = 2000;
inline constexpr int32_t OPOS_PS_ONLINE = 2001;
inline constexpr int32_t OPOS_PS_OFF = 2002;
inline constexpr int32_t OPOS_PS_OFFLINE = 2003;
inline constexpr int32_t OPOS_PS_OFF_OFFLINE = 2004;
inline constexpr int32_t OPOS_SUE_POWER_ONLINE = 2001;
inline constexpr int32_t OPOS_SUE_POWER_OFF_OFFLINE = 2004;

// ErrorLocus
inline constexpr int32_t OPOS_EL_OUTPUT = 1;

// CheckHealth levels
inline constexpr int32_t OPOS_CH_INTERNAL = 1;
inline constexpr int32_t OPOS_CH_EXTERNAL = 2;
inline constexpr int32_t OPOS_CH_INTERACTIVE = 3;

// GetData items
inline constexpr int32_t FPTR_GD_CURRENT_TOTAL = 1;
inline constexpr int32_t FPTR_GD_DAILY_TOTAL = 2;
inline constexpr int32_t FPTR_GD_RECEIPT_NUMBER = 3;
inline constexpr int32_t FPTR_GD_REFUND = 4;
inline constexpr int32_t FPTR_GD_NOT_PAID = 5;
inline constexpr int32_t FPTR_GD_MID_VOID = 6;
inline constexpr int32_t FPTR_GD_Z_REPORT = 7;
inline constexpr int32_t FPTR_GD_GRAND_TOTAL = 8;
inline constexpr int32_t FPTR_GD_PRINTER_ID = 9;
inline constexpr int32_t FPTR_GD_FIRMWARE = 10;
inline constexpr int32_t FPTR_GD_RESTART = 11;
inline constexpr int32_t FPTR_GD_REFUND_VOID = 12;
inline constexpr int32_t FPTR_GD_NUMB_CONFIG_BLOCK = 13;
inline constexpr int32_t FPTR_GD_NUMB_CURRENCY_BLOCK = 14;
inline constexpr int32_t FPTR_GD_NUMB_HDR_BLOCK = 15;
inline constexpr int32_t FPTR_GD_NUMB_RESET_BLOCK = 16;
inline constexpr int32_t FPTR_GD_NUMB_VAT_BLOCK = 17;
inline constexpr int32_t FPTR_GD_FISCAL_DOC = 18;
inline constexpr int32_t FPTR_GD_FISCAL_DOC_VOID = 19;
inline constexpr int32_t FPTR_GD_FISCAL_REC = 20;
inline constexpr int32_t FPTR_GD_FISCAL_REC_VOID = 21;
inline constexpr int32_t FPTR_GD_NONFISCAL_DOC = 22;
inline constexpr int32_t FPTR_GD_NONFISCAL_DOC_VOID = 23;
inline constexpr int32_t FPTR_GD_NONFISCAL_REC = 24;
inline constexpr int32_t FPTR_GD_SIMP_INVOICE = 25;
inline constexpr int32_t FPTR_GD_TENDER = 26;
inline constexpr int32_t FPTR_GD_LINECOUNT = 27;
inline constexpr int32_t FPTR_GD_DESCRIPTION_LENGTH = 28;

// Payment lines (GD_TENDER)
inline constexpr int32_t FPTR_PDL_CASH = 1;
inline constexpr int32_t FPTR_PDL_CHEQUE = 2;
inline constexpr int32_t FPTR_PDL_GIRO = 11;
inline constexpr int32_t FPTR_PDL_VOUCHER = 22;

// Line counts (GD_LINECOUNT)
inline constexpr int32_t FPTR_LC_ITEM = 1;
inline constexpr int32_t FPTR_LC_ITEM_VOID = 2;
inline constexpr int32_t FPTR_LC_DISCOUNT = 3;
inline constexpr int32_t FPTR_LC_DISCOUNT_VOID = 4;
inline constexpr int32_t FPTR_LC_SURCHARGE = 5;
inline constexpr int32_t FPTR_LC_SURCHARGE_VOID = 6;
inline constexpr int32_t FPTR_LC_REFUND = 7;
inline constexpr int32_t FPTR_LC_REFUND_VOID = 8;
inline constexpr int32_t FPTR_LC_SUBTOTAL_DISCOUNT = 9;
inline constexpr int32_t FPTR_LC_SUBTOTAL_DISCOUNT_VOID = 10;
inline constexpr int32_t FPTR_LC_SUBTOTAL_SURCHARGE = 11;
inline constexpr int32_t FPTR_LC_SUBTOTAL_SURCHARGE_VOID = 12;
inline constexpr int32_t FPTR_LC_COMMENT = 13;
inline constexpr int32_t FPTR_LC_SUBTOTAL = 14;
inline constexpr int32_t FPTR_LC_TOTAL = 15;

// Description lengths (GD_DESCRIPTION_LENGTH)
inline constexpr int32_t FPTR_DL_ITEM = 1;
inline constexpr int32_t FPTR_DL_ITEM_ADJUSTMENT = 2;
inline constexpr int32_t FPTR_DL_ITEM_FUEL = 3;
inline constexpr int32_t FPTR_DL_ITEM_FUEL_VOID = 4;
inline constexpr int32_t FPTR_DL_NOT_PAID = 5;
inline constexpr int32_t FPTR_DL_PACKAGE_ADJUSTMENT = 6;
inline constexpr int32_t FPTR_DL_REFUND = 7;
inline constexpr int32_t FPTR_DL_REFUND_VOID = 8;
inline constexpr int32_t FPTR_DL_SUBTOTAL_ADJUSTMENT = 9;
inline constexpr int32_t FPTR_DL_TOTAL = 10;
inline constexpr int32_t FPTR_DL_VOID = 11;
inline constexpr int32_t FPTR_DL_VOID_ITEM = 12;

// GetTotalizer items
inline constexpr int32_t FPTR_GT_GROSS = 1;
inline constexpr int32_t FPTR_GT_NET = 2;
inline constexpr int32_t FPTR_GT_DISCOUNT = 3;
inline constexpr int32_t FPTR_GT_DISCOUNT_VOID = 4;
inline constexpr int32_t FPTR_GT_ITEM = 5;
inline constexpr int32_t FPTR_GT_ITEM_VOID = 6;
inline constexpr int32_t FPTR_GT_NOT_PAID = 7;
inline constexpr int32_t FPTR_GT_REFUND = 8;
inline constexpr int32_t FPTR_GT_REFUND_VOID = 9;
inline constexpr int32_t FPTR_GT_SUBTOTAL_DISCOUNT = 10;
inline constexpr int32_t FPTR_GT_SUBTOTAL_DISCOUNT_VOID = 11;
inline constexpr int32_t FPTR_GT_SUBTOTAL_SURCHARGES = 12;
inline constexpr int32_t FPTR_GT_SUBTOTAL_SURCHARGES_VOID = 13;
inline constexpr int32_t FPTR_GT_SURCHARGE = 14;
inline constexpr int32_t FPTR_GT_SURCHARGE_VOID = 15;
inline constexpr int32_t FPTR_GT_VAT = 16;
inline constexpr int32_t FPTR_GT_VAT_CATEGORY = 17;

// FiscalReceiptType
inline constexpr int32_t FPTR_RT_CASH_IN = 1;
inline constexpr int32_t FPTR_RT_CASH_OUT = 2;
inline constexpr int32_t FPTR_RT_GENERIC = 3;
inline constexpr int32_t FPTR_RT_SALES = 4;
inline constexpr int32_t FPTR_RT_SERVICE = 5;
inline constexpr int32_t FPTR_RT_SIMPLE_INVOICE = 6;
inline constexpr int32_t FPTR_RT_REFUND = 7;

// PrintReport types
inline constexpr int32_t FPTR_RT_ORDINAL = 1;
inline constexpr int32_t FPTR_RT_DATE = 2;

// FiscalReceiptStation
inline constexpr int32_t FPTR_RS_RECEIPT = 1;
inline constexpr int32_t FPTR_RS_SLIP = 2;

// DateType
inline constexpr int32_t FPTR_DT_CONF = 1;
inline constexpr int32_t FPTR_DT_EOD = 2;
inline constexpr int32_t FPTR_DT_RESET = 3;
inline constexpr int32_t FPTR_DT_RTC = 4;
inline constexpr int32_t FPTR_DT_VAT = 5;
inline constexpr int32_t FPTR_DT_START = 6;

// CountryCode, ActualCurrency
inline constexpr int32_t FPTR_CC_ITALY = 8;
inline constexpr int32_t FPTR_AC_EUR = 3;

} // namespace OposAll
