#include "DebugCommand.h"

#include <QTest>

using namespace sim;

// The words of DirectIO 9999: what each command means, and every malformed one refused.
class TestDebugCommand : public QObject {
    Q_OBJECT

    // One command as "kind on level method code extended seconds ms", or "refused".
    static QString Describe(const std::optional<DebugCommand>& c) {
        if (!c)
            return QStringLiteral("refused");
        return QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8")
            .arg(int(c->kind))
            .arg(c->on)
            .arg(int(c->level))
            .arg(c->method.isEmpty() ? QStringLiteral("-") : c->method)
            .arg(c->code)
            .arg(c->extended)
            .arg(c->seconds)
            .arg(c->ms);
    }

private slots:
    void commands_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        // kind: 0 cover, 1 receipt, 2 journal, 3 offline, 4 power, 5 fail, 6 clock, 7 print time;
        // level: 0 ok, 1 near end, 2 empty
        const auto row = [](const char* text, const char* expected) {
            QTest::newRow(text) << QString::fromLatin1(text) << QString::fromLatin1(expected);
        };
        row("cover open", "0 1 0 - 0 0 0 0");
        row("cover closed", "0 0 0 - 0 0 0 0");
        row("COVER  Open", "0 1 0 - 0 0 0 0");
        row("receipt near end", "1 0 1 - 0 0 0 0");
        row("receipt empty", "1 0 2 - 0 0 0 0");
        row("journal ok", "2 0 0 - 0 0 0 0");
        row("offline", "3 1 0 - 0 0 0 0");
        row("online", "3 0 0 - 0 0 0 0");
        row("power off", "4 1 0 - 0 0 0 0");
        row("power on", "4 0 0 - 0 0 0 0");
        row("fail PrintRecItem 111", "5 0 0 PrintRecItem 111 0 0 0");
        row("fail PrintZReport 114 201", "5 0 0 PrintZReport 114 201 0 0");
        row("fail SetAsyncMode 106", "5 0 0 SetAsyncMode 106 0 0 0");
        row("clock +90", "6 0 0 - 0 0 90 0");
        row("clock +90s", "6 0 0 - 0 0 90 0");
        row("clock +2m", "6 0 0 - 0 0 120 0");
        row("clock +25h", "6 0 0 - 0 0 90000 0");
        row("clock +3d", "6 0 0 - 0 0 259200 0");
        row("print time 0", "7 0 0 - 0 0 0 0");
        row("print time 5000", "7 0 0 - 0 0 0 5000");
        // Refused, "|" apart: a word missing or too many, a name not known, a value out of range, a property
        // that can't be written (SetState), an extended code without 114, and nothing at all.
        const QString refused = QStringLiteral(
            "cover|cover open now|cover ajar|receipt|receipt near|journal full|offline now|power|fail|"
            "fail PrintRecItem|fail PrintRecItem 111 0 9|fail printrecitem 111|fail PrintRecSomething 111|"
            "fail SetState 106|fail PrintRecItem 0|fail PrintRecItem 116|fail PrintRecItem 111 201|"
            "fail PrintRecItem -114|fail PrintRecItem 114 x|clock|clock -5|clock -1h|clock 5|clock +5y|"
            "clock +5 h|clock +40000d|print time|print time -1|print time 5001|print 20|reboot|");
        for (const QString& text : refused.split(u'|'))
            QTest::newRow(qPrintable(text.isEmpty() ? QStringLiteral("(empty)") : text)) << text << "refused";
    }
    void commands() {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QString why;
        const auto command = ParseDebugCommand(text, &why);
        QCOMPARE(Describe(command), expected);
        QCOMPARE(why.isEmpty(), command.has_value());
    }
};

QTEST_GUILESS_MAIN(TestDebugCommand)
#include "test_debug_command.moc"
