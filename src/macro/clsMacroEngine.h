#pragma once

#include "IMacroRecorder.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <array>
#include <cstdint>
#include <functional>

class clsFprtWrapper;
class QItemSelectionModel;
class QStringListModel;
class QTimer;

// The macro: a store of lines, one per device call, that records while stopped and replays
// line by line through the wrapper. The cursor decides which: -1 records, anything else plays.
// lstMacroCode is a list model with a selection that the macro panel's view shows; the engine
// keeps it in step and needs no widgets.
class clsMacroEngine : public QObject, public IMacroRecorder {
    Q_OBJECT
public:
    static constexpr int32_t StoreSize = 10001;
    static constexpr int MaxFields = 101;
    static constexpr int32_t Failure = 111;
    // A macro file larger than this is refused whole: 10001 lines of any sensible length fit.
    static constexpr qint64 MaxFileBytes = 16 * 1024 * 1024;

    // Why the last LoadFromFile returned Failure.
    enum class LoadError { None, NoFileName, Unreadable, TooLarge, TooManyLines };

    explicit clsMacroEngine(clsFprtWrapper& wrapper, QObject* parent = nullptr);
    ~clsMacroEngine() override;

    int32_t Construct();
    int32_t AddCommand(QString& cmd) override;
    bool WillRecord() const override { return m_lineCursor == -1 && m_lineCount < StoreSize; }
    int32_t ProcessMacro(QStringList& lines);
    void StartSavedMacro();
    void StopMacro();
    int32_t PlayLineMacro();
    bool IsRunningMacro() const;
    int32_t LoadFromFile(const QString& fileName);
    LoadError LastLoadError() const { return m_loadError; }
    int32_t SaveToFile(const QString& fileName);
    void PopulateListBoxMacro();
    int32_t SetLineMacro(int16_t& line);

    int32_t LineCount() const { return m_lineCount; }
    int16_t LineCursor() const { return m_lineCursor; }
    QString Line(int32_t index) const;
    QStringList Lines() const;

    QStringListModel* lstMacroCode() const { return m_list; }
    // The list's selection, brought up to the cursor's moves first when nobody was following it.
    QItemSelectionModel* lstMacroCodeSelection() const;
    // A view that shows the list says whether it is on screen. While none is, the replay doesn't
    // move the selection line by line; the move it would have made is applied when a view shows
    // again or someone asks for the selection.
    void SetListFollowed(bool followed);
    QTimer* tmrDelayForMacroCls() const { return m_delayTimer; }

    // How F_Delay waits its (already bounded) milliseconds. Empty, the default, runs the event loop
    // until tmrDelayForMacroCls fires; a fuzzer puts in a wait that takes no time.
    using DelayWait = std::function<void(int ms)>;
    void SetDelayWait(DelayWait wait) { m_delayWait = std::move(wait); }

private:
    int32_t ExecuteLine(QString& line);
    void Delay(double ms);
    void PlaceCursor(int16_t line);
    void SelectListRow(int row) const;
    // The row a replay moves the selection to: at once while a view follows, else later.
    void FollowCursor(int row);
    void ApplyPendingRow() const;

    clsFprtWrapper& m_wrapper;
    std::array<QString, StoreSize> m_lineStore;
    int32_t m_lineCount = 0;
    int16_t m_lineCursor = -1;
    quint64 m_placements = 0; // counts moves of the cursor by anything but PlayLineMacro
    QStringListModel* m_list;
    QItemSelectionModel* m_selection;
    QTimer* m_delayTimer;
    bool m_listFollowed = false;
    static constexpr int NoPendingRow = -2;
    mutable int m_pendingRow = NoPendingRow;
    DelayWait m_delayWait;
    LoadError m_loadError = LoadError::None;
};
