#include "BenchLogLines.h"
#include "Seams.h"
#include "TestRow.h"
#include "clsBenchLog.h"

#include <QDir>
#include <QLoggingCategory>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <optional>

namespace {

const QChar Esc(27);

QByteArray ReadAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("unreadable");
}

// Qt messages of the "opos.log" category, as "category|text", while in place.
struct CategoryMessages {
    static inline QStringList messages;
    QtMessageHandler previous;
    CategoryMessages() {
        messages.clear();
        previous =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext& context, const QString& text) {
                if (qstrcmp(context.category, "opos.log") == 0)
                    messages.append(QString::fromLatin1(context.category) + u'|' + text);
            });
    }
    ~CategoryMessages() { qInstallMessageHandler(previous); }
};

} // namespace

class TestBenchLog : public QObject {
    Q_OBJECT
    std::optional<QTemporaryDir> m_dir;

private slots:
    void init() { QVERIFY(m_dir.emplace().isValid()); }

    // One call is one line: control characters become tokens, nothing else changes.
    void appendMakesOneLine_data() {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("stored");
        Row("plain", "ResetPrinter()     -> OposSuccess(0)", "ResetPrinter()     -> OposSuccess(0)");
        Row("line feed", "two\n", "two[LF]");
        Row("esc and line end", QStringLiteral("PrintNormal(1, a") + Esc + "|2Cb\r\nc)",
            "PrintNormal(1, a[ESC]|2Cb[CR][LF]c)");
        Row("tokens typed stay", "[ESC][CR]", "[ESC][CR]");
        Row("empty", "", "");
        Row("beyond Latin-1", QStringLiteral(u"Caffè € 1,50 😀"), QStringLiteral(u"Caffè € 1,50 😀"));
        // Half a surrogate pair can't be written to the saved file; it stands as U+FFFD there and here.
        Row("lone surrogate", QStringLiteral("a") + QChar(0xD800) + "b" + QChar(0xDC00),
            QStringLiteral(u"a�b�"));
    }
    void appendMakesOneLine() {
        QFETCH(QString, line);
        QFETCH(QString, stored);
        clsBenchLog log;
        QStringList debug;
        const auto previous = SetDebugOutputHandler([&](const QString& l) { debug.append(l); });
        QSignalSpy appended(&log, &clsBenchLog::appended);
        log.Append(QStringLiteral("first"));
        log.Append(line);
        SetDebugOutputHandler(previous);
        QCOMPARE(log.LineCount(), 2);
        QCOMPARE(log.Line(1), stored);
        QCOMPARE(log.LineUtf8(1), stored.toUtf8());
        QCOMPARE(log.Line(2), QString());
        QCOMPARE(log.LongestLineLength(), std::max<qsizetype>(5, stored.size()));
        QCOMPARE(appended.size(), 2);
        QCOMPARE(appended.at(1), (QVariantList{qsizetype(1), qsizetype(1)}));
        QCOMPARE(debug, QStringList({"first\r\n", stored + "\r\n"}));
    }

    void clearEmptiesAndSays() {
        clsBenchLog log;
        log.Append(QStringLiteral("a long first line"));
        QSignalSpy cleared(&log, &clsBenchLog::cleared);
        QSignalSpy appended(&log, &clsBenchLog::appended);
        log.Clear();
        QCOMPARE(cleared.size(), 1);
        QCOMPARE(log.LineCount(), 0);
        QCOMPARE(log.LongestLineLength(), 0);
        log.Append(QStringLiteral("b"));
        QCOMPARE(appended.at(0), (QVariantList{qsizetype(0), qsizetype(1)}));
        QCOMPARE(LinesOf(log), QStringList{"b"});
    }

