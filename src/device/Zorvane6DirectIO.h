#pragma once

#include <cstdint>

// The vendor's DirectIO command numbers.
namespace Zorvane6DirectIO {

inline constexpr int32_t DIRECTIO_FPTR_DRAWER_OPEN = 1000;
inline constexpr int32_t DIRECTIO_FPTR_DRAWER_GET = 1001;
inline constexpr int32_t DIRECTIO_FPTR_DRAWER_WAIT = 1002;
inline constexpr int32_t DIRECTIO_FPTR_BMPLOAD = 1100;
inline constexpr int32_t DIRECTIO_FPTR_BMPPRINT = 1101;
inline constexpr int32_t DIRECTIO_FPTR_BMPERASE = 1102;
inline constexpr int32_t DIRECTIO_FPTR_BARCODEPRINT = 1200;
inline constexpr int32_t DIRECTIO_FPTR_DY_SETMODE = 1300;
inline constexpr int32_t DIRECTIO_FPTR_DY_CLEAR = 1301;
inline constexpr int32_t DIRECTIO_FPTR_DY_PRINTTEXT = 1302;
inline constexpr int32_t DIRECTIO_FPTR_DY_BMPLOAD = 1303;
inline constexpr int32_t DIRECTIO_FPTR_DY_BMPERASE = 1304;
inline constexpr int32_t DIRECTIO_FPTR_DY_BMPSHOW = 1305;
inline constexpr int32_t DIRECTIO_FPTR_DY_BMPNOW = 1306;
inline constexpr int32_t DIRECTIO_FPTR_DY_SBYTEXT = 1307;
inline constexpr int32_t DIRECTIO_FPTR_DY_SBYBMP = 1308;
inline constexpr int32_t DIRECTIO_FPTR_CREDITNOTE_BEGIN = 1400;
inline constexpr int32_t DIRECTIO_FPTR_CREDITNOTE_END = 1401;
inline constexpr int32_t DIRECTIO_FPTR_REPORT_EJ = 1500;
inline constexpr int32_t DIRECTIO_FPTR_REPORT_X = 1501;
inline constexpr int32_t DIRECTIO_FPTR_REPORT_REQUEST = 1502;
inline constexpr int32_t DIRECTIO_FPTR_RESET_TOTALIZERS = 1600;
inline constexpr int32_t DIRECTIO_FPTR_SIMULATE_KEYBOARD = 9000;
inline constexpr int32_t DIRECTIO_FPTR_DEPARTMENTCFG = 9001;
inline constexpr int32_t DIRECTIO_FPTR_GETVIRTUALTICKET = 9002;
inline constexpr int32_t DIRECTIO_FPTR_SETPOLLINGTIME = 9003;
inline constexpr int32_t DIRECTIO_FPTR_DEBUG = 9999;

} // namespace Zorvane6DirectIO
