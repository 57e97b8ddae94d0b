#include "BenchLogLines.h"
#include "MDITestFPOPOS.h"
#include "MacroRunner.h"
#include "ScriptedPrinter.h"
#include "Seams.h"
#include "SimulatedFiscalPrinter.h"
#include "clsBenchCore.h"
#include "clsMacroEngine.h"
#include "frmLog.h"
#include "frmToolbar.h"

#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

// The window and the runner are one bench: for the same actions they log the same lines.

namespace {

enum class Device { Simulated, Scripted };

// The scripted printer meets a cover fault while it prints an X report, and asks what to do; a
// retried job then prints. The simulated printer is used where its own behaviour is the point.
std::unique_ptr<IFiscalPrinter> MakeDevice(Device kind) {
    if (kind == Device::Simulated)
        return std::make_unique<SimulatedFiscalPrinter>();
    auto printer = std::make_unique<ScriptedPrinter>();
    ScriptedPrinter* p = printer.get();
    p->Set(Prop::State, 2);
    p->handlers["PrintXReport"] = [p](QVariantList&) {
        p->sink->StatusUpdateEvent(11);
        int32_t response = 0;
        p->sink->ErrorEvent(114, 201, 1, response);
        if (response == 11) {
            p->sink->StatusUpdateEvent(12);
            p->sink->OutputCompleteEvent(1);
        }
        return 0;
    };
    return printer;
}

QStringList Lines(QString text) {
    if (text.endsWith(u'\n'))
        text.chop(1);
    return text.isEmpty() ? QStringList() : text.split(u'\n');
}

QByteArray ReadAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("unreadable");
}

} // namespace

class RunnerWindowTest : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;

private slots:
    void cleanup() {
        SetMessageBoxHandler({});
        SetFilePickerHandlers({});
    }
    void sameLines_data() {
        QTest::addColumn<int>("device");
        QTest::addColumn<bool>("openFirst"); // the toolbar's Open Claim Enable, the runner's --open
        QTest::addColumn<QByteArray>("macro");
        QTest::addColumn<bool>("retry");       // the operator's answer, the runner's --error-response
        QTest::addColumn<QString>("expected"); // a line both must have, as the bench writes it
        QFile receipt(QStringLiteral(FPU_EXAMPLES_DIR "/receipt.oposcmd"));
        QVERIFY(receipt.open(QIODevice::ReadOnly));
        QTest::newRow("open claim enable") << int(Device::Simulated) << true << QByteArray() << false
                                           << "DeviceEnabled := True     -> OposSuccess(0)";
        QTest::newRow("receipt") << int(Device::Simulated) << true << receipt.readAll() << false
                                 << "EndFiscalReceipt(, 0)     -> OposSuccess(0)";
        QTest::newRow("error event answered Retry")
            << int(Device::Scripted) << false << QByteArray("F_PrintXReport\r\n") << true
            << "ErrorEvent(114 OposEExtended, 201 OposEfptrCoverOpen)  Resp = 11";
        QTest::newRow("error event answered Cancel")
            << int(Device::Scripted) << false << QByteArray("F_PrintXReport\r\n") << false
            << "ErrorEvent(114 OposEExtended, 201 OposEfptrCoverOpen)  Resp = 12";
    }
    void sameLines() {
        QFETCH(int, device);
        QFETCH(bool, openFirst);
        QFETCH(QByteArray, macro);
        QFETCH(bool, retry);
        QFETCH(QString, expected);
        const QString tag = QString::fromLatin1(QTest::currentDataTag()).replace(u' ', u'_');
        const QString macroFile = m_dir.filePath(tag + ".oposcmd");
        const QString windowLog = m_dir.filePath(tag + "-window.log");
        const QString runnerLog = m_dir.filePath(tag + "-runner.log");
        {
            QFile f(macroFile);
            QVERIFY(f.open(QIODevice::WriteOnly) && f.write(macro) == macro.size());
        }

        // The runner, on a device of its own.
        const std::unique_ptr<IFiscalPrinter> runnerDevice = MakeDevice(Device(device));
        QString out, err;
        QTextStream o(&out), e(&err);
        QStringList args{"fpubench-run", "--log", runnerLog,
                         QStringLiteral("--error-response=") + (retry ? "retry" : "clear"), macroFile};
        if (openFirst)
            args.insert(1, QStringLiteral("--open"));
        QCOMPARE(RunnerMain(args, *runnerDevice, o, e), 0);

        // The window, the operator answering every box alike, playing the macro as its macro panel does.
        QStringList boxes;
        {
            MDITestFPOPOS window(MakeDevice(Device(device)));
            // In place of the window's own dialogs, which it installs as it loads.
            SetMessageBoxHandler([&](const QString& text, MsgButtons buttons, const QString&) {
                boxes.append(text);
                return buttons == MsgButtons::RetryCancel && retry ? MsgResult::Retry
                                                                   : UnattendedAnswer(buttons);
            });
            FilePickerHandlers pickers;
            pickers.pickSaveFile = [&](QWidget*, const QString&, const QString&, const QString&) {
                return windowLog;
            };
            SetFilePickerHandlers(pickers);
            window.Log()->cmdClearLog->click(); // the panels' reads at load
            if (openFirst)
                window.Toolbar()->cmdOCE->click();
            clsMacroEngine& engine = window.MacroEngine();
            QCOMPARE(engine.LoadFromFile(macroFile), 0);
            engine.StartSavedMacro();
            while (engine.IsRunningMacro()) {
                if (engine.LineCursor() >= engine.LineCount()) {
                    engine.StopMacro();
                    break;
                }
                engine.PlayLineMacro();
                QCoreApplication::processEvents();
            }
            QStringList lines = LinesOf(window.Core().Log());
            if (openFirst) {
                // After Enable the window's fiscal and reports panels rebuild their VAT lists, each
                // reading NumVatRates (8 on this model): lists the runner hasn't got.
                const qsizetype at = lines.indexOf(QStringLiteral("NumVatRates = 8"));
                QCOMPARE(lines.mid(at, 2), QStringList(2, QStringLiteral("NumVatRates = 8")));
                lines.remove(at, 2);
            } else {
                window.Log()->cmdSaveLog2File->click();
            }
            QVERIFY2(lines.contains(expected), qPrintable(lines.join(u'\n')));
            QCOMPARE(lines, Lines(out));
            // The same questions, in a box or on the error stream.
            QCOMPARE(Lines(err).replaceInStrings(QRegularExpression("^message: "), QString()), boxes);
        }
        if (!openFirst)
            QCOMPARE(ReadAll(windowLog), ReadAll(runnerLog));
    }
};

QTEST_MAIN(RunnerWindowTest)
#include "tst_runner_window.moc"
