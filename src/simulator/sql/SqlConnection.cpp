#include "SqlConnection.h"

#include <QSqlDriver>
#include <QSqlError>

#include <atomic>

SqlConnection::SqlConnection(const QString& path) : m_path(path) {
    static std::atomic<int> serial{0};
    m_name = QStringLiteral("fpubench-fiscal-memory-%1").arg(++serial);
}

SqlConnection::~SqlConnection() {
    m_prepared.clear(); // every query goes before its connection
    if (m_db.isValid())
        m_db.close();
    m_db = QSqlDatabase();
    if (QSqlDatabase::contains(m_name))
        QSqlDatabase::removeDatabase(m_name);
}

bool SqlConnection::Open() {
    m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
    if (!m_db.isValid()) {
        m_error = QStringLiteral("Qt's SQLite driver is missing (the package libqt6sql6-sqlite)");
        return false;
    }
    m_db.setDatabaseName(m_path);
    // A writer outside the benches gets a second to let go, not Qt's default five.
    m_db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=1000"));
    if (!m_db.open()) {
        Fail(m_db.lastError());
        return false;
    }
    return true;
}

void SqlConnection::Fail(const QSqlError& error) {
    m_error = error.databaseText().isEmpty() ? error.text() : error.databaseText();
    m_code = error.nativeErrorCode().toInt() & 0xff;
}

QSqlQuery* SqlConnection::Run(const QString& sql, const QVariantList& values) {
    if (!m_db.isOpen()) {
        m_error = QStringLiteral("the connection is closed");
        m_code = 0;
        return nullptr;
    }
    auto it = m_prepared.find(sql);
    if (it == m_prepared.end()) {
        QSqlQuery query(m_db);
        query.setForwardOnly(true);
        if (!query.prepare(sql)) {
            Fail(query.lastError());
            return nullptr;
        }
        it = m_prepared.insert(sql, std::move(query));
    }
    QSqlQuery& query = it.value();
    query.finish();
    for (int i = 0; i < values.size(); ++i)
        query.bindValue(i, values.at(i));
    if (!query.exec()) {
        Fail(query.lastError());
        query.finish();
        return nullptr;
    }
    return &query;
}

bool SqlConnection::Exec(const QString& sql, const QVariantList& values) {
    QSqlQuery* query = Run(sql, values);
    if (query)
        query->finish(); // a statement left running keeps VACUUM and checkpoints out
    return query != nullptr;
}

QVariant SqlConnection::Scalar(const QString& sql, bool* ok) {
    QSqlQuery* query = Run(sql);
    const bool found = query && query->next();
    if (ok)
        *ok = query != nullptr;
    const QVariant value = found ? query->value(0) : QVariant();
    if (query)
        query->finish();
    return value;
}

void SqlConnection::Rollback() {
    if (m_db.isOpen())
        QSqlQuery(QStringLiteral("ROLLBACK"), m_db);
}

void SqlConnection::Drop() {
    m_prepared.clear();
    m_db.close();
}
