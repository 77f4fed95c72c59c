#pragma once

#include "OnDemandLibrary.h"

#include <sqlite3.h>

namespace brisko {

/// The library of the browsers' databases.
inline constinit OnDemandLibrary libsqlite{"libsqlite3.so.0"};

BRISKO_ON_DEMAND(libsqlite, sqlite3_busy_timeout);
BRISKO_ON_DEMAND(libsqlite, sqlite3_close);
BRISKO_ON_DEMAND(libsqlite, sqlite3_column_int64);
BRISKO_ON_DEMAND(libsqlite, sqlite3_column_text);
BRISKO_ON_DEMAND(libsqlite, sqlite3_db_config);
BRISKO_ON_DEMAND(libsqlite, sqlite3_errmsg);
BRISKO_ON_DEMAND(libsqlite, sqlite3_errstr);
BRISKO_ON_DEMAND(libsqlite, sqlite3_finalize);
BRISKO_ON_DEMAND(libsqlite, sqlite3_open_v2);
BRISKO_ON_DEMAND(libsqlite, sqlite3_prepare_v2);
BRISKO_ON_DEMAND(libsqlite, sqlite3_step);

}  // namespace brisko
