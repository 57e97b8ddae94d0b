#pragma once

#include <array>
#include <cstdint>

// A currency value: a signed count of ten-thousandths (four fixed decimals).
using Amount = int64_t;

// The number block of a DirectIO call: always exactly eleven elements.
using DirectIOData = std::array<int32_t, 11>;

constexpr Amount AmountScale = 10000;
