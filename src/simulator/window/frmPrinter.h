#pragma once

#include <QTimer>
#include <QWidget>

class FiscalMemoryPanel;
class PaperView;
class PrinterFaultPanel;
class PrinterStatusPanel;
class QCheckBox;
class QLabel;
class QPushButton;
class QSplitter;
class SimulatedFiscalPrinter;

// The printer window: the simulated printer that the bench talks to, seen from outside. Its two
// rolls as paper, the customer display, the drawer, the sensor lamps, the fiscal memory at a
// glance, and the faults a test engineer provokes by hand. It follows the simulator live; with a
// device that is not the simulator it says so and stays empty.
class frmPrinter : public QWidget {
    Q_OBJECT
public:
    explicit frmPrinter(QWidget* parent = nullptr);
    ~frmPrinter() override;

    // The bench's device when it is the simulator, else nullptr.
    void SetPrinter(SimulatedFiscalPrinter* printer);
    SimulatedFiscalPrinter* Printer() const { return m_printer; }
    // Whether what the printer did still waits for the window's next update or a view's layout.
    bool UpdatesPending() const;

    // What the buttons do, without a picker. Failures go to a message box.
    QString SelectedDocumentText() const;
    bool CopySelectedDocument();
    bool ExportSelectedPng(const QString& path);
    bool ExportRollPdf(const QString& path);
    // Asks, then starts the printer again on a new fiscal memory, the old file kept aside.
    bool StartNewFiscalMemory();
    // Whether a window position was remembered from an earlier run.
    bool HasSavedGeometry() const { return m_savedGeometry; }
    // The view with the selection, else the one clicked last: the receipt roll at first.
    PaperView* CurrentView() const;

    QLabel* lblDevice;
    QSplitter* splPrinter;
    QSplitter* splRolls;
    PaperView* viewReceipt;
    PaperView* viewJournal;
    QCheckBox* chkShowJournal;
    QPushButton* cmdCopyReceipt;
    QPushButton* cmdExportPng;
    QPushButton* cmdExportPdf;
    QPushButton* cmdFollowEnd;
    PrinterStatusPanel* panStatus;
    PrinterFaultPanel* panFaults;
    FiscalMemoryPanel* panFiscalMemory;
    QPushButton* cmdNewFiscalMemory;

    // Where the window keeps its own state between runs.
    static inline const QString SettingsPrefix = QStringLiteral("printerWindow/");

protected:
    void showEvent(QShowEvent* e) override;
    void hideEvent(QHideEvent* e) override;

private:
    void BuildWindow();
    void ConnectPanels();
    void ConnectPrinter();
    void ShowSession();
    void ShowMachine();
    void ShowAll();
    // What changes with every printed line is shown at most once in a while.
    enum Pending : unsigned { SessionPending = 1, DisplayPending = 2, MemoryPending = 4 };
    void Later(unsigned what);
    void ShowPending();
    void UpdateActions();
    void UpdateMemoryActions();
    void RestoreSettings();
    void SaveSettings() const;

    SimulatedFiscalPrinter* m_printer = nullptr; // forgotten when it goes
    PaperView* m_lastClicked = nullptr;
    QList<QMetaObject::Connection> m_printerConnections;
    QTimer m_clock;
    QTimer m_pendingTimer;
    unsigned m_pending = 0;
    bool m_savedGeometry = false;
};
