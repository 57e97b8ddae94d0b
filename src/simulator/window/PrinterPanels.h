#pragma once

#include "Machine.h"

#include <QColor>
#include <QImage>
#include <QStringList>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QPushButton;
class SimulatedFiscalPrinter;

namespace sim {
class CustomerDisplay;
}

// A lamp with its caption: green, amber or red.
class PrinterLamp : public QWidget {
    Q_OBJECT
public:
    enum class Level { Ok, Warning, Alarm, Off };
    static QColor Color(Level level);

    PrinterLamp(const QString& caption, QWidget* parent = nullptr);
    void SetLevel(Level level, const QString& text);
    Level CurrentLevel() const { return m_level; }
    QString Text() const;

protected:
    void paintEvent(QPaintEvent*) override;
    QSize sizeHint() const override;

private:
    QString m_caption, m_text;
    Level m_level = Level::Off;
};

// The customer display as the customer sees it: its rows in its video mode, the bitmap on show.
class CustomerDisplayView : public QWidget {
    Q_OBJECT
public:
    explicit CustomerDisplayView(QWidget* parent = nullptr);
    void Show(const sim::CustomerDisplay& display);
    QStringList Rows() const { return m_rows; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QStringList m_rows;
    QList<int> m_widths;
    QImage m_image;
    QPoint m_imagePos;
};

// Display, drawer and lamps: what the printer's front tells. The drawer's button announces the wish.
class PrinterStatusPanel : public QWidget {
    Q_OBJECT
public:
    explicit PrinterStatusPanel(QWidget* parent = nullptr);
    void Show(const SimulatedFiscalPrinter& printer);
    void ShowDrawer(bool open);

    CustomerDisplayView* displayView;
    QLabel* lblDisplayMode;
    PrinterLamp* lmpDrawer;
    QPushButton* cmdCloseDrawer;
    PrinterLamp* lmpCover;
    PrinterLamp* lmpReceiptPaper;
    PrinterLamp* lmpJournalPaper;
    PrinterLamp* lmpOnline;
    PrinterLamp* lmpPower;

signals:
    void closeDrawerRequested();
};

// The fiscal memory at a glance. Actions on the memory go into `Actions()`.
class FiscalMemoryPanel : public QWidget {
    Q_OBJECT
public:
    explicit FiscalMemoryPanel(QWidget* parent = nullptr);
    void Show(const SimulatedFiscalPrinter& printer);
    QHBoxLayout* Actions() const { return m_actions; }

    QLabel* lblDay;
    QLabel* lblZCount;
    QLabel* lblReceiptNumber;
    QLabel* lblDocuments;
    QLabel* lblDayTotal;
    QLabel* lblGrandTotal;
    QLabel* lblVatTable;
    QLabel* lblClock;
    QLabel* lblRemaining;

private:
    QHBoxLayout* m_actions;
};

// Faults provoked by hand. Each control announces what the person asked; the window passes it to
// the simulator, whose rules (and events) decide what follows.
class PrinterFaultPanel : public QWidget {
    Q_OBJECT
public:
    explicit PrinterFaultPanel(QWidget* parent = nullptr);
    // Puts the controls in line with the machine without announcing anything.
    void Show(const sim::Machine& machine);

    QCheckBox* chkCoverOpen;
    QComboBox* cbReceiptPaper;
    QComboBox* cbJournalPaper;
    QCheckBox* chkOffline;
    QCheckBox* chkPowerOff;
    QComboBox* cbFailMethod;
    QComboBox* cbFailCode;
    QComboBox* cbFailExtended;
    QPushButton* cmdFailNext;
    QLabel* lblFailPending;

signals:
    void coverRequested(bool open);
    void receiptPaperRequested(sim::PaperLevel level);
    void journalPaperRequested(sim::PaperLevel level);
    void offlineRequested(bool offline);
    void powerOffRequested(bool off);
    void failNextRequested(const QString& method, int32_t code, int32_t extended);

private:
    void UpdateExtendedChoice();
};
