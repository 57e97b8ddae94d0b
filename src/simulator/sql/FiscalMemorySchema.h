#pragma once

#include <QString>

class SqlConnection;

namespace sim {

// The file format of a fiscal memory: an SQLite database marked with the bench's application id,
// whose user_version is the schema. A file of an older schema is brought up step by step; a newer
// one is left alone.
namespace FiscalSchema {

inline constexpr int kApplicationId = 0x46505542; // "FPUB"
inline constexpr int kVersion = 2;

// Brings an empty database (version 0) or an older one up to `target`, each step in its own
// transaction. False, with the step's error in the connection, when a step fails; the steps done
// before it stay.
bool Upgrade(SqlConnection& db, int from, int target = kVersion);

} // namespace FiscalSchema
} // namespace sim
