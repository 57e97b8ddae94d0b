#include "FiscalMemoryFile.h"

#include "FiscalMemoryRows.h"
#include "FiscalMemorySchema.h"
#include "ModelSwitches.h"
#include "Seams.h"
#include "SimulatedFiscalPrinter.h"
#include "SqlConnection.h"
#include "SqliteFiscalMemory.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QStandardPaths>

namespace sim {

namespace {

using Outcome = FiscalMemoryOpening::Outcome;

// One try at a file whose lock is held: a memory, or a damaged file to move aside, or a refusal.
struct Attempt {
    enum class Result { Ok, Damaged, Refused } result = Result::Refused;
    Outcome outcome = Outcome::Refused;
    std::unique_ptr<IFiscalMemory> memory;
    QString text; // damaged: the cause; refused: the whole message
    QString keptAt;
};

Attempt Refused(const QString& message) {
    return {Attempt::Result::Refused, Outcome::Refused, nullptr, message, {}};
}
Attempt Damaged(const QString& cause) {
    return {Attempt::Result::Damaged, Outcome::Refused, nullptr, cause, {}};
}

// A free name beside `path`: PATH.WHAT-yyyyMMdd-HHmmss, with -2, -3... when that is taken.
QString AsideName(const QString& path, const QString& what) {
    const QString base =
        path + u'.' + what + u'-' + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString name = base;
    for (int n = 2; QFileInfo::exists(name) || QFileInfo::exists(name + QStringLiteral("-wal")); ++n)
        name = base + u'-' + QString::number(n);
    return name;
}

const QStringList& Companions() {
    static const QStringList suffixes{QStringLiteral("-wal"), QStringLiteral("-shm"),
                                      QStringLiteral("-journal")};
    return suffixes;
}

// The file and whatever SQLite keeps beside it go under the new name together.
bool MoveWithCompanions(const QString& path, const QString& target, QString& error) {
    QFile file(path);
    if (!file.rename(target)) {
        error = file.errorString();
        return false;
    }
    for (const QString& suffix : Companions())
        if (QFileInfo::exists(path + suffix))
            QFile::rename(path + suffix, target + suffix);
    return true;
}

std::unique_ptr<QLockFile> Lock(const QString& path, QString& message) {
    auto lock = std::make_unique<QLockFile>(path + QStringLiteral(".lock"));
    lock->setStaleLockTime(0); // a live bench keeps its lock however long it runs
    if (lock->tryLock(0))
        return lock;
    if (lock->error() == QLockFile::LockFailedError) {
        qint64 pid = 0;
        QString host, app;
        lock->getLockInfo(&pid, &host, &app);
        message = QStringLiteral("The fiscal memory %1 is in use by another running bench (%2, process %3). "
                                 "Two benches never write one fiscal memory: close the other one first.")
                      .arg(path, app.isEmpty() ? QStringLiteral("fpubench") : app)
                      .arg(pid);
    } else {
        message = QStringLiteral("The fiscal memory %1 can't be locked: %2 can't be created. Check the "
                                 "permissions of its folder.")
                      .arg(path, lock->fileName());
    }
    return nullptr;
}

bool HasSqliteHeader(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(16) == QByteArray("SQLite format 3", 16);
}

Attempt Refusal(const QString& path, const SqlConnection& db) {
    if (db.LastCode() == SqliteCode::Busy || db.LastCode() == SqliteCode::Locked)
        return Refused(QStringLiteral("The fiscal memory %1 is held by another program (%2). It was left as "
                                      "it is; close that program first.")
                           .arg(path, db.LastError()));
    return Refused(QStringLiteral("The fiscal memory %1 can't be used (%2). It was left as it is; check the "
                                  "file and the permissions of its folder.")
                       .arg(path, db.LastError()));
}

Attempt TryOpen(const QString& path, const ModelSwitches& model, int capacity,
                std::unique_ptr<QLockFile>& lock) {
    const QFileInfo info(path);
    if (info.exists() && info.size() > 0 && !HasSqliteHeader(path))
        return Refused(QStringLiteral("%1 is not a fiscal memory: it is not an SQLite database. It was left "
                                      "as it is; move it away, and a new fiscal memory starts there.")
                           .arg(path));
    auto db = std::make_unique<SqlConnection>(path);
    // Exclusive before anything is read: SQLite then keeps the file to this connection, and its
    // WAL needs no shared memory.
    if (!db->Open() || !db->Exec(QStringLiteral("PRAGMA locking_mode = EXCLUSIVE")))
        return Refusal(path, *db);
    bool ok = false;
    const int applicationId = db->Scalar(QStringLiteral("PRAGMA application_id"), &ok).toInt();
    if (!ok)
        return db->LastCode() == SqliteCode::NotADatabase || db->LastCode() == SqliteCode::Corrupt
                   ? Damaged(db->LastError())
                   : Refusal(path, *db);
    const int version = db->Scalar(QStringLiteral("PRAGMA user_version")).toInt();
    const int tables = db->Scalar(QStringLiteral("SELECT count(*) FROM sqlite_schema"), &ok).toInt();
    if (!ok)
        return Damaged(db->LastError());
    const bool fresh = applicationId == 0 && version == 0 && tables == 0;
    if (!fresh && applicationId != FiscalSchema::kApplicationId)
        return Refused(QStringLiteral("%1 is an SQLite database, but not a fiscal memory of fpubench. It was "
                                      "left as it is; move it away, and a new fiscal memory starts there.")
                           .arg(path));
    if (version > FiscalSchema::kVersion)
        return Refused(
            QStringLiteral("The fiscal memory %1 was written by a newer fpubench (schema %2; this "
                           "one reads up to %3). It was left as it is; open it with that fpubench, or "
                           "move it away and a new fiscal memory starts there.")
                .arg(path)
                .arg(version)
                .arg(FiscalSchema::kVersion));
    Attempt attempt{Attempt::Result::Ok, fresh ? Outcome::Created : Outcome::Opened, nullptr, {}, {}};
    if (!fresh) {
        const QString check = db->Scalar(QStringLiteral("PRAGMA quick_check"), &ok).toString();
        if (!ok || check != u"ok")
            return Damaged(ok ? check : db->LastError());
        const QString owner = FiscalRows::ReadModel(*db);
        if (owner.isEmpty())
            return Damaged(QStringLiteral("it names no printer model"));
        if (owner != model.deviceName)
            return Refused(
                QStringLiteral("The fiscal memory %1 belongs to a %2 printer, not to a %3. It was left "
                               "as it is; open the %2 with it, or move it away and a new fiscal memory "
                               "starts there.")
                    .arg(path, owner, model.deviceName));
    }
    if (db->Scalar(QStringLiteral("PRAGMA journal_mode = WAL")).toString() != u"wal" ||
        !db->Exec(QStringLiteral("PRAGMA synchronous = FULL")))
        return Refusal(path, *db);
    if (!fresh && version < FiscalSchema::kVersion) {
        // The old file stays as it was, beside the upgraded one.
        attempt.keptAt = AsideName(path, QStringLiteral("schema%1").arg(version));
        if (!db->Exec(QStringLiteral("VACUUM INTO ?"), {attempt.keptAt}))
            return Refusal(path, *db);
        if (!FiscalSchema::Upgrade(*db, version))
            return Refusal(path, *db);
        attempt.outcome = Outcome::Upgraded;
    }
    FiscalState state(model, capacity);
    if (fresh &&
        !(FiscalSchema::Upgrade(*db, 0) && db->Begin() && FiscalRows::WriteModel(*db, model.deviceName) &&
          FiscalRows::WriteState(*db, nullptr, state) && db->Commit()))
        return Refusal(path, *db);
    QList<ZRecord> z;
    int journalCount = 0;
    QString problem;
    if (!FiscalRows::Load(*db, state, z, journalCount, problem))
        return Damaged(problem);
    // A file SQLite reads but won't write (a format version beyond its own) would refuse the first
    // document: found now, before anything was written to it.
    if (attempt.outcome == Outcome::Opened &&
        !db->Exec(QStringLiteral("PRAGMA user_version = %1").arg(FiscalSchema::kVersion)))
        return Refusal(path, *db);
    attempt.memory = std::make_unique<SqliteFiscalMemory>(std::move(db), std::move(lock), std::move(state),
                                                          std::move(z), journalCount);
    return attempt;
}

} // namespace

FiscalMemoryOpening OpenFiscalMemoryFile(const QString& path, const ModelSwitches& model, int capacity) {
    FiscalMemoryOpening opening;
    const QString file = QFileInfo(path).absoluteFilePath();
    const QFileInfo info(file);
    if (!QDir().mkpath(info.absolutePath())) {
        opening.message = QStringLiteral("The folder %1 of the fiscal memory can't be created. Check the "
                                         "permissions of the folders above it.")
                              .arg(info.absolutePath());
        return opening;
    }
    if (info.exists() && !info.isFile()) {
        opening.message = QStringLiteral("%1 is not a fiscal memory: it is not a file. It was left as it is; "
                                         "move it away, and a new fiscal memory starts there.")
                              .arg(file);
        return opening;
    }
    auto lock = Lock(file, opening.message);
    if (!lock)
        return opening;

    Attempt attempt = TryOpen(file, model, capacity, lock);
    if (attempt.result == Attempt::Result::Damaged) {
        const QString cause = attempt.text;
        const QString aside = AsideName(file, QStringLiteral("damaged"));
        QString error;
        if (!MoveWithCompanions(file, aside, error)) {
            opening.message = QStringLiteral("The fiscal memory %1 is damaged (%2) and could not be moved "
                                             "aside (%3). Nothing was changed; move it away yourself.")
                                  .arg(file, cause, error);
            return opening;
        }
        attempt = TryOpen(file, model, capacity, lock);
        if (attempt.result == Attempt::Result::Ok) {
            attempt.outcome = Outcome::MovedAside;
            attempt.keptAt = aside;
            attempt.text =
                QStringLiteral("The fiscal memory %1 is damaged (%2). It was moved aside to %3, and a "
                               "new, empty fiscal memory starts in its place.")
                    .arg(file, cause, aside);
        } else {
            attempt =
                Refused(QStringLiteral("The fiscal memory %1 is damaged (%2) and was moved aside to %3, but "
                                       "a new one can't be made there. Check the folder.")
                            .arg(file, cause, aside));
        }
    }
    opening.outcome = attempt.outcome;
    opening.memory = std::move(attempt.memory);
    opening.keptAt = attempt.keptAt;
    opening.message = attempt.text;
    if (attempt.outcome == Outcome::Upgraded)
        opening.message =
            QStringLiteral("The fiscal memory %1 was brought up to date for this fpubench; a copy "
                           "of it as it was is kept at %2.")
                .arg(file, attempt.keptAt);
    return opening;
}

namespace {

// Moves `file` aside as an old memory. The caller holds its lock, so no bench opens it meanwhile.
bool MoveAsideLocked(const QString& file, QString& keptAt, QString& error) {
    const QString aside = AsideName(file, QStringLiteral("old"));
    QString cause;
    if (!MoveWithCompanions(file, aside, cause)) {
        error = QStringLiteral("The fiscal memory %1 could not be moved aside (%2). Nothing was changed.")
                    .arg(file, cause);
        return false;
    }
    keptAt = aside;
    return true;
}

QString NewMemoryQuestion(const QString& deviceName, const QString& file) {
    return QStringLiteral(
               "Start a new fiscal memory for the %1?\n\nIts Z reports, receipt numbers, totals and "
               "electronic journal in %2 are moved aside and kept, in the same folder as "
               "%3.old-<date and time>, and the printer starts again from its first receipt and Z "
               "report.")
        .arg(deviceName, file, QFileInfo(file).fileName());
}

// Gives up the memory in `file`, moves the file aside and opens a new one in its place, the lock
// held all along. True when `memory` is left a new memory (null: one in the process), false when
// it is left the old one's content. `told` is what to say.
bool SwapFile(std::unique_ptr<IFiscalMemory>& memory, const ModelSwitches& model, const QString& file,
              QString& told) {
    auto* current = dynamic_cast<SqliteFiscalMemory*>(memory.get());
    if (!current || current->FilePath() != file) {
        // The question let the event loop run, and a macro may have opened another model.
        told = QStringLiteral("The printer's fiscal memory changed while the question was open; nothing was "
                              "moved.");
        return false;
    }
    std::unique_ptr<QLockFile> lock = current->ReleaseFile();
    memory.reset();
    QString keptAt, error;
    if (!MoveAsideLocked(file, keptAt, error)) {
        Attempt again = TryOpen(file, model, kFiscalMemoryCapacity, lock);
        if (again.result == Attempt::Result::Ok) {
            memory = std::move(again.memory);
            told = error + QStringLiteral(" The printer goes on with it.");
            return false;
        }
        told = error + QStringLiteral(" It can't be opened again either (%1): until the bench ends, the %2 "
                                      "works on a fresh fiscal memory that is not kept.")
                           .arg(again.text, model.deviceName);
        return true;
    }
    Attempt fresh = TryOpen(file, model, kFiscalMemoryCapacity, lock);
    if (fresh.result != Attempt::Result::Ok) {
        told =
            QStringLiteral("The fiscal memory of the %1 was moved aside to %2, but a new one can't be made "
                           "in %3 (%4). Until the bench ends, the %1 works on a fresh fiscal memory that "
                           "is not kept; its next start makes the file.")
                .arg(model.deviceName, keptAt, file, fresh.text);
        return true;
    }
    memory = std::move(fresh.memory);
    told = QStringLiteral("The fiscal memory of the %1 was moved aside to %2. The printer goes on with a new "
                          "one in %3, from its first receipt and Z report.")
               .arg(model.deviceName, keptAt, file);
    return true;
}

} // namespace

bool MoveFiscalMemoryAside(const QString& path, QString& keptAt, QString& error) {
    const QString file = QFileInfo(path).absoluteFilePath();
    keptAt.clear();
    const auto lock = Lock(file, error);
    if (!lock)
        return false;
    if (!QFileInfo::exists(file))
        return true;
    return MoveAsideLocked(file, keptAt, error);
}

QString NewFiscalMemoryUnavailable(const SimulatedFiscalPrinter& printer) {
    if (dynamic_cast<const SqliteFiscalMemory*>(&printer.Memory()))
        return {};
    return QStringLiteral(
               "The fiscal memory of the %1 is not in a file: it lives in this bench only and ends "
               "with it, so there is no file to start anew. The bench keeps a model's memory in a "
               "file from the device's Open on, unless another bench holds that file or the file "
               "was refused.")
        .arg(printer.Model().deviceName);
}

bool StartNewFiscalMemory(SimulatedFiscalPrinter& printer) {
    if (const QString why = NewFiscalMemoryUnavailable(printer); !why.isEmpty()) {
        ShowMessage(why);
        return false;
    }
    if (const QString busy = printer.FiscalMemoryBusy(); !busy.isEmpty()) {
        ShowMessage(busy);
        return false;
    }
    const QString file = static_cast<const SqliteFiscalMemory&>(printer.Memory()).FilePath();
    if (ShowMessage(NewMemoryQuestion(printer.Model().deviceName, file), MsgButtons::YesNo) != MsgResult::Yes)
        return false;
    QString told, refusal;
    bool fresh = false;
    const auto swap = [&](std::unique_ptr<IFiscalMemory>& memory) {
        fresh = SwapFile(memory, printer.Model(), file, told);
        return fresh;
    };
    if (!printer.ReplaceFiscalMemory(swap, &refusal)) {
        ShowMessage(refusal);
        return false;
    }
    ShowMessage(told);
    return fresh;
}

QString FiscalMemoryFolder() {
    return QDir::cleanPath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                           QStringLiteral("/fpubench/fiscal-memory"));
}

