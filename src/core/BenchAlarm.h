#pragma once

// The alarms that the control's status events switch: the cover and the receipt paper.
enum class BenchAlarm { CoverOpen, PaperOut, PaperNearEmpty };
