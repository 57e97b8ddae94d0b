#pragma once

#include <QHash>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariant>

// One connection of Qt's SQLite driver to one file. Statements are prepared once and kept; every
// failure leaves its text in LastError() and SQLite's result code in LastCode().
class SqlConnection {
public:
    explicit SqlConnection(const QString& path);
    ~SqlConnection();
    SqlConnection(const SqlConnection&) = delete;
    SqlConnection& operator=(const SqlConnection&) = delete;

    // False when Qt has no SQLite driver or the file can't be opened.
    bool Open();
    const QString& Path() const { return m_path; }

    // Runs `sql` with `values` bound in order; the query, positioned before its first row, or
    // nullptr after a failure.
    QSqlQuery* Run(const QString& sql, const QVariantList& values = {});
    // Runs `sql` and lets go of whatever rows it had.
    bool Exec(const QString& sql, const QVariantList& values = {});
    // The first column of the first row; an invalid QVariant after a failure or with no row.
    QVariant Scalar(const QString& sql, bool* ok = nullptr);

    bool Begin() { return Exec(QStringLiteral("BEGIN IMMEDIATE")); }
    bool Commit() { return Exec(QStringLiteral("COMMIT")); }
    void Rollback();
    // Closes the connection with whatever transaction is open left uncommitted.
    void Drop();

    const QString& LastError() const { return m_error; }
    int LastCode() const { return m_code; }

private:
    void Fail(const class QSqlError& error);

    QString m_path;
    QString m_name;
    QSqlDatabase m_db;
    QHash<QString, QSqlQuery> m_prepared;
    QString m_error;
    int m_code = 0;
};

// SQLite's primary result codes that the opening tells apart.
namespace SqliteCode {
inline constexpr int Busy = 5;
inline constexpr int Locked = 6;
inline constexpr int Corrupt = 11;
inline constexpr int NotADatabase = 26;
} // namespace SqliteCode
