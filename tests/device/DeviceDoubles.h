#pragma once

#include "IMacroRecorder.h"

#include <QLocale>
#include <QStringList>

#include <functional>

// Keeps every macro line it is handed, as a stopped macro engine would.
class RecordingMacro : public IMacroRecorder {
public:
    int32_t AddCommand(QString& cmd) override {
        if (onAdd)
            onAdd();
        if (!recording)
            return 1;
        lines.append(cmd);
        return 0;
    }
    bool WillRecord() const override { return recording; }
    QStringList lines;
    bool recording = true;       // false: refuses, as an engine that is playing
    std::function<void()> onAdd; // lets a test look at the world at the moment of recording
};

// Switches the default locale for one scope.
class LocaleScope {
public:
    explicit LocaleScope(const QLocale& locale) : m_previous(QLocale()) { QLocale::setDefault(locale); }
    ~LocaleScope() { QLocale::setDefault(m_previous); }

private:
    QLocale m_previous;
};