QString FiscalMemoryPath(const QString& deviceName) {
    return FiscalMemoryFolder() + u'/' + deviceName + QStringLiteral(".sqlite");
}

FiscalMemoryFactory PersistentFiscalMemories(std::function<void(const QString&)> tell) {
    if (!tell)
        tell = [](const QString& text) { ShowMessage(text); };
    return [tell](const ModelSwitches& model) -> std::unique_ptr<IFiscalMemory> {
        FiscalMemoryOpening opening = OpenFiscalMemoryFile(FiscalMemoryPath(model.deviceName), model);
        QString text = opening.message;
        if (!opening.memory) {
            text += QStringLiteral(
                        " Until the bench ends, the %1 works on a fresh fiscal memory that is not kept.")
                        .arg(model.deviceName);
            opening.memory = MakeInMemoryFiscalMemory(model);
        }
        if (!text.isEmpty())
            tell(text);
        return std::move(opening.memory);
    };
}

bool UseFiscalMemoryFile(SimulatedFiscalPrinter& printer, const QString& path, const QString& deviceName,
                         QString& message) {
    const ModelSwitches* model = FindModel(deviceName);
    if (!model) {
        message = QStringLiteral("no printer model is called \"%1\"").arg(deviceName);
        return false;
    }
    FiscalMemoryOpening opening = OpenFiscalMemoryFile(path, *model);
    message = opening.message;
    if (!opening.memory)
        return false;
    auto held = std::make_shared<std::unique_ptr<IFiscalMemory>>(std::move(opening.memory));
    printer.SetFiscalMemoryFactory(
        [held, path, name = model->deviceName](const ModelSwitches& m) -> std::unique_ptr<IFiscalMemory> {
            if (m.deviceName != name)
                return MakeInMemoryFiscalMemory(m);
            if (*held)
                return std::move(*held);
            // Back from the other model: the file again.
            FiscalMemoryOpening again = OpenFiscalMemoryFile(path, m);
            if (!again.message.isEmpty())
                ShowMessage(again.message);
            return again.memory ? std::move(again.memory) : MakeInMemoryFiscalMemory(m);
        });
    return true;
}

int StartNewFiscalMemory(const QString& deviceName) {
    if (!FindModel(deviceName)) {
        ShowMessage(
            QStringLiteral("There is no printer model \"%1\": name ZorvaneFPU or Tessorim.").arg(deviceName));
        return 2;
    }
    const QString path = FiscalMemoryPath(deviceName);
    if (!QFileInfo::exists(path)) {
        ShowMessage(QStringLiteral("The %1 has no fiscal memory yet (%2): its next start makes a new one.")
                        .arg(deviceName, path));
        return 0;
    }
    if (ShowMessage(NewMemoryQuestion(deviceName, path), MsgButtons::YesNo) != MsgResult::Yes)
        return 1;
    QString keptAt, error;
    if (!MoveFiscalMemoryAside(path, keptAt, error)) {
        ShowMessage(error);
        return 1;
    }
    ShowMessage(
        QStringLiteral("The fiscal memory of the %1 was moved aside to %2. Its next start makes a new "
                       "one.")
            .arg(deviceName, keptAt));
    return 0;
}

} // namespace sim
