#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <string>

#include "platform/ObjectStore.h"
#include "platform/sqlite/ContainerCore.h"

namespace platform::sqlite {

class Container final : public PersistentContainer {
  public:
    // The default store goes to "<storeDirectory>/<name>.sqlite".
    Container(std::string name, ObjectModel model, std::filesystem::path storeDirectory);

    std::string name() const override { return name_; }
    const ObjectModel& managedObjectModel() const override { return core_->model(); }
    void loadPersistentStores() override;
    void addPersistentStore(const PersistentStoreDescription& description) override;
    std::size_t persistentStoreCount() const override { return core_->storeCount(); }
    ManagedObjectContextPtr viewContext() override;
    ManagedObjectContextPtr newBackgroundContext() override;

  private:
    const std::string name_;
    const std::filesystem::path storeDirectory_;
    const std::shared_ptr<ContainerCore> core_;
    std::mutex viewContextMutex_;
    ManagedObjectContextPtr viewContext_;
};

}  // namespace platform::sqlite
