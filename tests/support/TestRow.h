#pragma once

#include <QTest>

// One row of a data table on one line: Row("tag", a, b, c) is QTest::newRow("tag") << a << b << c.
template <typename... T> void Row(const char* tag, const T&... values) {
    (QTest::newRow(tag) << ... << values);
}
