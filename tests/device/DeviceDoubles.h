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
        lines.append(cmd);
        return 0;
    }
    QStringList lines;
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
