#pragma once

#include "BenchAlarm.h"

#include <QColor>
#include <QWidget>

class QLabel;

// A small round lamp: a shape whose only property is its fill colour.
class LampShape : public QWidget {
    Q_OBJECT
public:
    explicit LampShape(QWidget* parent = nullptr);
    QColor FillColor() const { return m_fill; }
    void SetFillColor(const QColor& color);
    QSize sizeHint() const override { return {16, 16}; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QColor m_fill;
};

// The strip along the bottom: the latest result, and three alarm lamps that only the
// device's status events switch.
class frmStatusBar : public QWidget {
    Q_OBJECT
public:
    static inline const QColor Green{0, 255, 0};
    static inline const QColor Red{255, 0, 0};

    using Alarm = BenchAlarm;

    explicit frmStatusBar(QWidget* parent = nullptr);

    // Red when raised, green when cleared; the lamp and its label alike.
    void SetAlarm(Alarm alarm, bool raised);
    // A small widget at the right end of the bar, after the lamps.
    void AddAtRightEnd(QWidget* widget);
    // The latest result: its code and extended code by name and number, and the error text.
    void ShowResult(const QString& code, const QString& extended, const QString& description);

    QLabel* lblErrorCode;
    QLabel* lblErrorCodeExt;
    QLabel* lblErrorCodeDescription;
    QLabel* lblCoverOpen;
    QLabel* lblPaperOut;
    QLabel* lblPaperNearEmpty;
    LampShape* shpCoverOpen;
    LampShape* shpPaperOut;
    LampShape* shpPaperNearEmpty;

private:
    static void Paint(LampShape* shape, QLabel* label, const QColor& color);
};
