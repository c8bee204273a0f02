#include "platform/sqlite/SQLiteContainer.h"

#include "platform/sqlite/SQLiteContext.h"

namespace platform::sqlite {

Container::Container(std::string name, ObjectModel model, std::filesystem::path storeDirectory)
    : name_(std::move(name)),
      storeDirectory_(std::move(storeDirectory)),
      core_(std::make_shared<ContainerCore>(std::move(model))) {}

void Container::loadPersistentStores() {
    PersistentStoreDescription description;
    description.url = storeDirectory_ / (name_ + ".sqlite");
    addPersistentStore(description);
}

void Container::addPersistentStore(const PersistentStoreDescription& description) {
    core_->addStore(description);
}

ManagedObjectContextPtr Container::viewContext() {
    std::lock_guard guard(viewContextMutex_);
    if (!viewContext_)
        viewContext_ = Context::make(core_, "view");
    return viewContext_;
}

ManagedObjectContextPtr Container::newBackgroundContext() {
    return Context::make(core_, "background");
}

}  // namespace platform::sqlite
