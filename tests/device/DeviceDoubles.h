#pragma once

#include "IMacroRecorder.h"
#include "Seams.h"

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

// Collects the log's lines while it is installed; puts the previous sink back when it goes.
class CollectingSink : public ILogSink {
public:
    CollectingSink() : m_previous(SetLogSink(this)) {}
    ~CollectingSink() override { SetLogSink(m_previous); }
    void AppendLogLine(const QString& line) override {
        if (onAppend)
            onAppend();
        lines.append(line);
    }
    QStringList lines;
    std::function<void()> onAppend;

private:
    ILogSink* m_previous;
};

// Switches the default locale for one scope.
class LocaleScope {
public:
    explicit LocaleScope(const QLocale& locale) : m_previous(QLocale()) { QLocale::setDefault(locale); }
    ~LocaleScope() { QLocale::setDefault(m_previous); }

private:
    QLocale m_previous;
};
