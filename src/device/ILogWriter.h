#pragma once

#include <QString>

// Where the wrapper leaves its log lines. The bench hands every wrapper the log it writes into;
// nothing in the device layer keeps a log of its own.
class ILogWriter {
public:
    virtual ~ILogWriter() = default;
    // One call, one line of the log; the line has no line end of its own.
    virtual void Append(const QString& line) = 0;
};