    // Without a handler the copy goes to the "opos.log" category at debug level, which is off
    // until the logging rules switch it on.
    void debugCopyFollowsTheCategory_data() {
        QTest::addColumn<QString>("rules");
        QTest::addColumn<QStringList>("messages");
        Row("default: off", "", QStringList());
        Row("switched on", "opos.log.debug=true",
            QStringList{"opos.log|ResetPrinter()     -> OposSuccess(0)"});
        Row("only info on", "opos.log.info=true", QStringList());
    }
    void debugCopyFollowsTheCategory() {
        QFETCH(QString, rules);
        QFETCH(QStringList, messages);
        const auto previous = SetDebugOutputHandler({});
        QLoggingCategory::setFilterRules(rules);
        QCOMPARE(DebugOutputWanted(), !messages.isEmpty());
        {
            CategoryMessages seen;
            clsBenchLog log;
            log.Append(QStringLiteral("ResetPrinter()     -> OposSuccess(0)"));
            QCOMPARE(CategoryMessages::messages, messages);
        }
        QLoggingCategory::setFilterRules(QString());
        SetDebugOutputHandler(previous);
    }

    // The saved file: a quotation mark, every line closed by CR LF, a quotation mark, CR LF.
    void savedForm_data() {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QByteArray>("saved");
        Row("empty: four bytes", QStringList(), QByteArray("\"\"\r\n"));
        const QString item =
            "PrintRecItem(\"Articolo test 1\", 1.00, 1, 0, 0.00, \"Kg\")     -> OposSuccess(0)";
        Row("quotes as they are", QStringList{item, "State = 2 (OPOS_S_IDLE)"},
            "\"" + item.toLatin1() + "\r\nState = 2 (OPOS_S_IDLE)\r\n\"\r\n");
        Row("system code page", QStringList{QStringLiteral("Caff\u00e8 \u20ac")},
            QByteArray("\"Caff\xc3\xa8 \xe2\x82\xac\r\n\"\r\n"));
        // Lines of every length up to past the size of the log's blocks, and two far longer
        // ones, so that lines fall on every side of a block's end.
        QStringList lines;
        QByteArray saved = "\"";
        for (int i = 0; i < 5000; ++i) {
            QString line = QString::number(i) + u' ' + QString(i % 997, QChar(u'a' + i % 26));
            if (i == 1234 || i == 4321)
                line = QString(3000000 + i, u'\u00e8');
            lines.append(line);
            saved += line.toUtf8() + "\r\n";
        }
        Row("lines across blocks", lines, saved + "\"\r\n");
    }
    void savedForm() {
        QFETCH(QStringList, lines);
        QFETCH(QByteArray, saved);
        const auto previous = SetDebugOutputHandler({});
        clsBenchLog log;
        for (const QString& line : lines)
            log.Append(line);
        SetDebugOutputHandler(previous);
        QCOMPARE(LinesOf(log), lines);
        QCOMPARE(log.SavedForm(), saved);
        const QString path = m_dir->filePath(QStringLiteral("out.log"));
        QVERIFY(log.SaveToFile(path));
        QCOMPARE(ReadAll(path), saved);
    }

    // A file that can't be written is left as it was; an existing one is replaced whole.
    void saveToFile_data() {
        QTest::addColumn<QString>("target");
        QTest::addColumn<bool>("saved");
        QTest::addColumn<QByteArray>("old");
        Row("replaces", "old.log", true, QByteArray("\"a\r\n\"\r\n"));
        Row("no such folder", "no/such/folder/out.log", false, QByteArray(1000, 'x'));
    }
    void saveToFile() {
        QFETCH(QString, target);
        QFETCH(bool, saved);
        QFETCH(QByteArray, old);
        QFile file(m_dir->filePath(QStringLiteral("old.log")));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(1000, 'x')) == 1000);
        file.close();
        clsBenchLog log;
        log.Append(QStringLiteral("a"));
        QCOMPARE(log.SaveToFile(m_dir->filePath(target)), saved);
        QCOMPARE(ReadAll(file.fileName()), old);
        QCOMPARE(QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList{"old.log"});
        QCOMPARE(LinesOf(log), QStringList{"a"});
    }
};

QTEST_GUILESS_MAIN(TestBenchLog)
#include "tst_benchlog.moc"
