#pragma once

#include <QString>

#include <cstdint>

// Where the wrapper hands each macro line before it touches the device. The recorder decides
// whether to keep it (0 kept, 1 refused); the wrapper ignores the answer.
class IMacroRecorder {
public:
    virtual ~IMacroRecorder() = default;
    virtual int32_t AddCommand(QString& cmd) = 0;
    // False when AddCommand would refuse whatever it is handed: the wrapper then doesn't build
    // the line at all.
    virtual bool WillRecord() const { return true; }
};
