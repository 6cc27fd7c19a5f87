#pragma once

#include "Workbench/ContainerApp/CommentStore.h"
#include "Workbench/ContainerApp/ExportHistory.h"
#include "Workbench/ContainerApp/MarkerLookup.h"
#include "Workbench/ContainerApp/Settings.h"

#include <string>

namespace workbench {

// An open database, ready for use. Makes the file's folder and the file where they are missing.
class PreparedDatabase : public Database {
public:
    // Throws DatabaseError.
    explicit PreparedDatabase(std::string const& file);
};

// The database and all that reads and writes it. One thread.
struct Store {
    // Throws DatabaseError.
    explicit Store(std::string const& file);

    PreparedDatabase database;
    SequenceStore sequences;
    CommentStore comments;
    MarkerLookup markers;
    Settings settings;
    ExportHistory exports;
};

} // namespace workbench
