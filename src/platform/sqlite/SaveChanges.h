#pragma once

#include "platform/sqlite/ContainerCore.h"
#include "platform/sqlite/SQLiteContext.h"

namespace platform::sqlite {

// Writes a context's pending changes, store by store, each store in one
// transaction, and settles the saved objects: inserted objects get their
// permanent identity, every saved object the store's state. A conflict with
// a save made since an object was read is resolved by the policy, or, with
// the error policy, fails the save. On failure nothing of that store is
// written and its objects keep their changes.
SavedChanges saveChanges(ContainerCore& container, PendingChanges& pending, MergePolicyType policy);

}  // namespace platform::sqlite
