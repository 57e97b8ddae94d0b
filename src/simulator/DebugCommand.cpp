#include "DebugCommand.h"

#include "IFiscalPrinter.h"

#include <QRegularExpression>
#include <QStringList>

namespace sim {

namespace {

constexpr qint64 kMaxClockStep = qint64{36525} * 24 * 3600; // a century

std::optional<DebugCommand> Refuse(QString* why, const char* reason) {
    if (why)
        *why = QString::fromLatin1(reason);
    return std::nullopt;
}

std::optional<PaperLevel> Level(const QStringList& words) {
    const QString level = words.mid(1).join(u' ');
    if (level == QLatin1String("ok"))
        return PaperLevel::Ok;
    if (level == QLatin1String("near end"))
        return PaperLevel::NearEnd;
    if (level == QLatin1String("empty"))
        return PaperLevel::Empty;
    return std::nullopt;
}

std::optional<int32_t> Integer(const QString& word, int32_t low, int32_t high) {
    static const QRegularExpression digits(QStringLiteral("^\\d{1,10}$"));
    if (!digits.match(word).hasMatch())
        return std::nullopt;
    const qint64 value = word.toLongLong();
    if (value < low || value > high)
        return std::nullopt;
    return static_cast<int32_t>(value);
}

std::optional<qint64> ClockStep(const QString& word) {
    static const QRegularExpression step(QStringLiteral("^\\+(\\d{1,12})([smhd]?)$"));
    const auto m = step.match(word);
    if (!m.hasMatch())
        return std::nullopt;
    const QString unit = m.captured(2);
    const qint64 scale = unit == QLatin1String("d")   ? 86400
                         : unit == QLatin1String("h") ? 3600
                         : unit == QLatin1String("m") ? 60
                                                      : 1;
    const qint64 n = m.captured(1).toLongLong();
    if (n > kMaxClockStep / scale)
        return std::nullopt;
    return n * scale;
}

} // namespace

bool IsFailableName(const QString& name) {
    static const QStringList names = [] {
        QStringList all;
#define FPU_SIM_METHOD_NAME(name, params, args) all << QStringLiteral(#name);
        FPU_METHODS(FPU_SIM_METHOD_NAME)
#undef FPU_SIM_METHOD_NAME
        for (const PropertyInfo& p : Properties)
            if (p.writable)
                all << QStringLiteral("Set") + QLatin1StringView(p.name);
        return all;
    }();
    return names.contains(name);
}

std::optional<DebugCommand> ParseDebugCommand(const QString& text, QString* why) {
    const QStringList raw = text.simplified().split(u' ', Qt::SkipEmptyParts);
    if (raw.isEmpty())
        return Refuse(why, "No command");
    QStringList words;
    for (const QString& w : raw)
        words << w.toLower();
    const QString& verb = words.first();
    DebugCommand c;
    const auto one = [&](const char* second) {
        return words.size() == 2 && words[1] == QLatin1String(second);
    };

    if (verb == QLatin1String("cover")) {
        if (!one("open") && !one("closed"))
            return Refuse(why, "cover open or cover closed");
        c.kind = DebugCommand::Kind::Cover;
        c.on = words[1] == QLatin1String("open");
        return c;
    }
    if (verb == QLatin1String("receipt") || verb == QLatin1String("journal")) {
        const auto level = Level(words);
        if (!level)
            return Refuse(why, "paper is ok, near end or empty");
        c.kind = verb == QLatin1String("receipt") ? DebugCommand::Kind::ReceiptPaper
                                                  : DebugCommand::Kind::JournalPaper;
        c.level = *level;
        return c;
    }
    if ((verb == QLatin1String("offline") || verb == QLatin1String("online")) && words.size() == 1) {
        c.kind = DebugCommand::Kind::Offline;
        c.on = verb == QLatin1String("offline");
        return c;
    }
    if (verb == QLatin1String("power")) {
        if (!one("off") && !one("on"))
            return Refuse(why, "power off or power on");
        c.kind = DebugCommand::Kind::Power;
        c.on = words[1] == QLatin1String("off");
        return c;
    }
    if (verb == QLatin1String("fail")) {
        if (words.size() < 3 || words.size() > 4)
            return Refuse(why, "fail METHOD CODE [EXTENDED]");
        if (!IsFailableName(raw[1]))
            return Refuse(why, "No such method");
        const auto code = Integer(words[2], 101, 115);
        const auto extended = words.size() == 4 ? Integer(words[3], 1, 9999) : std::optional<int32_t>(0);
        if (!code || !extended || (words.size() == 4 && *code != 114))
            return Refuse(why, "A code 101 to 115, an extended code with 114 only");
        c.kind = DebugCommand::Kind::Fail;
        c.method = raw[1];
        c.code = *code;
        c.extended = *extended;
        return c;
    }
    if (verb == QLatin1String("clock")) {
        const auto step = words.size() == 2 ? ClockStep(words[1]) : std::nullopt;
        if (!step)
            return Refuse(why, "clock +N with s, m, h or d: the clock only goes forward");
        c.kind = DebugCommand::Kind::Clock;
        c.seconds = *step;
        return c;
    }
    if (verb == QLatin1String("print") && words.size() == 3 && words[1] == QLatin1String("time")) {
        const auto ms = Integer(words[2], 0, 5000);
        if (!ms)
            return Refuse(why, "print time 0 to 5000 ms");
        c.kind = DebugCommand::Kind::PrintTime;
        c.ms = *ms;
        return c;
    }
    return Refuse(why, "Unknown command");
}

} // namespace sim
